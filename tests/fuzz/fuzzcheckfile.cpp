#include "doctor/format/checkreader.h"
#include "tests/fuzz/fuzzing.h"

using fuzzing::require;

/// A check file: it has checks or mistakes, never both, and every mistake has a place in it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray content = fuzzing::bytesOf(data, size);
    const doctor::CheckFile file = doctor::readChecks(content, QStringLiteral("fuzz.json"));
    require(file.checks.isEmpty() != file.mistakes.isEmpty());
    for (const doctor::Mistake &mistake : file.mistakes) {
        require(mistake.line >= 1 && mistake.line <= content.count('\n') + content.count('\r') + 1);
        require(mistake.column >= 1 && mistake.column <= content.size() + 1);
        require(!mistake.message.isEmpty());
    }
    for (const doctor::CheckDefinition &check : file.checks) {
        require(!check.id.isEmpty());
        require(check.isDisabled || check.look.kind != doctor::Look::Kind::Probe ||
                check.look.probe);
    }
    return 0;
}
