#pragma once

#include <stdexcept>
#include <string>

namespace standin {

/// A document that cannot be read; the text says why, in words for the user.
class DocumentError : public std::runtime_error
{
public:
    explicit DocumentError(const std::string &reason) : std::runtime_error(reason) {}
};

} // namespace standin
