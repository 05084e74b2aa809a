#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

#include "helio/doctor/doctoroperations.h"

/// A shell with one page, which has the doctor look and shows what it hears.
int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    helio::DoctorOperations doctor(QStringLiteral("/opt/suite/office/checks"));
    QObject page;

    // Your way to the page, such as a container's runCallback().
    const auto toPage = [](const QString &callback, const QString &json) {
        std::printf("%s %s\n", qPrintable(callback), qPrintable(json));
        const QJsonObject envelope = QJsonDocument::fromJson(json.toUtf8()).object();
        if (envelope.contains(QStringLiteral("result")) ||
            envelope.contains(QStringLiteral("error")))
            QCoreApplication::quit();
    };
    // Where your shell receives what a page calls. Pass on calls of trusted documents only.
    const auto fromPage = [&](const QString &call) {
        if (!doctor.take(QJsonDocument::fromJson(call.toUtf8()).object(), &page, toPage))
            std::printf("for the plug-in: %s\n", qPrintable(call));
    };

    fromPage(QStringLiteral(R"({"command": "getcollectionpage", "callback": "first"})"));
    fromPage(QStringLiteral(R"({"command": "doctor.look", "callback": "second",
                                "args": {"language": "en"}})"));
    return QCoreApplication::exec();
}
