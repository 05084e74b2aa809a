#include "helio/headless/desktopopener.h"

#include <QDesktopServices>

#include "helio/runtime/processes/quietprocess.h"

namespace {
constexpr char fileScheme[] = "file";
} // namespace

namespace helio {

DesktopOpener::DesktopOpener(QObject *parent) : QObject(parent)
{
    QDesktopServices::setUrlHandler(QLatin1String(fileScheme), this, "open");
}

DesktopOpener::~DesktopOpener()
{
    QDesktopServices::unsetUrlHandler(QLatin1String(fileScheme));
}

void DesktopOpener::setOpensReally(bool opensReally)
{
    m_opensReally = opensReally;
}

void DesktopOpener::open(const QUrl &url)
{
    emit opened(url);
    if (!m_opensReally)
        return;
    QuietProcess viewer(QStringLiteral("xdg-open"), {QString::fromUtf8(url.toEncoded())});
    if (!viewer.startDetached())
        qWarning("cannot start xdg-open, nothing was opened");
}

} // namespace helio
