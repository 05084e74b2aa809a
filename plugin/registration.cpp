#include "plugin/kheliopluginwidgetfactoryitem.h"
#include "plugin/kvyrassistanttool.h"

namespace {

/// Registered while the library is loaded.
class RegisteredItem : public KHelioPluginWidgetFactoryItem<KVyrAssistantTool>
{
public:
    RegisteredItem() : KHelioPluginWidgetFactoryItem(KHelioPluginWidget::OfficeAssistantPage)
    {
        KHelioPluginWidgetFactory::registerPagePlugin(this);
    }
};

const RegisteredItem registeredItem;

} // namespace
