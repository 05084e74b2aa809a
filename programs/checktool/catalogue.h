#pragma once

#include <QHash>
#include <QTranslator>

namespace standin {

/// What the check tool says, in another language: a table of its English texts and theirs. A text
/// that is not in the table stays English.
class Catalogue : public QTranslator
{
    Q_OBJECT

public:
    /// The table of a language such as "zh"; one without a table has no texts.
    explicit Catalogue(const QString &language, QObject *parent = nullptr);

    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override;
    bool isEmpty() const override;

    QStringList sourceTexts() const { return m_texts.keys(); }

private:
    QHash<QString, QString> m_texts;
};

/// Has the tool speak the user's language, as far as there is a table for it.
void useLanguageOfUser();

} // namespace standin
