#include "programs/checktool/catalogue.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

/// The tool's library is static, so that nothing else registers its resources. Their macro wants to
/// stand outside of namespaces.
static void registerTables()
{
    Q_INIT_RESOURCE(texts);
}

namespace standin {

namespace {

const QString tablePath = QStringLiteral(":/vyrenvchecktool/%1.json");

} // namespace

Catalogue::Catalogue(const QString &language, QObject *parent) : QTranslator(parent)
{
    registerTables();
    QFile file(tablePath.arg(language));
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QJsonObject table = QJsonDocument::fromJson(file.readAll()).object();
    for (auto text = table.begin(); text != table.end(); ++text)
        m_texts.insert(text.key(), text.value().toString());
}

QString Catalogue::translate(const char *, const char *sourceText, const char *, int) const
{
    return m_texts.value(QString::fromUtf8(sourceText));
}

bool Catalogue::isEmpty() const
{
    return m_texts.isEmpty();
}

void useLanguageOfUser()
{
    const QString language =
        QLocale::system().uiLanguages().value(0).section(QLatin1Char('-'), 0, 0);
    auto *catalogue = new Catalogue(language, QCoreApplication::instance());
    // Numbers and sizes are written as the words around them.
    QLocale::setDefault(catalogue->isEmpty() ? QLocale(QLocale::English) : QLocale(language));
    if (!catalogue->isEmpty())
        QCoreApplication::installTranslator(catalogue);
}

} // namespace standin
