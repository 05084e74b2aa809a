#include "doctor/why/input/places/environmentfiles.h"
#include "doctor/why/input/places/shelltext.h"
#include "tests/fuzz/fuzzing.h"

using doctor::Setting;
using fuzzing::require;

namespace {

void checkFile(QVector<Setting> (*parse)(const QByteArray &), const QByteArray &content)
{
    for (const Setting &setting : parse(content)) {
        require(doctor::isInputVariable(setting.variable));
        require(setting.line >= 1 && setting.line <= content.count('\n') + 1);
    }
}

} // namespace

/// Reads the input as each kind of file that can set variables for a session.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray content = fuzzing::bytesOf(data, size);
    for (const doctor::ShellStatement &statement : doctor::shellStatements(content)) {
        require(statement.line >= 1 && statement.line <= content.count('\n') + 1);
        require(!statement.name.isEmpty() ||
                statement.kind == doctor::ShellStatement::Kind::Command);
    }
    checkFile(&doctor::settingsOfPlainFile, content);
    checkFile(&doctor::settingsOfPamFile, content);
    checkFile(&doctor::settingsOfEnvironmentD, content);
    checkFile(&doctor::settingsOfLocaleFile, content);
    return 0;
}
