#include "helio/ctl/why/accessreport.h"

#include <QFile>

#include <sys/stat.h>

#include "doctor/machine/machine.h"
#include "helio/doctor/accessjson.h"
#include "helio/doctor/doctorwords.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using doctor::Component;
using doctor::Denial;
using doctor::Obstacle;
using helio::modeOf;
using helio::ownerOf;
using helio::visible;

constexpr int ownerWidth = 20;

bool isBlocking(const doctor::Passage &passage, int index)
{
    return passage.obstacle != Obstacle::None && index == passage.blocker;
}

QString componentLine(const Component &component, bool blocks, const doctor::Credentials &own)
{
    QString line = blocks ? QStringLiteral("✘ ") : QStringLiteral("  ");
    const QString path = visible(QFile::decodeName(component.path));
    if ((component.guard.mode & S_IFMT) == 0)
        return line + path;
    if (S_ISLNK(component.guard.mode))
        return line + path + QStringLiteral(" -> ") + visible(QFile::decodeName(component.target));
    const QString owner =
        ownerOf(component) + QLatin1Char(':') + doctor::groupName({}, component.guard.group);
    line += QStringLiteral("%1 %2 %3 ")
                .arg(helio::rightsLetters(doctor::singleRights(component.guard, own)),
                     modeOf(component), visible(owner).leftJustified(ownerWidth));
    return line + path + (component.guard.acl.isEmpty() ? QString() : texts::tr(" (access list)"));
}

QString remedyText(const doctor::Remedy &remedy)
{
    const QString command = helio::commandOf(remedy);
    if (visible(command) != command)
        return texts::tr("The name contains control characters; --json prints the command that "
                         "opens it.");
    return helio::isOwn(remedy)
               ? texts::tr("To open it: %1").arg(command)
               : texts::tr("The owner or the administrator can open it: %1").arg(command);
}

} // namespace

QString accessText(const QString &path, doctor::Access access, const Denial &denial)
{
    const doctor::Credentials own = doctor::ownCredentials();
    QStringList lines{helio::accessVerdict(path, access, denial.verdict)};
    for (int index = 0; index < denial.passage.chain.size(); ++index)
        lines.append(
            componentLine(denial.passage.chain.at(index), isBlocking(denial.passage, index), own));
    if (!denial.text.isEmpty())
        lines.append(visible(denial.text));
    if (denial.remedy)
        lines.append(remedyText(*denial.remedy));
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

} // namespace ctl
