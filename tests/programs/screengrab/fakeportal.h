#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QVariantMap>

namespace testsupport {

/// A fake screenshot portal and notification service that answer as the test says.
class FakePortal : public QDBusVirtualObject
{
    Q_OBJECT

public:
    enum Answer {
        AnswerRequest,
        /// The response to another program's request comes first.
        AnswerOtherRequestFirst,
        LeaveTheBus,
        RefuseCall,
    };

    explicit FakePortal(const QDBusConnection &bus);
    ~FakePortal() override;

    Answer answer = AnswerRequest;
    uint response = 0;
    /// The address of the picture that the portal saved.
    QString picture;

    /// The options of each call for a screenshot.
    QList<QVariantMap> requests;
    /// Titles and texts of the notifications.
    QStringList notices;

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    void takeScreenshot(const QDBusMessage &call);
    void answerRequest(const QString &request, uint outcome);

    QDBusConnection m_bus;
};

} // namespace testsupport
