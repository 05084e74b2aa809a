#pragma once

#include <QByteArray>
#include <QHash>

#include <string>
#include <string_view>

namespace helio {

/// Tells whether paths exist and which are folders. After several paths of one directory in a row
/// it lists that directory, which is faster; later changes in it go unnoticed.
class ExistenceCheck
{
public:
    enum class Kind {
        Missing,
        Folder,
        Other
    };

    /// @p path is absolute and followed by a null character.
    Kind kindOf(std::string_view path);

private:
    void enter(std::string_view directory);
    void list();

    std::string m_directory;
    int m_askedOneByOne = 0;
    bool m_isListed = false;
    QHash<QByteArray, Kind> m_entries;
};

} // namespace helio
