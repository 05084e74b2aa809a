#include <QDir>
#include <QTest>

#include <algorithm>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "doctor/why/open/open.h"
#include "tests/helio/doctor/doctorpage.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::PrivateHome;

namespace {

constexpr char before[] = "# mine\n[Default Applications]\napplication/x-plan=lost.desktop\n";
constexpr char after[] =
    "# mine\n[Default Applications]\napplication/x-plan=right.desktop;lost.desktop;\n";

/// This thread, and those that it starts, open files by their rights alone, also as root.
void dropPrivileges()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    QVERIFY(syscall(SYS_capset, &header, none) == 0);
}

QJsonObject forSuffix(const char *language = "en")
{
    return {{QStringLiteral("suffix"), QStringLiteral("docx")},
            {QStringLiteral("language"), QLatin1String(language)}};
}

QJsonValue planOf(const QJsonObject &reason)
{
    return reason.value(QStringLiteral("repair")).toObject().value(QStringLiteral("plan"));
}

mode_t modeOf(const QString &path)
{
    struct stat state;
    return stat(QFile::encodeName(path).constData(), &state) == 0 ? state.st_mode & 07777 : 0;
}

} // namespace

/// Explanations for a page, with their repairs.
class WhyOperationsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("XDG_CURRENT_DESKTOP", "Odd");
        qputenv("XDG_DATA_DIRS", "/nonexistent");
        qputenv("XDG_CONFIG_DIRS", "/nonexistent");
        dropPrivileges();
    }

    void init()
    {
        const PrivateHome &home = PrivateHome::current();
        QDir(home.path() + QStringLiteral("/.local")).removeRecursively();
        QDir(home.path() + QStringLiteral("/.config")).removeRecursively();
        home.writeFile(QStringLiteral(".local/share/mime/globs2"),
                       "50:application/x-plan:*.docx\n");
        entry("right");
        home.writeFile(QStringLiteral(".local/share/applications/mimeinfo.cache"),
                       "[MIME Cache]\napplication/x-plan=right.desktop;\n");
        m_list = home.writeFile(QStringLiteral(".config/mimeapps.list"), before);
    }

    void theLineThatDecidesIsToldItsRepairMadeAndUndone()
    {
        DoctorPage page;
        const QJsonObject reason = page.result(QStringLiteral("why.open"), forSuffix());
        QCOMPARE(reason.value(QStringLiteral("subject")), QJsonValue(QStringLiteral(".docx")));
        QCOMPARE(reason.value(QStringLiteral("text")),
                 QJsonValue(m_list + QStringLiteral(", line 3 names lost.desktop, but it is not "
                                                    "installed.")));
        const QJsonObject lost =
            reason.value(QStringLiteral("statements")).toArray().first().toObject();
        QCOMPARE(lost.value(QStringLiteral("text")),
                 QJsonValue(QStringLiteral("it is not installed")));
        QCOMPARE(testsupport::readFile(m_list), QByteArray(before));

        const QJsonObject made = fixed(page, reason);
        QCOMPARE(made.value(QStringLiteral("result")), QJsonValue(QStringLiteral("repaired")));
        QCOMPARE(testsupport::readFile(m_list), QByteArray(after));
        undo(page, made);
        QCOMPARE(testsupport::readFile(m_list), QByteArray(before));
    }

    void aRepairThatAnotherListOverrulesIsTakenBack()
    {
        entry("vyr-office-vyr");
        PrivateHome::current().writeFile(
            QStringLiteral(".config/odd-mimeapps.list"),
            "[Default Applications]\napplication/x-plan=lost.desktop;right.desktop\n");
        DoctorPage page;
        const QJsonObject made = fixed(page, page.result(QStringLiteral("why.open"), forSuffix()));
        QCOMPARE(made.value(QStringLiteral("result")), QJsonValue(QStringLiteral("unchanged")));
        QVERIFY(made.value(QStringLiteral("reason"))
                    .toString()
                    .contains(QStringLiteral("odd-mimeapps.list decides all the same")));
        QCOMPARE(testsupport::readFile(m_list), QByteArray(before));
    }

    void allKindsOfDocumentsAreListed()
    {
        DoctorPage page;
        const QJsonArray all =
            page.result(QStringLiteral("why.open")).value(QStringLiteral("suffixes")).toArray();
        QCOMPARE(all.size(), doctor::OpenQuestion::suffixes().size());
        const auto isAsked = [](const QJsonValue &line) {
            return line.toObject().value(QStringLiteral("suffix")) == QLatin1String("docx");
        };
        const auto docx = std::find_if(all.begin(), all.end(), isAsked);
        QVERIFY(docx != all.end());
        const QJsonValue choice = (*docx).toObject().value(QStringLiteral("gio"));
        QCOMPARE(choice.toObject().value(QStringLiteral("entry")),
                 QJsonValue(QStringLiteral("right.desktop")));
    }

    void reasonsAreInThePagesLanguage()
    {
        DoctorPage page;
        const auto text = [&page](const char *language) {
            return page.result(QStringLiteral("why.open"), forSuffix(language))
                .value(QStringLiteral("text"))
                .toString();
        };
        QVERIFY(text("zh-CN").contains(QStringLiteral("未安装")));
        QVERIFY(text("en").contains(QStringLiteral("not installed")));
        QVERIFY(text("").contains(QStringLiteral("not installed")));
    }

    void thePartThatBlocksIsToldAndOpened()
    {
        const QString file =
            PrivateHome::current().writeFile(QStringLiteral(".config/closed/own.conf"), "x");
        const QString folder = QFileInfo(file).path();
        QVERIFY(chmod(QFile::encodeName(folder).constData(), 0600) == 0);
        DoctorPage page;
        const QJsonObject reason =
            page.result(QStringLiteral("why.denied"),
                        {{QStringLiteral("path"), QStringLiteral("~/.config/closed/own.conf")},
                         {QStringLiteral("access"), QStringLiteral("read")}});
        QCOMPARE(reason.value(QStringLiteral("component")), QJsonValue(folder));
        const QJsonObject made = fixed(page, reason);
        QCOMPARE(made.value(QStringLiteral("result")), QJsonValue(QStringLiteral("repaired")));
        QCOMPARE(modeOf(folder), mode_t(0700));
        undo(page, made);
        QCOMPARE(modeOf(folder), mode_t(0600));
        QVERIFY(chmod(QFile::encodeName(folder).constData(), 0700) == 0);
    }

    void whatIsGrantedHasNoRepair()
    {
        DoctorPage page;
        const QJsonObject reason = page.result(
            QStringLiteral("why.denied"), {{QStringLiteral("path"), m_list},
                                           {QStringLiteral("access"), QStringLiteral("write")}});
        QCOMPARE(reason.value(QStringLiteral("verdict")), QJsonValue(QStringLiteral("granted")));
        QVERIFY(!reason.contains(QStringLiteral("repair")));
    }

    void theSessionsInputMethodIsExplained()
    {
        DoctorPage page;
        const QJsonObject reason = page.result(QStringLiteral("why.input"));
        QCOMPARE(reason.value(QStringLiteral("question")), QJsonValue(QStringLiteral("input")));
        QVERIFY(!reason.value(QStringLiteral("text")).toString().isEmpty());
    }

    void requestsThatMakeNoSenseAreRefused()
    {
        DoctorPage page;
        QVERIFY(!page.error(QStringLiteral("why.none"), {}).isEmpty());
        for (const char *path : {"", "~", "relative/path"})
            QVERIFY(!page.error(QStringLiteral("why.denied"),
                                {{QStringLiteral("path"), QLatin1String(path)},
                                 {QStringLiteral("access"), QStringLiteral("read")}})
                         .isEmpty());
        QVERIFY(!page.error(QStringLiteral("why.denied"),
                            {{QStringLiteral("path"), m_list},
                             {QStringLiteral("access"), QStringLiteral("all")}})
                     .isEmpty());
    }

private:
    static void entry(const char *name)
    {
        PrivateHome::current().writeFile(
            QStringLiteral(".local/share/applications/%1.desktop").arg(QLatin1String(name)),
            "[Desktop Entry]\nType=Application\nName=x\nExec=true %f\n");
    }

    static QJsonObject fixed(DoctorPage &page, const QJsonObject &reason)
    {
        return page.result(QStringLiteral("doctor.fix"),
                           {{QStringLiteral("plan"), planOf(reason)}});
    }

    static void undo(DoctorPage &page, const QJsonObject &made)
    {
        const QJsonValue journal = made.value(QStringLiteral("journal"));
        const QJsonObject undone =
            page.result(QStringLiteral("doctor.undo"), {{QStringLiteral("journal"), journal}});
        QCOMPARE(undone.value(QStringLiteral("result")), QJsonValue(QStringLiteral("undone")));
    }

    QString m_list;
};

HEADLESS_TEST_MAIN(WhyOperationsTest)
#include "tst_whyoperations.moc"
