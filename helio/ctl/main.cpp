#include <QThreadPool>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <unistd.h>

#include "helio/ctl/commandline.h"
#include "helio/ctl/eventprinter.h"
#include "helio/ctl/exitstatus.h"
#include "helio/ctl/leftoverwork.h"
#include "helio/ctl/session.h"
#include "helio/ctl/singlecommand.h"
#include "helio/ctl/standardstreams.h"
#include "helio/headless/headlessapplication.h"
#include "helio/headless/headlesspage.h"
#include "helio/headless/headlessshell.h"
#include "helio/runtime/pluginlibrary.h"
#include "helio/runtime/processes/awaitedprograms.h"
#include "helio/runtime/processes/terminationsignals.h"
#include "helio/runtime/suitehome.h"
#include "texts/encoding.h"

namespace {

constexpr char doctorProgram[] = "assistantdoctor";

void printText(const QString &text, std::FILE *stream)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
}

/// @param word the first argument; null without one
bool isForDoctor(const char *word)
{
    const std::array<const char *, 5> words{"doctor", "why", "report", "compare", "suite"};
    return word && std::any_of(words.begin(), words.end(),
                               [word](const char *one) { return std::strcmp(word, one) == 0; });
}

/// Replaces this program by the doctor's, which stands beside it: with the doctor's libraries every
/// command would start later. Returns only if that fails.
int becomeDoctor(char *argv[])
{
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::filesystem::path program = self.parent_path() / doctorProgram;
    ::execv(program.c_str(), argv);
    std::fprintf(stderr, "assistantctl: %s: %s\n", program.c_str(), std::strerror(errno));
    return ctl::NoLibrary;
}

int refuse(const QString &fault)
{
    printText(QStringLiteral("assistantctl: %1\n").arg(fault), stderr);
    return ctl::WrongUsage;
}

int carryOut(const ctl::CommandLine &line, helio::HeadlessShell &shell,
             const ctl::EventPrinter &printer, int input)
{
    switch (line.mode) {
    case ctl::CommandLine::ListCommands:
        printText(shell.page(line.page)->commands().join(QLatin1Char('\n')) + QLatin1Char('\n'),
                  stdout);
        return ctl::Answered;
    case ctl::CommandLine::Session: {
        ctl::Session session(shell, printer, input);
        QObject::connect(
            &session, &ctl::Session::ended, qApp, [] { QCoreApplication::exit(); },
            Qt::QueuedConnection);
        QCoreApplication::exec();
        return ctl::Answered;
    }
    case ctl::CommandLine::SingleCommand:
    case ctl::CommandLine::ShowText:
        break;
    }
    return ctl::runSingleCommand(shell, printer, line);
}

int run(const ctl::CommandLine &line, int input)
{
    const ctl::EventPrinter printer(line.pretty);
    helio::PluginLibrary library;
    const QString fault = library.load();
    if (!fault.isEmpty()) {
        printer.printError({}, fault);
        return ctl::NoLibrary;
    }
    helio::HeadlessShell shell([&printer](const QJsonObject &event) { printer.print(event); });
    if (line.traces)
        shell.startTracing();
    shell.setOpensReally(line.opensReally);
    if (!shell.start()) {
        printer.printError({}, QStringLiteral("the library's page takes no commands"));
        return ctl::NoLibrary;
    }
    const int status = carryOut(line, shell, printer, input);
    helio::endAwaitedPrograms(ctl::waitForLeftoverWork());
    const int signal = helio::TerminationSignals::first();
    return signal != 0 ? ctl::EndedBySignal + signal : status;
}

} // namespace

int main(int argc, char *argv[])
{
    ctl::openMissingStandardStreams();
    if (isForDoctor(argv[1]))
        return becomeDoctor(argv);
    texts::assumeUtf8WithoutLocale();
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    const int input = ctl::takeStandardInput();

    // Ends with the process: before it is destroyed, Qt reads all of fontconfig's files, only to
    // let go of them.
    auto *const application = new helio::HeadlessApplication(argv[0]);
    const ctl::CommandLine line = ctl::parseCommandLine(arguments);
    if (!line.fault.isEmpty())
        return refuse(line.fault);
    if (line.mode == ctl::CommandLine::ShowText) {
        printText(line.text, stdout);
        return ctl::Answered;
    }
    ctl::adoptLeftovers(application);
    const helio::TerminationSignals terminationSignals(ctl::endStartedWork, STDOUT_FILENO);
    QObject::connect(&terminationSignals, &helio::TerminationSignals::received, qApp,
                     [] { QCoreApplication::exit(); });
    helio::makeDefaultSuiteHome();
    const int status = run(line, input);
    // Nothing may still run while what is static is destroyed.
    QThreadPool::globalInstance()->waitForDone();
    return status;
}
