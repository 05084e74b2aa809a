#pragma once

#include <QByteArray>

#include <dirent.h>

namespace helio {

/// The entries of a directory, in the order of the file system. Does not open a symbolic link.
class Directory
{
public:
    explicit Directory(const QByteArray &path);
    ~Directory();
    Q_DISABLE_COPY(Directory)

    bool isOpen() const;

    /// The next entry, without "." and ".."; null at the end.
    const dirent *next();

    bool isFolder(const dirent &entry) const;

private:
    DIR *m_stream = nullptr;
};

} // namespace helio
