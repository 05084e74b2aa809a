#pragma once

#include <QString>

namespace OfficeAssiant {

/// One check to be made of the suite's environment.
struct EnvironmentCheck
{
    QString type;     ///< what is checked
    QString app;      ///< the component it is checked for
    QString argument; ///< for the check tool; often empty
};

} // namespace OfficeAssiant
