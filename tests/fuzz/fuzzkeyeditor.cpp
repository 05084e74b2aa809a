#include <QJsonDocument>
#include <QXmlStreamReader>

#include <algorithm>

#include "doctor/editors/keyeditor.h"
#include "doctor/editors/lineeditor.h"
#include "tests/fuzz/fuzzing.h"

using namespace doctor;
using fuzzing::require;

namespace {

/// The key's parts in a line with "|" between them, the value in a line, then the content.
struct Input
{
    QString key;
    QString value;
    QByteArray content;
};

QByteArray takeLine(QByteArray &text)
{
    const int end = text.indexOf('\n');
    const QByteArray line = end < 0 ? text : text.left(end);
    text = end < 0 ? QByteArray() : text.mid(end + 1);
    return line;
}

Input inputOf(QByteArray text)
{
    Input input;
    const QByteArray key = takeLine(text);
    const QByteArray value = takeLine(text);
    input.key = QString::fromUtf8(key.constData(), key.size());
    input.value = QString::fromUtf8(value.constData(), value.size());
    input.content = text;
    return input;
}

bool isAscii(const QByteArray &bytes)
{
    return std::none_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
}

void requireReadable(Format format, const QByteArray &content)
{
    const bool hasMark = content.startsWith("\xef\xbb\xbf");
    if (format == Format::Json) {
        const QByteArray text = hasMark ? content.mid(3) : content;
        QJsonParseError error;
        QJsonDocument::fromJson(text, &error);
        // Qt takes no value alone.
        require(error.error == QJsonParseError::NoError ||
                error.error == QJsonParseError::IllegalValue);
    } else if ((format == Format::Xml || format == Format::Xcu) && isAscii(content)) {
        // Qt knows fewer letters for names than XML does since its fifth edition.
        QXmlStreamReader reader(content);
        reader.setNamespaceProcessing(false);
        while (!reader.atEnd())
            reader.readNext();
        require(!reader.hasError());
    }
}

/// True for a step such as "b[@k=v]", which setting "@k" would make fit no longer.
bool choosesByAttribute(const QStringList &key)
{
    return key.join(QString()).contains(QLatin1String("[@"));
}

void editKey(Format format, const Input &input)
{
    const KeyEditor &editor = keyEditor(format);
    const QStringList key = input.key.split(QLatin1Char('|'));
    const auto before = editor.find(input.content, key);
    const EditedContent set = editor.set(input.content, key, input.value);
    const EditedContent removed = editor.remove(input.content, key);
    require(set.content.has_value() == set.problem.isEmpty());
    require(removed.content.has_value() == removed.problem.isEmpty());
    if (removed.content) {
        requireReadable(format, *removed.content);
        require(format == Format::Xml || !editor.find(*removed.content, key));
        require(before.has_value() || *removed.content == input.content);
        require(removed.content->size() <= input.content.size());
    }
    if (!set.content)
        return;
    requireReadable(format, *set.content);
    if (format == Format::Xml && choosesByAttribute(key))
        return;
    const auto after = editor.find(*set.content, key);
    require(after && after->value == input.value);
    const EditedContent again = editor.set(*set.content, key, input.value);
    require(again.content && *again.content == *set.content);
}

void editLine(LineQuery::Kind kind, const Input &input)
{
    const LineQuery query{kind, input.key};
    const FoundLine found = findLine(input.content, query);
    const EditedContent removed = removeLine(input.content, query);
    const EditedContent replaced = replaceLine(input.content, query, input.value);
    require(removed.content.has_value() == found.problem.isEmpty());
    require(!found.line || found.problem.isEmpty());
    if (!found.line)
        return;
    require(removed.content->size() <= input.content.size());
    require(!replaced.content || replaced.content->contains(input.value.toUtf8()));
}

} // namespace

/// A key or line of a file that others wrote; the first byte tells of which format.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const Input input = inputOf(fuzzing::bytesOf(data + 1, size - 1));
    switch (data[0] % 8) {
    case 0:
        editKey(Format::Ini, input);
        break;
    case 1:
        editKey(Format::DesktopEntry, input);
        break;
    case 2:
        editKey(Format::Json, input);
        break;
    case 3:
        editKey(Format::Xml, input);
        break;
    case 4:
        editKey(Format::Xcu, input);
        break;
    case 5:
        editLine(LineQuery::Kind::Pattern, input);
        break;
    case 6:
        editLine(LineQuery::Kind::Whole, input);
        break;
    default:
        editLine(LineQuery::Kind::Part, input);
        break;
    }
    return 0;
}
