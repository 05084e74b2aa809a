#include "texts/texts.h"

#include <QFile>
#include <QHash>
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

QHash<QString, QString> &table()
{
    static QHash<QString, QString> translations;
    return translations;
}

} // namespace

QString useLanguage(const QString &language)
{
    registerTables();
    table().clear();
    QString code = QLocale(language).name().section(QLatin1Char('_'), 0, 0);
    QFile file(QStringLiteral(":/texts/%1.json").arg(code));
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("en");
    const QJsonObject translations = QJsonDocument::fromJson(file.readAll()).object();
    for (auto text = translations.begin(); text != translations.end(); ++text)
        table().insert(text.key(), text.value().toString());
    return code;
}

QString useLanguageOfUser()
{
    return useLanguage(QLocale::system().uiLanguages().value(0));
}

QString tr(const char *english)
{
    const QString text = QString::fromUtf8(english);
    return table().value(text, text);
}

} // namespace texts
