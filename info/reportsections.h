#pragma once

namespace OfficeAssiant {

/// Which sections a system information report has, in the order in which they are written.
struct ReportSections
{
    bool kernel = true;
    bool browser = true;
    bool cpu = true;
    bool font = true;
    bool user = true;
    bool env = true;
    bool otherOffice = true;
};

} // namespace OfficeAssiant
