#include "doctor/machine/filereading.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "texts/texts.h"

namespace doctor {

namespace {

constexpr qint64 piece = 64 * 1024;

QString systemProblem()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

class Descriptor
{
public:
    Descriptor(const QString &path, int flags)
    {
        const QByteArray name = QFile::encodeName(path);
        const int common = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY | flags;
        m_number = open(name.constData(), common | O_NOATIME);
        // Only the owner may leave the time of access alone.
        if (m_number < 0 && errno == EPERM)
            m_number = open(name.constData(), common);
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }
    Q_DISABLE_COPY(Descriptor)

    int number() const { return m_number; }
    int release() { return std::exchange(m_number, -1); }

private:
    int m_number = -1;
};

FileContent tooLarge(qint64 largest)
{
    return {std::nullopt, texts::tr("larger than %1 bytes").arg(largest)};
}

FileContent readOpened(int descriptor, qint64 largest)
{
    QByteArray content;
    while (content.size() <= largest) {
        const int before = content.size();
        const qint64 wanted = std::min(piece, largest + 1 - before);
        content.resize(before + static_cast<int>(wanted));
        const ssize_t count =
            read(descriptor, content.data() + before, static_cast<std::size_t>(wanted));
        if (count < 0 && errno == EINTR) {
            content.resize(before);
            continue;
        }
        if (count < 0)
            return {std::nullopt, systemProblem()};
        content.resize(before + static_cast<int>(count));
        if (count == 0)
            return {content, {}};
    }
    return tooLarge(largest);
}

/// A regular file, opened for reading.
class OpenedFile
{
public:
    explicit OpenedFile(const QString &path)
    {
        // Opening a device or a pipe can have an effect of its own.
        if (QFile::exists(path) && !isRegular(path)) {
            m_problem = notRegular();
            return;
        }
        m_file.emplace(path, 0);
        struct stat state;
        if (m_file->number() < 0 || fstat(m_file->number(), &state) != 0)
            m_problem = systemProblem();
        else if (!S_ISREG(state.st_mode))
            m_problem = notRegular();
        else
            m_size = state.st_size;
    }

    int number() const { return m_file->number(); }
    const QString &problem() const { return m_problem; }
    /// What the file system says: 0 for what a kernel makes when it is read.
    qint64 size() const { return m_size; }

private:
    static QString notRegular() { return texts::tr("not a regular file"); }
    static bool isRegular(const QString &path)
    {
        struct stat state;
        return stat(QFile::encodeName(path).constData(), &state) == 0 && S_ISREG(state.st_mode);
    }

    std::optional<Descriptor> m_file;
    QString m_problem;
    qint64 m_size = 0;
};

} // namespace

FileContent readFile(const QString &path, qint64 largest)
{
    const OpenedFile file(path);
    if (!file.problem().isEmpty())
        return {std::nullopt, file.problem()};
    return file.size() > largest ? tooLarge(largest) : readOpened(file.number(), largest);
}

FileContent readPart(const QString &path, qint64 offset, qint64 length)
{
    const OpenedFile file(path);
    if (!file.problem().isEmpty())
        return {std::nullopt, file.problem()};
    QByteArray part(static_cast<int>(length), Qt::Uninitialized);
    const ssize_t count =
        pread(file.number(), part.data(), static_cast<std::size_t>(length), offset);
    if (count < 0)
        return {std::nullopt, systemProblem()};
    part.resize(static_cast<int>(count));
    return {part, {}};
}

std::optional<QStringList> namesIn(const QString &directory, int most)
{
    Descriptor opened(directory, O_DIRECTORY);
    if (opened.number() < 0)
        return std::nullopt;
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(fdopendir(opened.number()), &closedir);
    if (!entries)
        return std::nullopt;
    opened.release();
    QStringList names;
    while (names.size() < most) {
        const dirent *entry = readdir(entries.get());
        if (!entry)
            break;
        const QString name = QFile::decodeName(entry->d_name);
        if (name != QLatin1String(".") && name != QLatin1String(".."))
            names.append(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace doctor
