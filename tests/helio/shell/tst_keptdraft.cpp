#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QWaitCondition>

#include "helio/shell/keptdraft.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>

#include <dlfcn.h>
#include <unistd.h>

using shell::KeptDraft;

namespace {

QMutex callMutex;
QWaitCondition goesOn;
QStringList calls;
bool isDiskStuck = false;

QString nameOf(int descriptor)
{
    return QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
}

int synced(const char *call, int descriptor)
{
    {
        QMutexLocker locker(&callMutex);
        const QString name = nameOf(descriptor);
        calls.append(QStringLiteral("sync ") +
                     (QFileInfo(name).isDir() ? name : QStringLiteral("the file")));
        // Bounded, so that a window that waits for the disk fails its test and does not hang.
        while (isDiskStuck && goesOn.wait(&callMutex, 5000)) {
        }
    }
    return reinterpret_cast<decltype(&fsync)>(::dlsym(RTLD_NEXT, call))(descriptor);
}

/// Notes a call that has succeeded. Keeps errno, by which Qt goes.
int noted(int result, const char *call, const char *name)
{
    const int error = errno;
    if (result == 0) {
        const QMutexLocker locker(&callMutex);
        calls.append(QString::fromLatin1(call) + QLatin1Char(' ') + QFile::decodeName(name));
    }
    errno = error;
    return result;
}

void setDiskStuck(bool isStuck)
{
    const QMutexLocker locker(&callMutex);
    isDiskStuck = isStuck;
    goesOn.wakeAll();
}

QStringList callsUntilNow()
{
    const QMutexLocker locker(&callMutex);
    return calls;
}

} // namespace

// The program's own functions go before those of the C library, also for Qt.
extern "C" Q_DECL_EXPORT int fsync(int descriptor)
{
    return synced("fsync", descriptor);
}

extern "C" Q_DECL_EXPORT int fdatasync(int descriptor)
{
    return synced("fdatasync", descriptor);
}

extern "C" Q_DECL_EXPORT int rename(const char *from, const char *to) noexcept
{
    const auto real = reinterpret_cast<decltype(&rename)>(::dlsym(RTLD_NEXT, "rename"));
    return noted(real(from, to), "name", to);
}

extern "C" Q_DECL_EXPORT int linkat(int fromFolder, const char *from, int toFolder, const char *to,
                                    int flags) noexcept
{
    const auto real = reinterpret_cast<decltype(&linkat)>(::dlsym(RTLD_NEXT, "linkat"));
    return noted(real(fromFolder, from, toFolder, to, flags), "name", to);
}

extern "C" Q_DECL_EXPORT int unlink(const char *name) noexcept
{
    const auto real = reinterpret_cast<decltype(&unlink)>(::dlsym(RTLD_NEXT, "unlink"));
    return noted(real(name), "remove", name);
}

class KeptDraftTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void aDraftIsOnTheDiskBeforeItTakesThePlaceOfTheLast();
    void itsFoldersAreOnTheDiskToo();
    void aDiscardedDraftDoesNotComeBackAfterACrash();
    void whoTypesWithoutAPauseLosesNothingEither();
    void aSlowDiskDoesNotHoldUpTheWindow();
    void whatWasTypedLastIsKeptAtTheEnd();
    void aDraftThatCannotBeKeptSaysSo();
    void aPictureDoesNotGoWithADraftBeforeIt();

private:
    QString folder() const { return m_home->path() + QStringLiteral("/state/assistant"); }
    /// Without those of temporary names.
    QStringList callsOfTheDraft() const;
    QString file() const { return folder() + QStringLiteral("/draft.json"); }

    std::unique_ptr<QTemporaryDir> m_home;
};

namespace {

QJsonObject draftOf(const QString &text)
{
    return {{QStringLiteral("text"), text}};
}

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void KeptDraftTest::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    calls.clear();
}

QStringList KeptDraftTest::callsOfTheDraft() const
{
    QStringList found = callsUntilNow();
    const QString temporary = QStringLiteral("name ") + file() + QLatin1Char('.');
    found.erase(
        std::remove_if(found.begin(), found.end(),
                       [&temporary](const QString &call) { return call.startsWith(temporary); }),
        found.end());
    return found;
}

void KeptDraftTest::aDraftIsOnTheDiskBeforeItTakesThePlaceOfTheLast()
{
    QVERIFY(QDir().mkpath(folder()));
    KeptDraft draft(file());
    for (const char *text : {"first", "second"}) {
        draft.keep(draftOf(QString::fromLatin1(text)));
        QTRY_VERIFY(callsUntilNow().contains(QStringLiteral("sync ") + folder()));
        QCOMPARE(callsOfTheDraft(),
                 (QStringList{QStringLiteral("sync the file"), QStringLiteral("name ") + file(),
                              QStringLiteral("sync ") + folder()}));
        QCOMPARE(contentOf(file()), QByteArray(text));
        calls.clear();
    }
}

void KeptDraftTest::itsFoldersAreOnTheDiskToo()
{
    {
        KeptDraft draft(file());
        draft.keep(draftOf(QStringLiteral("typed")));
    }
    QCOMPARE(calls.mid(0, 2), (QStringList{QStringLiteral("sync ") + m_home->path(),
                                           QStringLiteral("sync ") + QFileInfo(folder()).path()}));
}

void KeptDraftTest::aDiscardedDraftDoesNotComeBackAfterACrash()
{
    KeptDraft draft(file());
    draft.keep(draftOf(QStringLiteral("private")));
    QTRY_VERIFY(QFile::exists(file()));
    QTRY_COMPARE(callsUntilNow().last(), QStringLiteral("sync ") + folder());
    draft.keep(draftOf({}));
    const QStringList expected{QStringLiteral("remove ") + file(),
                               QStringLiteral("sync ") + folder()};
    QTRY_COMPARE(callsUntilNow().mid(callsUntilNow().size() - 2), expected);
    QVERIFY(!QFile::exists(file()));
}

void KeptDraftTest::whoTypesWithoutAPauseLosesNothingEither()
{
    KeptDraft draft(file());
    QTimer keys;
    QString typed;
    QObject::connect(&keys, &QTimer::timeout, &keys, [&draft, &typed] {
        typed += QLatin1Char('a');
        draft.keep(draftOf(typed));
    });
    keys.start(20);
    QTRY_VERIFY(contentOf(file()).startsWith("aa"));
    const int written = contentOf(file()).size();
    QTRY_VERIFY(contentOf(file()).size() > written);
}

void KeptDraftTest::aSlowDiskDoesNotHoldUpTheWindow()
{
    KeptDraft draft(file());
    setDiskStuck(true);
    draft.keep(draftOf(QStringLiteral("first")));
    QTRY_VERIFY(!callsUntilNow().isEmpty());
    draft.keep(draftOf(QStringLiteral("second")));
    QVERIFY(!QFile::exists(file()));
    setDiskStuck(false);
    QTRY_COMPARE(contentOf(file()), QByteArray("second"));
}

void KeptDraftTest::whatWasTypedLastIsKeptAtTheEnd()
{
    {
        KeptDraft draft(file());
        draft.keep(draftOf(QStringLiteral("first")));
        QTRY_VERIFY(QFile::exists(file()));
        draft.keep(draftOf(QStringLiteral("last")));
    }
    QCOMPARE(contentOf(file()), QByteArray("last"));
    QCOMPARE(KeptDraft(file()).read(), draftOf(QStringLiteral("last")));
}

void KeptDraftTest::aDraftThatCannotBeKeptSaysSo()
{
    // Stands where the folder would be.
    QFile obstacle(m_home->filePath(QStringLiteral("state")));
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    KeptDraft draft(file());
    QTRY_COMPARE(draft.keep(draftOf(QStringLiteral("typed"))).value(QStringLiteral("kept")),
                 QJsonValue(false));
}

void KeptDraftTest::aPictureDoesNotGoWithADraftBeforeIt()
{
    KeptDraft draft(file());
    const QJsonObject picture{
        {QStringLiteral("content"), QString::fromLatin1(QByteArray("\x89PNG").toBase64())}};
    draft.keep(draftOf(QStringLiteral("sent")));
    const QString earlier = draft.keepPicture(picture).value(QStringLiteral("file")).toString();
    QVERIFY(QFile::exists(earlier));
    draft.keep(draftOf({}));
    const QString later = draft.keepPicture(picture).value(QStringLiteral("file")).toString();
    QVERIFY(QFile::exists(later));
    QVERIFY(later == earlier || !QFile::exists(earlier));
    draft.keep(draftOf(QStringLiteral("next")));
    QTRY_COMPARE(contentOf(file()), QByteArray("next"));
    QVERIFY(QFile::exists(later));
}

QTEST_GUILESS_MAIN(KeptDraftTest)
#include "tst_keptdraft.moc"
