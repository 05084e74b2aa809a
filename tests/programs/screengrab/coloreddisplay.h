#pragma once

#include <QProcess>
#include <QRgb>
#include <QString>

struct xcb_connection_t;

namespace testsupport {

/// A private X server whose screen has one colour.
class ColoredDisplay
{
public:
    static constexpr QRgb color = qRgb(0x33, 0x66, 0x99);

    /// @p screen in the form of Xvfb, such as 640x480x24.
    explicit ColoredDisplay(const QString &screen);
    ~ColoredDisplay();

    /// For DISPLAY.
    QString name() const;

private:
    Q_DISABLE_COPY_MOVE(ColoredDisplay)

    QProcess m_server;
    QString m_name;
    xcb_connection_t *m_connection = nullptr;
};

} // namespace testsupport
