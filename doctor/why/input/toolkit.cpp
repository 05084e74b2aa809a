#include "doctor/why/input/toolkit.h"

#include <QRegularExpression>
#include <QVector>

#include <algorithm>

namespace doctor {

namespace {

QString fileName(const QString &path)
{
    return path.section(QLatin1Char('/'), -1);
}

Toolkit qtOf(const QString &path, const QRegularExpressionMatch &match)
{
    Toolkit toolkit;
    toolkit.kind = Toolkit::Kind::Qt;
    toolkit.library = path;
    toolkit.version = match.captured(1);
    toolkit.major = toolkit.version.section(QLatin1Char('.'), 0, 0).toInt();
    toolkit.minor = toolkit.version.section(QLatin1Char('.'), 1, 1).toInt();
    return toolkit;
}

/// GTK's libraries have a hundred times the minor version in their name.
Toolkit gtkOf(const QString &path, const QRegularExpressionMatch &match)
{
    Toolkit toolkit;
    toolkit.kind = Toolkit::Kind::Gtk;
    toolkit.library = path;
    toolkit.major = match.captured(1).toInt();
    toolkit.minor = match.captured(2).toInt() / 100;
    toolkit.version = QStringLiteral("%1.%2").arg(toolkit.major).arg(toolkit.minor);
    return toolkit;
}

QVector<Toolkit> loadedToolkits(const QStringList &mapped)
{
    static const QRegularExpression qt(QStringLiteral(R"(^libQt[56]?Gui\.so\.(\d+[.\d]*)$)"));
    static const QRegularExpression gtk(
        QStringLiteral(R"(^libgtk-(?:x11-)?([234])(?:\.0)?\.so\.\d+(?:\.(\d+))?)"));
    QVector<Toolkit> found;
    for (const QString &path : mapped) {
        const QString name = fileName(path);
        const QRegularExpressionMatch ofQt = qt.match(name);
        const QRegularExpressionMatch ofGtk = gtk.match(name);
        if (ofQt.hasMatch())
            found.append(qtOf(path, ofQt));
        else if (ofGtk.hasMatch())
            found.append(gtkOf(path, ofGtk));
    }
    return found;
}

bool hasFile(const QStringList &mapped, const char *beginning)
{
    return std::any_of(mapped.begin(), mapped.end(), [beginning](const QString &path) {
        return fileName(path).startsWith(QLatin1String(beginning));
    });
}

/// Whether LibreOffice draws with a toolkit other than this one.
bool isOnlyGuest(const QStringList &mapped, Toolkit::Kind kind)
{
    if (hasFile(mapped, "libvclplug_gen"))
        return !hasFile(mapped, "libvclplug_gtk") && !hasFile(mapped, "libvclplug_qt") &&
               !hasFile(mapped, "libvclplug_kf");
    if (hasFile(mapped, "libvclplug_gtk"))
        return kind != Toolkit::Kind::Gtk;
    return false;
}

bool isInputPlugin(const QString &path)
{
    return path.contains(QLatin1String("/platforminputcontexts/")) ||
           path.contains(QLatin1String("/inputmethods/")) ||
           path.contains(QLatin1String("/immodules/"));
}

} // namespace

QString Toolkit::name() const
{
    switch (kind) {
    case Kind::None:
        return {};
    case Kind::Qt:
        return QStringLiteral("Qt ") + version;
    case Kind::Gtk:
        break;
    }
    return QStringLiteral("GTK ") + version;
}

Toolkit toolkitOf(const QStringList &mapped)
{
    Toolkit toolkit;
    // Qt can have GTK loaded for its looks, but not the other way round.
    for (const Toolkit &one : loadedToolkits(mapped)) {
        if (!isOnlyGuest(mapped, one.kind) && toolkit.kind != Toolkit::Kind::Qt)
            toolkit = one;
    }
    std::copy_if(mapped.begin(), mapped.end(), std::back_inserter(toolkit.plugins), &isInputPlugin);
    toolkit.isOnWayland = hasFile(mapped, "libqwayland");
    toolkit.isOnX11 = hasFile(mapped, "libqxcb");
    return toolkit;
}

} // namespace doctor
