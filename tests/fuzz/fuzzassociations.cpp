#include <algorithm>

#include "doctor/why/open/entries.h"
#include "doctor/why/open/keyfile.h"
#include "doctor/why/open/magic.h"
#include "tests/fuzz/fuzzing.h"

using namespace doctor;
using fuzzing::require;

namespace {

void readKeyFile(const QByteArray &content)
{
    const KeyFile file = parseKeyFile(content);
    const int lines = content.count('\n') + 1;
    require(file.brokenLine >= 0 && file.brokenLine <= lines);
    require(file.brokenLine == 0 || file.lines.isEmpty());
    int last = 0;
    for (const KeyFileLine &line : file.lines) {
        require(line.line > last && line.line <= lines);
        last = line.line;
        require(!line.group.isEmpty() && !line.key.isEmpty());
        require(content.contains(line.value));
        const auto parts = listValue(line.value);
        require(!parts || parts->size() <= line.value.count(';') + 1);
        // What a list takes is text as well.
        require(!parts || textValue(line.value));
    }
}

void readMagic(const QByteArray &content)
{
    const QVector<MagicType> types = parseMagic(content);
    for (const MagicType &type : types) {
        for (const MagicRule &rule : type.rules)
            require(!rule.value.isEmpty() && rule.range > 0 && rule.offset >= 0);
    }
    const MagicType *found = matchingType(types, content);
    require(found == nullptr || !found->rules.isEmpty());
}

} // namespace

/// The first byte chooses what is read.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QByteArray content = input.mid(1);
    switch (input.isEmpty() ? 'k' : input.front()) {
    case 'm':
        readMagic("MIME-Magic" + content);
        break;
    case 'c':
        require(programOf(QString::fromUtf8(content)).size() <= content.size());
        break;
    default:
        readKeyFile(content);
    }
    return 0;
}
