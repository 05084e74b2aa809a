#pragma once

#include <QByteArray>

#include <dirent.h>

namespace helio {

/// The entries of a directory, in the order in which the file system gives them. A symbolic link
/// is not followed.
class Directory
{
public:
    explicit Directory(const QByteArray &path);
    ~Directory();
    Q_DISABLE_COPY(Directory)

    bool isOpen() const;

    /// The next entry other than "." and ".."; null at the end.
    const dirent *next();

    bool isFolder(const dirent &entry) const;

private:
    DIR *m_stream = nullptr;
};

} // namespace helio
