#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QVariantMap>

namespace testsupport {

/// A desktop's portal for screenshots, which answers as the test says, and its notices.
class FakePortal : public QDBusVirtualObject
{
    Q_OBJECT

public:
    enum Answer {
        AnswerRequest,
        /// The answer of another program's request comes first.
        AnswerOtherRequestFirst,
        LeaveTheBus,
        RefuseCall,
    };

    explicit FakePortal(const QDBusConnection &bus);
    ~FakePortal() override;

    Answer answer = AnswerRequest;
    uint response = 0;
    /// The address of the picture that the portal has saved.
    QString picture;

    /// What was asked with each call for a screenshot.
    QList<QVariantMap> requests;
    /// Title and text of the notices that were shown.
    QStringList notices;

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    void takeScreenshot(const QDBusMessage &call);
    void answerRequest(const QString &request, uint outcome);

    QDBusConnection m_bus;
};

} // namespace testsupport
