#include "input/inputenvironment.h"

#include <unistd.h>

namespace OfficeAssiant {

namespace {

// The name includes the beginning of the value: XMODIFIERS can hold more than "@im=…", and only an
// input method at the very beginning counts.
constexpr char xModifiersName[] = "XMODIFIERS=@im";
constexpr char qtModuleName[] = "QT_IM_MODULE";

QString lowerCaseName(const QByteArray &variable)
{
    return QString::fromLatin1(environmentValue(variable)).toLower();
}

} // namespace

QByteArray environmentValue(const QByteArray &name)
{
    const QByteArray beginning = name + '=';
    for (char **entry = environ; entry && *entry; ++entry) {
        if (qstrncmp(*entry, beginning.constData(), static_cast<uint>(beginning.size())) == 0)
            return QByteArray(*entry + beginning.size());
    }
    return {};
}

QString xModifiersInputMethod()
{
    return lowerCaseName(xModifiersName);
}

QString qtInputMethod()
{
    return lowerCaseName(qtModuleName);
}

} // namespace OfficeAssiant
