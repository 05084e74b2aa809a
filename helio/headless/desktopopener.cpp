#include "helio/headless/desktopopener.h"

#include <QDesktopServices>
#include <QProcess>

namespace {
const QString fileScheme = QStringLiteral("file");
}

namespace helio {

DesktopOpener::DesktopOpener(QObject *parent) : QObject(parent)
{
    QDesktopServices::setUrlHandler(fileScheme, this, "open");
}

DesktopOpener::~DesktopOpener()
{
    QDesktopServices::unsetUrlHandler(fileScheme);
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
    QProcess viewer;
    viewer.setProgram(QStringLiteral("xdg-open"));
    viewer.setArguments({QString::fromUtf8(url.toEncoded())});
    // Whoever reads this program's output would wait for the end of the viewer too.
    viewer.setStandardInputFile(QProcess::nullDevice());
    viewer.setStandardOutputFile(QProcess::nullDevice());
    viewer.setStandardErrorFile(QProcess::nullDevice());
    if (!viewer.startDetached())
        qWarning("xdg-open cannot be started, so nothing was opened");
}

} // namespace helio
