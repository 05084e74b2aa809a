#include <QFont>

#include <qpa/qplatformtheme.h>
#include <qpa/qplatformthemeplugin.h>

#include "helio/headless/headlessfiledialog.h"

namespace {

/// A desktop whose native file dialog is the headless one. It names its font, since without one Qt
/// reads all of fontconfig's files for the first widget.
class HeadlessTheme : public QPlatformTheme
{
public:
    bool usePlatformNativeDialog(DialogType type) const override { return type == FileDialog; }

    QPlatformDialogHelper *createPlatformDialogHelper(DialogType type) const override
    {
        return type == FileDialog ? new helio::HeadlessFileDialog : nullptr;
    }

    const QFont *font(Font type) const override { return type == SystemFont ? &m_font : nullptr; }

private:
    const QFont m_font{QStringLiteral("Sans Serif"), 9};
};

} // namespace

class HeadlessThemePlugin : public QPlatformThemePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QPlatformThemeFactoryInterface_iid FILE "headlesstheme.json")

public:
    QPlatformTheme *create(const QString &, const QStringList &) override
    {
        return new HeadlessTheme;
    }
};

#include "headlesstheme.moc"
