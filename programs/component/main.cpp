#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

#include <QApplication>
#include <QFile>
#include <QMessageBox>

#include "programs/component/suiteprograms.h"
#include "texts/texts.h"

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

/// Replaces this process with the program; returns only on failure.
int become(const QString &path, char *arguments[])
{
    QByteArray program = QFile::encodeName(path);
    arguments[0] = program.data();
    ::execv(program.constData(), arguments);
    std::fprintf(stderr, "opencomponent: cannot start %s: %s\n", program.constData(),
                 std::strerror(errno));
    return failed;
}

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

void tellAbsence(int argc, char *argv[], const QString &program)
{
    texts::useLanguageOfUser();
    const QString what =
        texts::tr("The office suite's program \"%1\" is not on this machine, so this "
                  "shortcut has nothing to open.")
            .arg(program);
    const QString advice = texts::tr("Install the office suite, or open the document with another "
                                     "application from its context menu in the file manager.");
    std::fprintf(stderr, "%s\n%s\n", what.toUtf8().constData(), advice.toUtf8().constData());
    // Without a display QApplication would abort.
    if (!hasDisplay())
        return;
    const QApplication application(argc, argv);
    QMessageBox box(QMessageBox::Information, texts::tr("This component is not installed"), what);
    box.setInformativeText(advice);
    box.addButton(texts::tr("Close"), QMessageBox::RejectRole);
    box.exec();
}

} // namespace

/// Started by the shortcuts of the suite: "opencomponent PROGRAM [DOCUMENT…]" runs the suite's
/// program, or tells the user that it is not installed.
int main(int argc, char *argv[])
{
    const QString program = argc > 1 ? QFile::decodeName(argv[1]) : QString();
    if (!programs::suitePrograms().contains(program)) {
        std::fprintf(stderr, "usage: opencomponent %s [DOCUMENT...]\n",
                     programs::suitePrograms().join(QLatin1Char('|')).toLatin1().constData());
        return wrongUsage;
    }
    const QString path = programs::installedProgram(programs::suiteProgramDirectory(), program);
    if (!path.isEmpty())
        return become(path, argv + 1);
    tellAbsence(argc, argv, program);
    return failed;
}
