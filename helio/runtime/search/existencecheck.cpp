#include "helio/runtime/search/existencecheck.h"

#include <sys/stat.h>

#include "helio/runtime/search/directory.h"

namespace helio {

namespace {

// Listing a directory that is not large takes about as long as this many calls of lstat().
constexpr int mostAskedOneByOne = 12;
constexpr int largestListed = 10000;

ExistenceCheck::Kind ask(const char *path)
{
    struct stat status;
    if (::lstat(path, &status) != 0)
        return ExistenceCheck::Kind::Missing;
    return S_ISDIR(status.st_mode) ? ExistenceCheck::Kind::Folder : ExistenceCheck::Kind::Other;
}

} // namespace

ExistenceCheck::Kind ExistenceCheck::kindOf(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    enter(path.substr(0, slash));
    if (!m_isListed && m_askedOneByOne++ == mostAskedOneByOne)
        list();
    if (!m_isListed)
        return ask(path.data());
    const std::string_view name = path.substr(slash + 1);
    return m_entries.value(QByteArray::fromRawData(name.data(), static_cast<int>(name.size())),
                           Kind::Missing);
}

void ExistenceCheck::enter(std::string_view directory)
{
    if (directory == m_directory)
        return;
    m_directory = directory;
    m_askedOneByOne = 0;
    m_isListed = false;
}

void ExistenceCheck::list()
{
    m_entries.clear();
    Directory directory(QByteArray::fromStdString(m_directory.empty() ? "/" : m_directory));
    while (const dirent *entry = directory.next()) {
        if (m_entries.size() == largestListed)
            return;
        m_entries.insert(entry->d_name, directory.isFolder(*entry) ? Kind::Folder : Kind::Other);
    }
    m_isListed = directory.isOpen();
}

} // namespace helio
