#include "helio/runtime/pluginlibrary.h"

#include <QCoreApplication>

#include "helio/runtime/mimepackage.h"
#include "host/kheliopluginwidgetfactory.h"

namespace {

QString addonDirectory()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/addons/vyrassistanttool");
}

} // namespace

QString helio::PluginLibrary::path()
{
    return addonDirectory() + QStringLiteral("/libofficeassistant.so");
}

bool helio::PluginLibrary::load()
{
    m_library.setFileName(path());
    // Missing symbols show now and not in the middle of a command.
    m_library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!m_library.load()) {
        m_errorString = m_library.errorString();
        return false;
    }
    if (!KHelioPluginWidgetFactory::pagePlugin(KHelioPluginWidget::OfficeAssistantPage)) {
        m_errorString = QStringLiteral("%1 registers no page").arg(path());
        return false;
    }
    offerMimePackage();
    return true;
}

QString helio::PluginLibrary::errorString() const
{
    return m_errorString;
}

QString helio::pageDirectory()
{
    return addonDirectory() + QStringLiteral("/officeassistant/resource/html");
}
