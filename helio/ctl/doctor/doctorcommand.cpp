#include "helio/ctl/doctor/doctorcommand.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <memory>

#include <unistd.h>

#include "doctor/format/checkreader.h"
#include "doctor/journal/journal.h"
#include "helio/ctl/doctor/doctorline.h"
#include "helio/ctl/doctor/doctorsession.h"
#include "helio/ctl/doctor/jsonprinter.h"
#include "helio/ctl/doctor/messagelocale.h"
#include "helio/ctl/doctor/textprinter.h"
#include "texts/texts.h"

namespace ctl {

namespace {

constexpr char shippedChecks[] = "/checks";

int complain(const QString &fault)
{
    std::fputs(QStringLiteral("assistantctl doctor: %1\n").arg(fault).toLocal8Bit().constData(),
               stderr);
    return Misused;
}

int lint(const QString &file, DoctorPrinter &printer)
{
    const QVector<doctor::Mistake> mistakes = doctor::readCheckFile(file).mistakes;
    for (const doctor::Mistake &mistake : mistakes)
        printer.printProblem({file, mistake});
    return mistakes.isEmpty() ? Done : Found;
}

int runMode(const DoctorLine &line, DoctorSession &session)
{
    switch (line.mode) {
    case DoctorLine::List:
        return session.list();
    case DoctorLine::Choose:
        return session.choose(line.suite);
    case DoctorLine::Fix:
        return session.fix(line);
    case DoctorLine::Undo:
        return session.undo(line.journal);
    case DoctorLine::History:
        return session.history();
    case DoctorLine::Check:
    case DoctorLine::Lint:
    case DoctorLine::ShowText:
        break;
    }
    return session.check(line.checks);
}

} // namespace

int runDoctor(const QStringList &arguments)
{
    const doctor::Machine machine = doctor::thisMachine();
    const QString locale = messageLocale(machine);
    texts::useLanguage(locale);
    const DoctorLine line = parseDoctorLine(arguments);
    if (!line.fault.isEmpty())
        return complain(line.fault);
    if (line.mode == DoctorLine::ShowText) {
        std::fputs(line.text.toLocal8Bit().constData(), stdout);
        return Done;
    }
    std::unique_ptr<DoctorPrinter> printer;
    if (line.json)
        printer = std::make_unique<JsonPrinter>(locale);
    else
        printer = std::make_unique<TextPrinter>(locale, ::isatty(STDOUT_FILENO) == 1);
    if (line.mode == DoctorLine::Lint)
        return lint(line.file, *printer);

    doctor::Doctor doctor(machine);
    doctor.load(doctor::checkDirectories(machine, QCoreApplication::applicationDirPath() +
                                                      QLatin1String(shippedChecks)));
    for (const doctor::FileProblem &problem : doctor.problems())
        printer->printProblem(problem);
    const auto unknown =
        std::find_if(line.checks.begin(), line.checks.end(),
                     [&doctor](const QString &id) { return doctor.check(id) == nullptr; });
    if (unknown != line.checks.end())
        return complain(texts::tr("there is no check %1").arg(*unknown));
    doctor::Journal journal;
    DoctorSession session(doctor, journal, *printer, locale);
    return runMode(line, session);
}

} // namespace ctl
