#include "programs/missingfonts/documentfonts.h"

#include <algorithm>
#include <optional>

#include <QFile>
#include <QFileInfo>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/ole/oledocument.h"
#include "programs/missingfonts/ooxml/sheet/sheetdocument.h"
#include "programs/missingfonts/ooxml/slide/presentationdocument.h"
#include "programs/missingfonts/ooxml/word/worddocument.h"
#include "programs/missingfonts/package/archivepackage.h"
#include "programs/missingfonts/package/partname.h"
#include "programs/missingfonts/package/relationships.h"
#include "programs/missingfonts/rtf/rtfdocument.h"
#include "programs/missingfonts/xml/xmlelement.h"
#include "programs/missingfonts/xml/xmlscanner.h"

namespace programs {

namespace {

[[noreturn]] void unknownKind()
{
    throw DocumentError("the document is of a kind that cannot be read");
}

/// Keeps the root element of a part.
class RootElement : public XmlHandler
{
public:
    bool startElement(const XmlElement &element) override
    {
        m_tag = element.tag();
        return false;
    }

    /// None until the root element has been read.
    std::optional<Tag> tag() const { return m_tag; }

private:
    std::optional<Tag> m_tag;
};

std::optional<Tag> rootTag(PackagePart &part)
{
    if (endsWith(part.name(), ".bin"))
        return sheetTag("workbook");
    // The root element comes first; the rest need not be read.
    constexpr std::size_t beginningBytes = 65536;
    RootElement root;
    XmlScanner scanner(root);
    std::size_t seen = 0;
    part.read([&](const char *data, std::size_t size) {
        const std::size_t piece = std::min(size, beginningBytes - seen);
        scanner.feed(data, piece);
        seen += piece;
        return !root.tag() && seen < beginningBytes;
    });
    return root.tag();
}

void readPackage(const QString &path, FontUsage &usage)
{
    ArchivePackage package(QFile::encodeName(path).toStdString());
    const Relationships relationships(package);
    const std::string mainPart = relationships.target({}, "officeDocument");
    std::optional<Tag> kind;
    package.read({{mainPart, [&](PackagePart &part) { kind = rootTag(part); }}});
    if (kind == wordTag("document"))
        readWordDocument(package, relationships, mainPart, usage);
    else if (kind == sheetTag("workbook"))
        readWorkbook(package, relationships, mainPart, usage);
    else if (kind == presentationTag("presentation"))
        readPresentation(package, relationships, mainPart, usage);
    else
        unknownKind();
}

bool isRtf(const QByteArray &start)
{
    return start.trimmed().startsWith("{\\rtf");
}

} // namespace

std::vector<UsedFamily> documentFonts(const QString &path)
{
    if (!QFileInfo(path).isFile())
        throw DocumentError("the document is not a file");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw DocumentError("the document cannot be read: " + file.errorString().toStdString());
    const QByteArray start = file.peek(64);
    FontUsage usage;
    if (start.startsWith("PK\x03\x04")) {
        readPackage(path, usage);
    } else if (start.startsWith("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1")) {
        readOleDocument(file, usage);
    } else if (isRtf(start)) {
        readRtfDocument(file, usage);
    } else {
        unknownKind();
    }
    return usage.used();
}

} // namespace programs
