#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>

#include <unistd.h>

#include "programs/component/suiteprograms.h"
#include "texts/texts.h"

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

/// Replaces this process with the program; returns only on failure.
int become(QStringList command)
{
    if (!command.first().contains(QLatin1Char('/')))
        command.first() = QStandardPaths::findExecutable(command.first());
    QList<QByteArray> words;
    std::transform(command.begin(), command.end(), std::back_inserter(words), QFile::encodeName);
    QVector<char *> arguments;
    for (QByteArray &word : words)
        arguments.append(word.data());
    arguments.append(nullptr);
    ::execv(arguments.first(), arguments.data());
    std::fprintf(stderr, "opencomponent: cannot start %s: %s\n", arguments.first(),
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
    const QString advice = texts::tr("Install the office suite or LibreOffice, or open the "
                                     "document with another application from its context menu "
                                     "in the file manager.");
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
/// program, or another office suite in its place, or tells the user that there is none.
int main(int argc, char *argv[])
{
    const QString program = argc > 1 ? QFile::decodeName(argv[1]) : QString();
    if (!programs::suitePrograms().contains(program)) {
        std::fprintf(stderr, "usage: opencomponent %s [DOCUMENT...]\n",
                     programs::suitePrograms().join(QLatin1Char('|')).toLatin1().constData());
        return wrongUsage;
    }
    const QString path = programs::installedProgram(programs::suiteProgramDirectory(), program);
    QStringList documents;
    std::transform(argv + 2, argv + argc, std::back_inserter(documents),
                   [](const char *name) { return QFile::decodeName(name); });
    if (!path.isEmpty())
        return become(QStringList(path) + documents);
    if (const std::optional<suites::Installation> instead = programs::suiteInstead())
        return become(programs::commandInstead(*instead, program, documents));
    tellAbsence(argc, argv, program);
    return failed;
}
