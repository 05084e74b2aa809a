#pragma once

#include <QByteArray>

#include <vector>

namespace helio {

/// A file or folder that a search found.
struct FoundFile
{
    QByteArray path;
    bool isDirectory = false;
};

using FoundFiles = std::vector<FoundFile>;

} // namespace helio
