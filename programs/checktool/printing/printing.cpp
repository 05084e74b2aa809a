#include "programs/checktool/printing/printing.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "programs/checktool/machine/machine.h"
#include "programs/checktool/printing/printingprofile.h"
#include "programs/process/boundedprogram.h"
#include "programs/suitehome/suitehome.h"
#include "suites/installation.h"
#include "texts/texts.h"

namespace programs {

namespace {

const QStringList converters = {QStringLiteral("soffice"), QStringLiteral("libreoffice")};
/// Where office suites are installed that have no link in PATH.
const QStringList converterPlaces = {QStringLiteral("/usr/lib/libreoffice/program"),
                                     QStringLiteral("/opt/libreoffice/program"),
                                     QStringLiteral("/usr/local/bin"), QStringLiteral("/usr/bin")};
constexpr std::chrono::seconds longestSearch(2);
constexpr int beginningBytes = 4096;
/// ZIP packages, OLE2 files and text in UTF-16.
const QList<QByteArray> documentSignatures = {"PK\x03\x04", "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1",
                                              "\xff\xfe", "\xfe\xff"};
const QString workName = QStringLiteral("print-");
constexpr qint64 leftoverSeconds = 3600;

[[noreturn]] void fail(const QString &text)
{
    throw std::runtime_error(text.toStdString());
}

/// The installation that the user has chosen to be looked after; empty if none was.
QString chosenConverter(const Machine &machine)
{
    doctor::Machine looked = doctor::thisMachine();
    looked.root = machine.root;
    const doctor::Deadline deadline(longestSearch);
    for (const suites::Description &suite : suites::descriptions()) {
        const auto kept =
            suites::keptChoice(suites::installations(suite, looked, deadline), looked);
        // A confined one does not see the copy that is printed.
        if (kept && kept->command.size() == 1)
            return kept->command.first();
    }
    return {};
}

QString findConverter(const Machine &machine)
{
    QString chosen = chosenConverter(machine);
    if (!chosen.isEmpty())
        return chosen;
    QStringList places = machine.variable("PATH").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString &place : converterPlaces)
        places.append(machine.root + place);
    for (const QString &name : converters) {
        QString program = QStandardPaths::findExecutable(name, places);
        if (!program.isEmpty())
            return program;
    }
    fail(texts::tr("no office suite that can print documents to PDF from here is installed; "
                   "install libreoffice-writer, libreoffice-calc and libreoffice-impress, or "
                   "export to PDF in your suite"));
}

/// A converter takes a damaged document for text and would print it as that.
bool isDocument(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray beginning = file.read(beginningBytes);
    for (const QByteArray &signature : documentSignatures) {
        if (beginning.startsWith(signature))
            return true;
    }
    static const QByteArray usualControls = "\t\n\f\r";
    return std::none_of(beginning.begin(), beginning.end(), [](char c) {
        return static_cast<uchar>(c) < ' ' && !usualControls.contains(c);
    });
}

void checkDocument(const QFileInfo &document)
{
    if (!document.exists())
        fail(texts::tr("there is no document %1").arg(document.filePath()));
    if (!document.isFile())
        fail(texts::tr("%1 is not a file").arg(document.filePath()));
    if (!document.isReadable())
        fail(texts::tr("%1 cannot be read").arg(document.filePath()));
    if (!isDocument(document.filePath()))
        fail(texts::tr("%1 is damaged or no document").arg(document.filePath()));
}

/// An earlier print's file would be taken for the new one.
void removeEarlier(const QString &pdf)
{
    const QFileInfo information(pdf);
    if (!information.exists() && !information.isSymLink())
        return;
    if (information.isDir() && !information.isSymLink())
        fail(texts::tr("%1 is a directory").arg(pdf));
    if (!QFile::remove(pdf))
        fail(texts::tr("the earlier %1 cannot be removed").arg(pdf));
}

/// Left by prints that were ended with their session.
void removeLeftovers(const QString &directory)
{
    const QDateTime longAgo = QDateTime::currentDateTime().addSecs(-leftoverSeconds);
    const QFileInfoList leftovers = QDir(directory).entryInfoList(
        {workName + QLatin1Char('*')}, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QFileInfo &leftover : leftovers) {
        if (leftover.lastModified() < longAgo)
            QDir(leftover.filePath()).removeRecursively();
    }
}

/// A copy for the converter, which creates a lock file beside what it opens. It keeps its name: a
/// document may contain its file name as a field.
QString copyInto(const QString &directory, const QFileInfo &document)
{
    QString copy = directory + QStringLiteral("/document/") + document.fileName();
    if (!QDir().mkpath(QFileInfo(copy).path()) || !QFile::copy(document.filePath(), copy))
        fail(texts::tr("%1 cannot be copied to %2").arg(document.filePath(), copy));
    return copy;
}

/// The converter derives the name of the PDF from that of the document.
QString onlyPdfIn(const QString &directory)
{
    const QFileInfoList files =
        QDir(directory).entryInfoList({QStringLiteral("*.pdf")}, QDir::Files | QDir::Hidden);
    return files.size() == 1 ? files.first().filePath() : QString();
}

bool isPdf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(5) == "%PDF-";
}

QString reasonFor(const ProgramEnd &end, const QString &converter, int timeoutMs)
{
    if (end.kind == ProgramEnd::Kind::NotStarted)
        return texts::tr("%1 cannot be started").arg(converter);
    if (end.kind == ProgramEnd::Kind::TimedOut)
        return texts::tr("it took longer than %1 seconds").arg(QString::number(timeoutMs / 1000.0));
    if (end.kind == ProgramEnd::Kind::Crashed)
        return texts::tr("%1 crashed").arg(converter);
    const QString said = lastLine(end.errors);
    return said.isEmpty() ? texts::tr("%1 cannot read it").arg(converter) : said;
}

/// The path of the PDF in the working directory.
QString convert(const Machine &machine, const QString &converter, const QString &work,
                const QFileInfo &document, int timeoutMs)
{
    const QString profile = work + QStringLiteral("/profile");
    const QString output = work + QStringLiteral("/output");
    if (!writePrintingProfile(profile) || !QDir().mkpath(output))
        fail(texts::tr("cannot write into %1").arg(work));
    const QString copy = copyInto(work, document);
    const ProgramEnd end =
        runBounded(converter,
                   {QStringLiteral("-env:UserInstallation=") +
                        QUrl::fromLocalFile(profile).toString(QUrl::FullyEncoded),
                    QStringLiteral("--headless"), QStringLiteral("--norestore"),
                    QStringLiteral("--convert-to"), QStringLiteral("pdf"),
                    QStringLiteral("--outdir"), output, copy},
                   machine.environment, timeoutMs);
    QString pdf = onlyPdfIn(output);
    // Its exit status is 0 even if it could not read the document.
    if (!end.hasSucceeded() || pdf.isEmpty() || !isPdf(pdf))
        fail(texts::tr("%1 could not be printed: %2")
                 .arg(document.filePath(), reasonFor(end, converter, timeoutMs)));
    return pdf;
}

} // namespace

QString printDocument(const Machine &machine, const QString &document, int timeoutMs)
{
    const QFileInfo source(document);
    const QString directory = answerDirectory(machine.suiteHome);
    QString pdf = QStringLiteral("%1/%2.pdf").arg(directory, source.baseName());
    if (source.exists() && source.canonicalFilePath() == QFileInfo(pdf).canonicalFilePath())
        fail(texts::tr("%1 is where the printed document has to go").arg(document));
    removeEarlier(pdf);
    checkDocument(source);
    if (!QDir().mkpath(directory))
        fail(texts::tr("cannot make the directory %1").arg(directory));
    removeLeftovers(directory);
    const QString converter = findConverter(machine);
    // On the same disk, so that rename() can put the finished file in place.
    const QTemporaryDir work(directory + QLatin1Char('/') + workName);
    if (!work.isValid())
        fail(texts::tr("cannot write into %1").arg(directory));
    const QString made = convert(machine, converter, work.path(), source, timeoutMs);
    if (std::rename(QFile::encodeName(made).constData(), QFile::encodeName(pdf).constData()) != 0)
        fail(texts::tr("%1 cannot be written").arg(pdf));
    return pdf;
}

} // namespace programs
