#pragma once

#include <stdexcept>
#include <string>

namespace programs {

/// The document cannot be read; the text tells the user why.
class DocumentError : public std::runtime_error
{
public:
    explicit DocumentError(const std::string &reason) : std::runtime_error(reason) {}
};

} // namespace programs
