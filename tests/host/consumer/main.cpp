#include <QLibrary>
#include <QtDebug>

#include "host/kheliopluginwidgetfactory.h"

int main()
{
    QLibrary plugin(QStringLiteral(OFFICE_DIR "/addons/vyrassistanttool/libofficeassistant.so"));
    if (!plugin.load())
        qFatal("%s", qPrintable(plugin.errorString()));
    return KHelioPluginWidgetFactory::pagePlugin(KHelioPluginWidget::OfficeAssistantPage) ? 0 : 1;
}
