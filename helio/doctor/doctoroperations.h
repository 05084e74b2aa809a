#pragma once

#include <QJsonObject>
#include <QObject>
#include <QThread>

#include <functional>
#include <memory>

namespace helio {

class DoctorWorker;

/// The doctor's operations, which a shell offers to its pages beside the plug-in's commands;
/// docs/host.md lists them. They run one after the other on a thread of their own.
class DoctorOperations : public QObject
{
    Q_OBJECT

public:
    /// Called with the name of a page's callback and the JSON for it, on this object's thread.
    using Deliver = std::function<void(const QString &callback, const QString &json)>;

    /// @p shippedChecks is the directory of the check files that come with the program.
    explicit DoctorOperations(const QString &shippedChecks, QObject *parent = nullptr);
    /// Stops a look, and waits for the checks or the repair under way.
    ~DoctorOperations() override;

    /// What pages may call.
    static QStringList names();

    /// Starts the operation that a page's @p call names, and returns at once. Lines and answer are
    /// delivered as long as @p receiver lives.
    /// @return false if the call is none of the doctor's: it is for the plug-in
    bool take(const QJsonObject &call, QObject *receiver, const Deliver &deliver);

private:
    struct Stops;

    QThread m_thread;
    /// Lives on that thread.
    QObject *m_desk;
    std::shared_ptr<DoctorWorker> m_worker;
    std::shared_ptr<Stops> m_stops;
};

} // namespace helio
