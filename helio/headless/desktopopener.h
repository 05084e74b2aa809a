#pragma once

#include <QObject>
#include <QUrl>

namespace helio {

/// Receives the files that the library asks the desktop to open.
class DesktopOpener : public QObject
{
    Q_OBJECT

public:
    explicit DesktopOpener(QObject *parent = nullptr);
    ~DesktopOpener() override;

    /// Whether files are really opened, or only reported, which is the default.
    void setOpensReally(bool opensReally);

signals:
    void opened(const QUrl &url);

private:
    Q_INVOKABLE void open(const QUrl &url);

    bool m_opensReally = false;
};

} // namespace helio
