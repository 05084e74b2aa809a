#include "helio/doctor/doctoroperations.h"

#include <QJsonDocument>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <array>
#include <atomic>

#include <malloc.h>

#include "helio/doctor/doctorworker.h"

namespace helio {

namespace {

constexpr std::array<const char *, 3> prefixes{"doctor.", "why.", "suite."};
constexpr char cancel[] = "doctor.cancel";

/// By then the page has read an answer.
constexpr int trimDelayMs = 1000;

/// What a look took, 10 MiB and more, glibc would keep for the next one.
void giveMemoryBack()
{
    ::malloc_trim(0);
}

bool isOurs(const QString &operation)
{
    return std::any_of(prefixes.begin(), prefixes.end(), [&operation](const char *prefix) {
        return operation.startsWith(QLatin1String(prefix));
    });
}

QString textOf(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace

struct DoctorOperations::Stops
{
    /// How often looks were cancelled.
    std::atomic<int> looks{0};
    /// Whether nothing is to begin any more.
    std::atomic<bool> all{false};
};

DoctorOperations::DoctorOperations(const QString &shippedChecks, QObject *parent)
    : QObject(parent),
      m_desk(new QObject),
      m_worker(std::make_shared<DoctorWorker>(shippedChecks)),
      m_stops(std::make_shared<Stops>())
{
    m_desk->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_desk, &QObject::deleteLater);
    m_thread.start();
}

DoctorOperations::~DoctorOperations()
{
    m_stops->all = true;
    ++m_stops->looks;
    m_thread.quit();
    // As long as the longest limit of a check, or a repair: what it changes must not be cut off.
    m_thread.wait();
}

QStringList DoctorOperations::names()
{
    return DoctorWorker::operations() + QStringList(QLatin1String(cancel));
}

bool DoctorOperations::take(const QJsonObject &call, QObject *receiver, const Deliver &deliver)
{
    const QString operation = call.value(QLatin1String("command")).toString();
    if (!isOurs(operation))
        return false;
    if (operation == QLatin1String(cancel))
        ++m_stops->looks;

    const QString callback = call.value(QLatin1String("callback")).toString();
    const QPointer<QObject> listener(receiver);
    const auto send = [this, callback, listener, deliver](const QJsonObject &envelope) {
        const auto pass = [callback, listener, deliver, text = textOf(envelope)] {
            if (listener)
                deliver(callback, text);
        };
        QMetaObject::invokeMethod(this, pass, Qt::QueuedConnection);
    };
    if (operation == QLatin1String(cancel)) {
        send({{QStringLiteral("result"), QJsonObject()}});
        return true;
    }
    DoctorRequest request;
    request.operation = operation;
    request.arguments = call.value(QLatin1String("args")).toObject();
    request.isStopped = [stops = m_stops, looks = m_stops->looks.load()] {
        return stops->looks != looks;
    };
    request.say = [send](const QJsonObject &line) { send({{QStringLiteral("line"), line}}); };
    const auto work = [desk = m_desk, worker = m_worker, stops = m_stops, request, send] {
        if (stops->all)
            return;
        send(worker->answer(request));
        QTimer::singleShot(trimDelayMs, desk, giveMemoryBack);
    };
    QMetaObject::invokeMethod(m_desk, work, Qt::QueuedConnection);
    return true;
}

} // namespace helio
