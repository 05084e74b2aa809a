#pragma once

namespace standin {

/// While it lives, the process cannot take more memory than reading a document needs; more gives
/// std::bad_alloc. The readers keep well below by themselves.
class MemoryLimit
{
public:
    MemoryLimit();
    ~MemoryLimit();

private:
    unsigned long m_previous = 0;
};

/// Ends the process with a message and status 1 when it has run for unreasonably long, and when
/// memory runs out where no exception can pass: libarchive's list of entries grows with the
/// package, and it calls exit() when there is no room for it.
void guardProcess();

} // namespace standin
