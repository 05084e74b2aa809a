#include <QUrl>

#include "servercheck/formdata.h"
#include "servercheck/testrequest.h"
#include "tests/fuzz/fuzzing.h"

using namespace OfficeAssiant;
using fuzzing::require;

/// What a user types for a test of a document server, one piece a line: address, function, header
/// list, field list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString input = fuzzing::textOf(data, size);
    const QChar lineFeed = QLatin1Char('\n');
    const ServerTest test{input.section(lineFeed, 0, 0), input.section(lineFeed, 1, 1),
                          input.section(lineFeed, 2, 2), input.section(lineFeed, 3)};
    for (const QString &list : {test.headerList, test.formFieldList}) {
        const auto pairs = parseNameValueList(list);
        require(pairs.size() <= list.count(QLatin1Char(':')));
        for (const auto &pair : pairs)
            require(!(pair.first + pair.second).contains(QLatin1Char(';')));
    }
    const TestRequest made = makeTestRequest(test, QUrl(test.url));
    require(made.kind == requestKind(test.functionName));
    require(made.body.isEmpty() == (made.kind == RequestKind::Get));
    if (made.kind == RequestKind::MultipartPost) {
        require(formFields(test.formFieldList).contains(QStringLiteral("fileName")));
        require(made.body.endsWith("--\r\n"));
    }
    return 0;
}
