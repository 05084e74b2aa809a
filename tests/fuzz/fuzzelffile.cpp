#include <cstdint>
#include <cstdlib>

#include <sys/mman.h>
#include <unistd.h>

#include "programs/checktool/libraries/elffile.h"

/// Reads the input as a program or library of the machine that is checked.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const int descriptor = memfd_create("library", 0);
    if (descriptor < 0 || write(descriptor, data, size) != static_cast<ssize_t>(size))
        std::abort();
    programs::readElf(descriptor);
    close(descriptor);
    return 0;
}
