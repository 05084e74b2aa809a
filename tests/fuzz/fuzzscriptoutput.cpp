#include <QJsonObject>
#include <QLocale>

#include "desktop/associationlisting.h"
#include "info/machineload.h"
#include "tests/fuzz/fuzzing.h"

using fuzzing::require;

/// What the association script and free(1) print.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString output = fuzzing::textOf(data, size);
    const QJsonArray applications = OfficeAssiant::associationsOf(output);
    require(applications.size() == 3);
    for (const QJsonValue &application : applications) {
        const QJsonObject suffixes = application.toObject();
        for (const QJsonValue &finding : suffixes)
            require(finding.toString().count(QLatin1Char('|')) == 1);
    }
    const QJsonObject memory = OfficeAssiant::memoryUseOf(output);
    require(memory.size() == 2);
    for (const QJsonValue &figure : memory) {
        bool isNumber = false;
        QLocale::c().toDouble(figure.toString(), &isNumber);
        require(isNumber);
    }
    return 0;
}
