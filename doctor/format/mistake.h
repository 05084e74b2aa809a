#pragma once

#include <QString>

namespace doctor {

/// What is wrong in a file, with its place from 1; columns count characters.
struct Mistake
{
    int line = 1;
    int column = 1;
    QString message;
};

} // namespace doctor
