#pragma once

#include <QObject>
#include <QVariantMap>

namespace shell {

/// The one assistant of a user's session: a second start shows the window of the first.
///
/// It is an application of the desktop entry standard's section on D-Bus activation, with one
/// window, the desktop entry's actions and no documents.
class SessionInstance : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    enum class Place {
        First,
        Second, ///< another one is running and has been asked to show its window
        Alone,  ///< without a session bus, or beside one that does not answer
    };

    explicit SessionInstance(QObject *parent = nullptr);

    /// Takes the place of the session's assistant, or asks the one that has it to show its window
    /// and to start @p action, if that is not empty. Waits for its answer, for some seconds at
    /// most.
    Place take(const QString &action);

public slots:
    // The interface has these names.
    // NOLINTBEGIN(readability-identifier-naming)
    Q_SCRIPTABLE void Activate(const QVariantMap &platformData);
    Q_SCRIPTABLE void Open(const QStringList &uris, const QVariantMap &platformData);
    Q_SCRIPTABLE void ActivateAction(const QString &action, const QVariantList &parameter,
                                     const QVariantMap &platformData);
    // NOLINTEND(readability-identifier-naming)

signals:
    /// The window should come to the front, and start the action if that is not empty.
    void activated(const QString &action);
};

} // namespace shell
