#include <QDropEvent>
#include <QJsonArray>
#include <QMimeData>
#include <QUrl>

#include "helio/webengine/drops/droppedfiles.h"
#include "tests/support/shell/headlesstest.h"

namespace {

void drop(QObject &target, const QList<QUrl> &urls)
{
    QMimeData data;
    data.setUrls(urls);
    QDropEvent event(QPointF(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&target, &event);
}

QJsonArray paths(helio::DroppedFiles &dropped)
{
    return dropped.take().value(QStringLiteral("paths")).toArray();
}

} // namespace

class DroppedFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void thePathsOfTheLastDropAreToldOnce()
    {
        // Qt gives a widget no drop without a drag before it.
        QObject target;
        helio::DroppedFiles dropped;
        target.installEventFilter(&dropped);
        drop(target, {QUrl::fromLocalFile(QStringLiteral("/home/a"))});
        drop(target,
             {QUrl::fromLocalFile(QStringLiteral("/home/b c#%.docx")),
              QUrl(QStringLiteral("https://h/d")), QUrl::fromLocalFile(QStringLiteral("/home/e"))});
        QCOMPARE(paths(dropped),
                 QJsonArray({QStringLiteral("/home/b c#%.docx"), QStringLiteral("/home/e")}));
        QCOMPARE(paths(dropped), QJsonArray());
    }
};

HEADLESS_TEST_MAIN(DroppedFilesTest)
#include "tst_droppedfiles.moc"
