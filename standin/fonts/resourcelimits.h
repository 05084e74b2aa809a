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

/// Ends the process with a message when it has run for unreasonably long.
void limitProcessorTime();

} // namespace standin
