#include <cstdio>
#include <exception>

#include <QCoreApplication>
#include <QLocale>

#include "programs/checktool/answerfile.h"
#include "programs/checktool/checks/checks.h"
#include "programs/checktool/printing/printing.h"
#include "programs/checktool/timelimit.h"
#include "programs/checktool/usage.h"
#include "texts/texts.h"

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;
/// Longer than all bounded waits of a check or conversion together.
constexpr unsigned int checkSeconds = 60;
constexpr unsigned int printingSeconds = programs::printingMs / 1000 + 60;

void print(const QString &text)
{
    std::printf("%s\n", text.toLocal8Bit().constData());
}

int complain(const QString &text)
{
    std::fprintf(stderr, "vyrEnvCheckTool: %s\n", text.toLocal8Bit().constData());
    return wrongUsage;
}

int printToPdf(const QString &application, const QString &document)
{
    if (!programs::isSuiteProgram(application))
        return complain(
            QStringLiteral("“%1” prints no documents; vyr, tbl and shw do").arg(application));
    if (document.isEmpty())
        return complain(QStringLiteral("print needs a document"));
    programs::limitTime(printingSeconds);
    print(programs::printDocument(programs::Machine::current(), document));
    return 0;
}

int check(const QString &type, const QString &application, const QString &argument)
{
    programs::limitTime(checkSeconds);
    const programs::Machine machine = programs::Machine::current();
    const QString text = programs::findingsOf(machine, type, application, argument).text();
    print(text);
    programs::writeAnswer(machine.suiteHome, type, application, text);
    return 0;
}

int run(const QStringList &arguments)
{
    if (arguments == QStringList(QStringLiteral("--help"))) {
        print(programs::usage());
        return 0;
    }
    if (arguments == QStringList(QStringLiteral("--list"))) {
        print(programs::listOfChecks());
        return 0;
    }
    // Words after TYPE are never options: the page passes on what the user typed.
    if (arguments.size() < 2 || arguments.size() > 3)
        return complain(QStringLiteral("usage: vyrEnvCheckTool TYPE APP [ARG], or "
                                       "vyrEnvCheckTool --help"));
    if (arguments.first() == QLatin1String("print"))
        return printToPdf(arguments.at(1), arguments.value(2));
    return check(arguments.at(0), arguments.at(1), arguments.value(2));
}

} // namespace

/// Replaces the suite's check tool where the suite is not installed.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // Numbers and sizes are written in the language of the words around them.
    QLocale::setDefault(QLocale(texts::useLanguageOfUser()));
    try {
        return run(QCoreApplication::arguments().mid(1));
    } catch (const std::exception &error) {
        complain(QString::fromUtf8(error.what()));
        return failed;
    }
}
