#include "tests/programs/missingfonts/packagebuilder.h"

#include <memory>

#include <archive.h>
#include <archive_entry.h>

#include <QFile>

namespace testsupport {

namespace {

const QByteArray declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

const QByteArray namespaces =
    " xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\""
    " xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\""
    " xmlns:s=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\""
    " xmlns:p=\"http://schemas.openxmlformats.org/presentationml/2006/main\""
    " xmlns:c=\"http://schemas.openxmlformats.org/drawingml/2006/chart\""
    " xmlns:m=\"http://schemas.openxmlformats.org/officeDocument/2006/math\""
    " xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\""
    " xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\"";

struct WriterCloser
{
    void operator()(archive *writer) const { archive_write_free(writer); }
};

void check(archive *writer, int status)
{
    if (status != ARCHIVE_OK)
        qFatal("cannot write a package: %s", archive_error_string(writer));
}

void writePart(archive *writer, const QString &name, const QByteArray &content)
{
    const std::unique_ptr<archive_entry, decltype(&archive_entry_free)> entry(archive_entry_new(),
                                                                              archive_entry_free);
    archive_entry_set_pathname(entry.get(), name.toUtf8().constData());
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), 0644);
    archive_entry_set_size(entry.get(), content.size());
    check(writer, archive_write_header(writer, entry.get()));
    if (archive_write_data(writer, content.constData(), static_cast<std::size_t>(content.size())) !=
        content.size())
        qFatal("cannot write a package: %s", archive_error_string(writer));
}

QString relationshipsPart(const QString &source)
{
    const int slash = source.lastIndexOf(QLatin1Char('/'));
    return source.left(slash + 1) + QStringLiteral("_rels/") + source.mid(slash + 1) +
           QStringLiteral(".rels");
}

} // namespace

void PackageBuilder::add(const QString &name, const QByteArray &content)
{
    m_parts.push_back({name, content});
}

void PackageBuilder::addXml(const QString &name, const QByteArray &content)
{
    int rootEnd = content.indexOf('>');
    if (content.at(rootEnd - 1) == '/')
        --rootEnd;
    add(name, declaration + content.left(rootEnd) + namespaces + content.mid(rootEnd));
}

void PackageBuilder::relate(const QString &source, const QString &type, const QString &target)
{
    QByteArray &links = m_relationships[source];
    links += "<Relationship Id=\"r" + QByteArray::number(links.count("<") + 1) +
             "\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/" +
             type.toUtf8() + "\" Target=\"" + target.toUtf8() + "\"/>";
}

void PackageBuilder::write(const QString &path) const
{
    const std::unique_ptr<archive, WriterCloser> writer(archive_write_new());
    check(writer.get(), archive_write_set_format_zip(writer.get()));
    check(writer.get(),
          archive_write_open_filename(writer.get(), QFile::encodeName(path).constData()));
    for (auto links = m_relationships.cbegin(); links != m_relationships.cend(); ++links)
        writePart(writer.get(), relationshipsPart(links.key()),
                  declaration +
                      "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/"
                      "relationships\">" +
                      links.value() + "</Relationships>");
    for (const Part &part : m_parts)
        writePart(writer.get(), part.name, part.content);
    check(writer.get(), archive_write_close(writer.get()));
}

} // namespace testsupport
