#pragma once

#include <QObject>
#include <QUrl>

namespace helio {

/// Stands between the library and the desktop when something is to be opened.
class DesktopOpener : public QObject
{
    Q_OBJECT

public:
    explicit DesktopOpener(QObject *parent = nullptr);
    ~DesktopOpener() override;

    /// Whether files are really opened; at first they are only reported.
    void setOpensReally(bool opensReally);

signals:
    void opened(const QUrl &url);

private:
    Q_INVOKABLE void open(const QUrl &url);

    bool m_opensReally = false;
};

} // namespace helio
