#include "info/kinfohelp.h"

#include <QFile>
#include <QTextStream>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OfficeAssiant {

namespace {

constexpr char lineEnd[] = "\r\n";

QString marker(const char *section, const char *edge)
{
    return QStringLiteral("************%1-%2***********\r\n")
        .arg(QLatin1String(section), QLatin1String(edge));
}

/// Writes a section: @p writeContent between its two marker lines.
template<typename WriteContent>
void writeSection(QTextStream &stream, const char *section, WriteContent writeContent)
{
    stream << marker(section, "begin");
    writeContent();
    stream << marker(section, "end");
}

void writeLines(QTextStream &stream, const QStringList &lines)
{
    for (const QString &line : lines) {
        if (!line.isEmpty())
            stream << line << QLatin1String(lineEnd);
    }
}

void writeLines(QTextStream &stream, const QString &text)
{
    writeLines(stream, text.split(QLatin1Char('\n')));
}

/// Only the user can read a new file, since the environment may hold secrets. A pipe is refused:
/// one that nobody reads would block forever.
bool openToAppend(QFile &file, const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(),
                                  O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK,
                                  S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return false;
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || S_ISFIFO(status.st_mode)) {
        ::close(descriptor);
        return false;
    }
    ::fcntl(descriptor, F_SETFL, O_APPEND);
    return file.open(descriptor, QIODevice::WriteOnly | QIODevice::Append, QFile::AutoCloseHandle);
}

QString loginName()
{
    const passwd *entry = ::getpwuid(::getuid());
    return entry ? QString::fromUtf8(entry->pw_name) : QString();
}

} // namespace

bool KInfoHelp::writeSysInfoReport(const QString &path, const ReportSections &sections)
{
    QFile file;
    if (!openToAppend(file, path))
        return true;
    QTextStream stream(&file);
    if (sections.kernel) {
        if (m_kernelInfo.isEmpty())
            getKernelInfo();
        writeSection(stream, "kernel", [&] { stream << m_kernelInfo << QLatin1String(lineEnd); });
    }
    if (sections.browser) {
        if (m_browserInfo.isEmpty())
            getBrowserInfo();
        writeSection(stream, "browser", [&] { writeLines(stream, m_browserInfo); });
    }
    if (sections.cpu) {
        if (m_cpuInfo.isEmpty())
            getCpuInfo();
        writeSection(stream, "cpu", [&] {
            writeLines(stream, m_cpuInfo);
            // Readers of the report expect the processors twice, the second time as printed.
            stream << m_cpuInfo << QLatin1String(lineEnd);
        });
    }
    if (sections.font) {
        if (m_fontInfo.isEmpty())
            getFontInfo();
        writeSection(stream, "font", [&] { writeLines(stream, m_fontInfo); });
    }
    if (sections.user) {
        if (m_userInfo.isEmpty())
            m_userInfo = loginName();
        writeSection(stream, "user", [&] { stream << m_userInfo << QLatin1String(lineEnd); });
    }
    if (sections.env) {
        if (m_envInfo.isEmpty())
            getEnvInfo();
        writeSection(stream, "env", [&] { writeLines(stream, m_envInfo); });
    }
    if (sections.otherOffice)
        writeSection(stream, "otheroffice", [&] { writeLines(stream, getOtherOfficeInfo()); });
    stream.flush();
    return stream.status() == QTextStream::Ok && file.flush();
}

} // namespace OfficeAssiant
