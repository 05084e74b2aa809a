#include "programs/replace/documentsearch.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include "programs/replace/archive/ziparchive.h"
#include "texts/texts.h"

namespace programs {

namespace {

constexpr int largestDocument = 64 << 20;
constexpr int largestPart = 64 << 20;
constexpr int largestWhole = 256 << 20;
constexpr int mostDocuments = 10000;

constexpr char archiveBegin[] = "PK\x03\x04";
/// Of the binary formats of before 2007.
constexpr char compoundBegin[] = "\xd0\xcf\x11\xe0";
/// One of its members holds the whole of a newer document that is protected.
constexpr char16_t encryptedMember[] = u"EncryptedPackage";
constexpr char manifest[] = "META-INF/manifest.xml";

/// Members with text, of each kind of document.
const QRegularExpression &textMembers(Markup markup)
{
    static const QRegularExpression openDocument(QStringLiteral("^(.*/)?(content|styles)\\.xml$"));
    static const QRegularExpression officeOpenXml(QStringLiteral("^/?(word|ppt|xl)/.*\\.xml$"));
    return markup == Markup::OpenDocument ? openDocument : officeOpenXml;
}

/// The older binary formats are looked at to name what is left out.
QStringList suffixes()
{
    QStringList patterns;
    for (const char *suffix :
         {"odt",  "ott",  "ods",  "ots",  "odp",  "otp",  "odg",  "otg",  "docx", "docm",
          "dotx", "dotm", "xlsx", "xlsm", "xltx", "xltm", "pptx", "pptm", "ppsx", "potx",
          "potm", "doc",  "dot",  "xls",  "xlt",  "ppt",  "pps",  "pot"})
        patterns.append(QStringLiteral("*.") + QLatin1String(suffix));
    return patterns;
}

/// Office programs leave a file beside a document that they have open.
bool isOpenElsewhere(const QFileInfo &file)
{
    const QString folder = file.path() + QLatin1Char('/');
    const QString name = file.fileName();
    return QFileInfo::exists(folder + QStringLiteral(".~lock.%1#").arg(name)) ||
           QFileInfo::exists(folder + QStringLiteral("~$") + name) ||
           QFileInfo::exists(folder + QStringLiteral("~$") + name.mid(2));
}

/// Why this kind of document cannot be changed; empty if it can.
QString refusal(const ZipArchive &archive, Markup &markup)
{
    const QByteArray type =
        archive.content(QStringLiteral("mimetype"), largestPart).value_or(QByteArray());
    const bool isOpenDocument = type.startsWith("application/vnd.oasis.opendocument.");
    markup = isOpenDocument ? Markup::OpenDocument : Markup::OfficeOpenXml;
    if (!isOpenDocument && !archive.has(QStringLiteral("[Content_Types].xml")))
        return texts::tr("it is neither an OpenDocument nor an Office Open XML document");
    const QByteArray list =
        archive.content(QLatin1String(manifest), largestPart).value_or(QByteArray());
    if (list.contains("encryption-data"))
        return texts::tr("it is protected with a password");
    for (const QString &name : archive.names()) {
        if (name == QLatin1String("META-INF/documentsignatures.xml") ||
            name.startsWith(QLatin1String("_xmlsignatures/")))
            return texts::tr("it is signed, and a change would break the signature");
    }
    return {};
}

/// Searches all parts; the reason if one cannot be read.
QString searchArchive(SearchedDocument &document, const QByteArray &bytes, const Search &search)
{
    const ZipArchive archive(bytes);
    Markup markup = Markup::OpenDocument;
    const QString reason =
        archive.problem().isEmpty() ? refusal(archive, markup) : archive.problem();
    if (!reason.isEmpty())
        return reason;
    QHash<QString, QByteArray> changed;
    int whole = 0;
    for (const QString &name : archive.names()) {
        if (!textMembers(markup).match(name).hasMatch())
            continue;
        const std::optional<QByteArray> content =
            archive.content(name, qMin(largestPart, largestWhole - whole));
        if (!content)
            return texts::tr("a part of it is damaged or too big");
        whole += content->size();
        const SearchedPart part = searchedPart(*content, markup, search);
        if (!part.problem.isEmpty())
            return part.problem;
        document.hits += part.hits;
        if (!part.hits.isEmpty())
            changed.insert(name, part.content);
    }
    if (!changed.isEmpty()) {
        document.before = bytes;
        document.after = archive.withContents(changed);
    }
    return {};
}

QString refusalOfCompound(const QByteArray &bytes)
{
    const QByteArray name(reinterpret_cast<const char *>(encryptedMember),
                          sizeof(encryptedMember) - sizeof(char16_t));
    return bytes.contains(name)
               ? texts::tr("it is protected with a password")
               : texts::tr("it is in an older binary format; save it in a newer one first, such as "
                           "OpenDocument");
}

} // namespace

SearchedDocument searchedDocument(const QString &path, const Search &search)
{
    SearchedDocument document;
    document.path = path;
    QFile file(path);
    if (!QFileInfo(path).isFile())
        document.problem = texts::tr("it is not a file");
    else if (isOpenElsewhere(QFileInfo(path)))
        document.problem = texts::tr("it is open in another program");
    else if (!file.open(QIODevice::ReadOnly))
        document.problem = file.errorString();
    else if (file.size() > largestDocument)
        document.problem = texts::tr("it is too big");
    else if (file.peek(4) == QByteArray(compoundBegin, 4))
        document.problem = refusalOfCompound(file.read(largestDocument));
    else if (file.peek(4) != QByteArray(archiveBegin, 4))
        document.problem =
            texts::tr("it is neither an OpenDocument nor an Office Open XML document");
    if (document.problem.isEmpty())
        document.problem = searchArchive(document, file.read(largestDocument), search);
    if (!document.problem.isEmpty())
        document.hits.clear();
    return document;
}

QStringList documentsIn(const QStringList &paths)
{
    QStringList documents;
    for (const QString &path : paths) {
        if (!QFileInfo(path).isDir()) {
            documents.append(path);
            continue;
        }
        QStringList here;
        QDirIterator entries(path, suffixes(), QDir::Files | QDir::NoSymLinks,
                             QDirIterator::Subdirectories);
        while (entries.hasNext() && documents.size() + here.size() < mostDocuments)
            here.append(entries.next());
        here.sort();
        documents += here;
    }
    return documents;
}

} // namespace programs
