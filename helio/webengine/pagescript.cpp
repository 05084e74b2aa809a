#include "helio/webengine/pagescript.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

#include "helio/webengine/pagedirectory.h"
#include "helio/webengine/pagesurroundings.h"

// Outside of every namespace, as the resource's own function is.
static void initResources()
{
    Q_INIT_RESOURCE(webengine);
}

namespace {

QString resourceText(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the program lacks its resource %s", qPrintable(name));
    return QString::fromUtf8(file.readAll());
}

QWebEngineScript mainFrameScript(const QString &name, const QString &source)
{
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(false);
    return script;
}

QString settingsText(const helio::PageDirectory &directory,
                     const helio::PageSurroundings &surroundings)
{
    const QJsonObject settings{
        {QStringLiteral("pageDirectory"), directory.path() + QLatin1Char('/')},
        {QStringLiteral("theme"), surroundings.theme},
        {QStringLiteral("language"), surroundings.language},
        {QStringLiteral("closeCallback"), helio::closeCallback()}};
    return QString::fromUtf8(QJsonDocument(settings).toJson(QJsonDocument::Compact));
}

} // namespace

namespace helio {

QString closeCallback()
{
    return QStringLiteral("helioCloseByUser");
}

void addPageScript(QWebEngineScriptCollection &scripts, const PageDirectory &directory,
                   const PageSurroundings &surroundings)
{
    initResources();
    QString source = resourceText(QStringLiteral(":/webengine/helio.js"));
    source.replace(QStringLiteral("(HELIO_SETTINGS)"),
                   QStringLiteral("(%1)").arg(settingsText(directory, surroundings)));
    // One script, since several run in no particular order.
    scripts.insert(
        mainFrameScript(QStringLiteral("helio.js"),
                        resourceText(QStringLiteral(":/qtwebchannel/qwebchannel.js")) + source));
}

} // namespace helio
