#pragma once

#include <QByteArray>
#include <QHash>

#include <string>
#include <string_view>

namespace helio {

/// Tells what paths stand for. Quick when many of one directory are asked for in a row: that is
/// then listed, and what changes in it meanwhile goes unnoticed.
class ExistenceCheck
{
public:
    enum class Kind {
        Missing,
        Folder,
        Other
    };

    /// @p path is absolute and has a null character behind it.
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
