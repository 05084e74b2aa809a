#include <QCryptographicHash>

#include "doctor/journal/record.h"
#include "tests/fuzz/fuzzing.h"

using doctor::Record;
using fuzzing::require;

namespace {

/// The input's lines with the checksums that the reader asks for: a fuzzer does not find them.
QByteArray withChecksums(const QByteArray &bytes)
{
    QByteArray record;
    const QList<QByteArray> lines = bytes.split('\n');
    for (const QByteArray &line : lines)
        record +=
            QCryptographicHash::hash(line, QCryptographicHash::Sha256).toHex() + ' ' + line + '\n';
    return record;
}

/// Recovery works with these paths and names without looking at them again.
void requireHarmless(const doctor::TreeStep &step)
{
    for (const QByteArray &path : {step.path, step.target}) {
        require(path.isEmpty() || path.startsWith('/'));
        require(!path.contains("/../") && !path.endsWith("/..") && !path.contains('\0'));
    }
    require(!step.temporary.contains('/'));
    for (const doctor::Node &node : {step.from, step.to})
        require(!node.content ||
                (node.content->hash.size() == 64 && !node.content->hash.contains('/')));
}

void read(const QByteArray &content)
{
    const std::optional<Record> record = doctor::parsedRecord(content);
    if (!record || record->isDamaged)
        return;
    for (const doctor::Action &action : record->actions) {
        require(action.reached >= 0 && action.reached <= action.steps.size());
        for (const doctor::TreeStep &step : action.steps)
            requireHarmless(step);
    }
    require(!(record->isApplied() && record->isUndone()));
    const doctor::Action &action = record->actions.first();
    const std::optional<Record> again = doctor::parsedRecord(doctor::beginLine(*record, action));
    require(again && !again->isDamaged && again->actions.size() == 1);
    const QVector<doctor::TreeStep> &steps = again->actions.first().steps;
    require(steps.size() == action.steps.size());
    for (int i = 0; i < steps.size(); ++i)
        require(steps[i].path == action.steps[i].path &&
                doctor::areSame(steps[i].from, action.steps[i].from));
}

} // namespace

/// The journal's record of a repair, which a kill, a full disk or a hand may have spoilt.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = fuzzing::bytesOf(data, size);
    read(bytes);
    read(withChecksums(bytes));
    return 0;
}
