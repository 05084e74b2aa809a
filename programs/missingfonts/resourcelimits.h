#pragma once

namespace programs {

/// While one exists, the process cannot allocate more memory than reading a document needs:
/// further allocations throw std::bad_alloc. The readers normally stay well below.
class MemoryLimit
{
public:
    MemoryLimit();
    ~MemoryLimit();

private:
    unsigned long m_previous = 0;
};

/// Ends the process with a message and status 1 when it has run unreasonably long or memory runs
/// out where no exception can pass. libarchive's list of entries grows with the package, and it
/// calls exit() when it cannot allocate that.
void guardProcess();

} // namespace programs
