#include "helio/runtime/pluginlibrary.h"

#include <QCoreApplication>

#include "helio/runtime/configuration.h"
#include "helio/runtime/mimepackage.h"
#include "host/kheliopluginwidgetfactory.h"

namespace {

constexpr char addons[] = "/addons/vyrassistanttool";

} // namespace

namespace helio {

QString PluginLibrary::path()
{
    return libraryDirectory() + QLatin1String(addons) + QStringLiteral("/libofficeassistant.so");
}

QString PluginLibrary::load()
{
    m_library.setFileName(path());
    // A missing symbol shows now and not in the middle of a command.
    m_library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!m_library.load())
        return m_library.errorString();
    if (!KHelioPluginWidgetFactory::pagePlugin(KHelioPluginWidget::OfficeAssistantPage))
        return QStringLiteral("%1 registers no page").arg(path());
    offerMimePackage();
    return {};
}

QString pageDirectory()
{
    return QCoreApplication::applicationDirPath() + QLatin1String(addons) +
           QStringLiteral("/officeassistant/resource/html");
}

} // namespace helio
