#include "texts/texts.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

/// Nothing else registers the resources of a static library. The macro must stand outside
/// namespaces.
static void registerTables()
{
    Q_INIT_RESOURCE(texts);
}

namespace texts {

namespace {

using Table = QHash<QString, QString>;

Table &table()
{
    static Table translations;
    return translations;
}

/// Of an InLanguage; null for the program's.
thread_local const Table *tableOfThread = nullptr;

QString codeOf(const QString &language)
{
    return QLocale(language).name().section(QLatin1Char('_'), 0, 0);
}

/// Empty where there is none.
Table tableNamed(const QString &code)
{
    registerTables();
    Table read;
    QFile file(QStringLiteral(":/texts/%1.json").arg(code));
    if (!file.open(QIODevice::ReadOnly))
        return read;
    const QJsonObject translations = QJsonDocument::fromJson(file.readAll()).object();
    for (auto text = translations.begin(); text != translations.end(); ++text)
        read.insert(text.key(), text.value().toString());
    return read;
}

} // namespace

QString useLanguage(const QString &language)
{
    const QString code = codeOf(language);
    table() = tableNamed(code);
    return table().isEmpty() ? QStringLiteral("en") : code;
}

QString useLanguageOfUser()
{
    const QString chosen = qEnvironmentVariable("OFFICE_ASSISTANT_LANGUAGE");
    return useLanguage(chosen.isEmpty() ? QLocale::system().uiLanguages().value(0) : chosen);
}

QString tr(const char *english)
{
    const QString text = QString::fromUtf8(english);
    return (tableOfThread ? *tableOfThread : table()).value(text, text);
}

InLanguage::InLanguage(const QString &language)
{
    if (language.isEmpty())
        return;
    m_table = tableNamed(codeOf(language));
    tableOfThread = &m_table;
}

InLanguage::~InLanguage()
{
    tableOfThread = nullptr;
}

} // namespace texts
