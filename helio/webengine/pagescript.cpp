#include "helio/webengine/pagescript.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

#include "helio/webengine/pagedirectory.h"
#include "helio/webengine/pagesurroundings.h"

// Outside any namespace: the macro declares a function of rcc's.
static void initResources()
{
    Q_INIT_RESOURCE(webengine);
}

namespace {

QString resourceText(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the resource %s is missing from the program", qPrintable(name));
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
                     const helio::PageSurroundings &surroundings, const QStringList &operations)
{
    const QJsonObject settings{
        {QStringLiteral("pageDirectory"), directory.path() + QLatin1Char('/')},
        {QStringLiteral("theme"), surroundings.theme},
        {QStringLiteral("language"), surroundings.language},
        {QStringLiteral("operations"), QJsonArray::fromStringList(operations)},
        {QStringLiteral("windowCallback"), helio::windowCallback()}};
    return QString::fromUtf8(QJsonDocument(settings).toJson(QJsonDocument::Compact));
}

} // namespace

QString helio::windowCallback()
{
    return QStringLiteral("helioWindow");
}

void helio::addPageScript(QWebEngineScriptCollection &scripts, const PageDirectory &directory,
                          const PageSurroundings &surroundings, const QStringList &operations)
{
    initResources();
    QString source = resourceText(QStringLiteral(":/webengine/helio.js"));
    source.replace(QStringLiteral("(HELIO_SETTINGS)"),
                   QStringLiteral("(%1)").arg(settingsText(directory, surroundings, operations)));
    // A single script, because the order of several is not defined.
    scripts.insert(
        mainFrameScript(QStringLiteral("helio.js"),
                        resourceText(QStringLiteral(":/qtwebchannel/qwebchannel.js")) + source));
}
