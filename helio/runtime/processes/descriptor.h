#pragma once

#include <utility>

#include <unistd.h>

namespace helio {

/// Owns a file descriptor.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    Descriptor(Descriptor &&other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    ~Descriptor() { close(); }

    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }

    void close()
    {
        if (isOpen())
            ::close(m_number);
        m_number = -1;
    }

private:
    int m_number;
};

} // namespace helio
