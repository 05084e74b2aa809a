#pragma once

#include <QString>

namespace helio {

/// A file or folder that a search found.
struct FileHit
{
    QString path;
    bool isDirectory = false;
};

} // namespace helio
