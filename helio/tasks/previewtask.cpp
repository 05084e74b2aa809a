#include <QDateTime>
#include <QFileInfo>
#include <QTemporaryDir>

#include "doctor/machine/filereading.h"
#include "helio/tasks/running/taskprogram.h"
#include "helio/tasks/tasks.h"

namespace helio {

namespace {

constexpr qint64 largestPicture = 8 * 1024 * 1024;
constexpr qint64 mostText = 4096;

/// The type of a picture that Chromium draws, by its first bytes; empty for anything else.
QByteArray pictureType(const QByteArray &content)
{
    if (content.startsWith("\x89PNG"))
        return "image/png";
    if (content.startsWith("\xFF\xD8\xFF"))
        return "image/jpeg";
    if (content.startsWith("GIF8"))
        return "image/gif";
    if (content.startsWith("RIFF") && content.mid(8, 4) == "WEBP")
        return "image/webp";
    return content.startsWith("BM") ? QByteArray("image/bmp") : QByteArray();
}

QString dataAddress(const QByteArray &type, const QByteArray &content)
{
    return QString::fromLatin1("data:" + type + ";base64," + content.toBase64());
}

/// The first page of a PDF as a picture; empty where that cannot be drawn.
QString firstPage(const QString &path, const std::function<bool()> &isCancelled)
{
    const QTemporaryDir directory;
    const QString target = directory.filePath(QStringLiteral("page"));
    runProgram(
        {QStringLiteral("pdftoppm"),
         {QStringLiteral("-png"), QStringLiteral("-singlefile"), QStringLiteral("-f"),
          QStringLiteral("1"), QStringLiteral("-scale-to"), QStringLiteral("900"), path, target}},
        isCancelled);
    const auto page = doctor::readFile(target + QStringLiteral(".png"), largestPicture).content;
    return page && !page->isEmpty() ? dataAddress("image/png", *page) : QString();
}

/// The beginning of a text; empty for what is none.
QString textOf(const QByteArray &start)
{
    return start.contains('\0') ? QString() : QString::fromUtf8(start);
}

} // namespace

TaskEnd tasks::previewFile(const TaskRun &run)
{
    const QString path = run.text("path");
    const QByteArray start = doctor::readPart(path, 0, mostText).content.value_or(QByteArray());
    const QFileInfo file(path);
    QJsonObject answer{
        {QStringLiteral("exists"), file.isFile() && file.isReadable()},
        {QStringLiteral("size"), double(file.size())},
        {QStringLiteral("changed"), file.lastModified().toUTC().toString(Qt::ISODate)}};
    const QByteArray type = pictureType(start);
    if (!type.isEmpty()) {
        const auto content = doctor::readFile(path, largestPicture).content;
        answer.insert(QStringLiteral("picture"), content ? dataAddress(type, *content) : QString());
    } else if (start.startsWith("%PDF-")) {
        answer.insert(QStringLiteral("picture"), firstPage(path, run.isCancelled));
    } else {
        answer.insert(QStringLiteral("text"), textOf(start));
    }
    if (run.isCancelled())
        return TaskEnd::cancelled();
    TaskEnd end;
    end.answer = answer;
    return end;
}

} // namespace helio
