#include "programs/checktool/printing/printingprofile.h"

#include <QDir>
#include <QFile>

namespace programs {

namespace {

struct Setting
{
    const char *path;
    const char *name;
    const char *value;
};

constexpr Setting settings[] = {
    {"Common/Security/Scripting", "DisableMacrosExecution", "true"},
    {"Common/Security/Scripting", "BlockUntrustedRefererLinks", "true"},
    // Never update links.
    {"Writer/Content/Update", "Link", "0"},
    {"Calc/Content/Update", "Link", "2"},
};

QByteArray registry()
{
    QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<oor:items xmlns:oor=\"http://openoffice.org/2001/registry\">\n";
    for (const Setting &setting : settings)
        text += QByteArray("<item oor:path=\"/org.openoffice.Office.") + setting.path +
                "\"><prop oor:name=\"" + setting.name + "\" oor:op=\"fuse\"><value>" +
                setting.value + "</value></prop></item>\n";
    return text + "</oor:items>\n";
}

} // namespace

bool writePrintingProfile(const QString &directory)
{
    const QString user = directory + QStringLiteral("/user");
    if (!QDir().mkpath(user))
        return false;
    QFile file(user + QStringLiteral("/registrymodifications.xcu"));
    const QByteArray text = registry();
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush();
}

} // namespace programs
