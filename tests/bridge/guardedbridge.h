#pragma once

#include <cstddef>

#include <sys/mman.h>

#include "bridge/kvyrassistanttoolapi.h"

/// A bridge whose memory cannot be touched any more once it is deleted: what uses it then crashes.
class GuardedBridge : public KVyrAssistantToolAPI
{
public:
    using KVyrAssistantToolAPI::KVyrAssistantToolAPI;

    static void *operator new(std::size_t size)
    {
        void *memory =
            ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED)
            qFatal("no memory for a bridge");
        return memory;
    }

    static void operator delete(void *memory, std::size_t size)
    {
        ::mprotect(memory, size, PROT_NONE);
    }
};
