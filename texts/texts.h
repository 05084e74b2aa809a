#pragma once

#include <QHash>
#include <QString>

/// What users read, in their language. The English text in the source is the key of the tables, one
/// JSON file a language; texts that a table lacks stay English.
namespace texts {

/// Has tr() answer in @p language, such as "zh" or "zh_CN". Call it before other threads start.
/// @return the code of the language in use: "en" when there is no table for @p language
QString useLanguage(const QString &language);

/// Same for the first language of the desktop's settings, or the one that the window names in
/// OFFICE_ASSISTANT_LANGUAGE for a program that it starts.
QString useLanguageOfUser();

QString tr(const char *english);

/// While it lives, tr() answers its own thread in another language than the program's.
class InLanguage
{
public:
    /// Such as "zh" or "zh_CN"; empty for that of the program.
    explicit InLanguage(const QString &language);
    ~InLanguage();
    Q_DISABLE_COPY(InLanguage)

private:
    QHash<QString, QString> m_table;
};

} // namespace texts
