#include <cstdio>
#include <cstring>

#include <QJsonDocument>

#include "programs/checktool/probe/probes.h"

namespace {

struct NamedProbe
{
    const char *name;
    QJsonObject (*make)(int &argc, char *argv[]);
};

constexpr NamedProbe probes[] = {{"bus", programs::probeBus},
                                 {"display", programs::probeDisplay},
                                 {"opengl", programs::probeOpenGl},
                                 {"printing", programs::probePrinting}};
constexpr int wrongUsage = 2;

} // namespace

/// Runs one probe for the check tool and prints its facts as one line of JSON.
int main(int argc, char *argv[])
{
    for (const NamedProbe &probe : probes) {
        if (argc < 2 || std::strcmp(argv[1], probe.name) != 0)
            continue;
        const QJsonDocument facts(probe.make(argc, argv));
        std::puts(facts.toJson(QJsonDocument::Compact).constData());
        return 0;
    }
    std::fputs("usage: vyrEnvProbe bus|display|opengl|printing [ADDRESS]\n", stderr);
    return wrongUsage;
}
