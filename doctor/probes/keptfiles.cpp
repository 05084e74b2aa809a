#include "doctor/probes/facts.h"

namespace doctor {

namespace {

constexpr qint64 largestFile = 16 * 1024 * 1024;
constexpr qint64 mostKeptBytes = 24 * 1024 * 1024;
constexpr int mostKeptFiles = 4096;

} // namespace

FileContent Facts::file(const Machine &machine, const QString &path)
{
    const QString located = machine.located(path);
    std::shared_ptr<KeptFile> kept;
    {
        const std::lock_guard<std::mutex> lock(m_filesMutex);
        kept = m_files.value(located);
        if (!kept) {
            kept = std::make_shared<KeptFile>();
            if (m_files.size() < mostKeptFiles)
                m_files.insert(located, kept);
        }
    }
    // Other probes that want this file wait for it; those that want others do not.
    std::call_once(kept->read, [&] {
        kept->file = readFile(located, largestFile);
        const qint64 size = kept->file.content ? kept->file.content->size() : 0;
        const std::lock_guard<std::mutex> lock(m_filesMutex);
        if (m_keptBytes + size > mostKeptBytes)
            m_files.remove(located);
        else
            m_keptBytes += size;
    });
    return kept->file;
}

} // namespace doctor
