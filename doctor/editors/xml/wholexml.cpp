#include "doctor/editors/xml/wholexml.h"

#include "doctor/editors/xml/xmlreader.h"

namespace doctor {

namespace {

constexpr char itemsBegin[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<oor:items xmlns:oor=\"http://openoffice.org/2001/registry\" "
                              "xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" "
                              "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n";
constexpr char itemsEnd[] = "</oor:items>\n";
constexpr char itemBegin[] = "<item ";
constexpr char itemEnd[] = "</item>";

} // namespace

XmlState xmlState(const QByteArray &content)
{
    XmlState state;
    XmlReader reader(content);
    for (;;) {
        const XmlToken token = reader.next();
        if (token.kind == XmlToken::Kind::Start && state.root.isEmpty())
            state.root = QString::fromUtf8(bytesIn(content, token.name));
        if (token.kind == XmlToken::Kind::Broken) {
            state.problem = reader.problem();
            state.line = lineAt(content, token.span.begin);
        }
        if (token.kind == XmlToken::Kind::Broken || token.kind == XmlToken::Kind::Finished) {
            state.isWhole = token.kind == XmlToken::Kind::Finished;
            return state;
        }
    }
}

QByteArray wholeItems(const QByteArray &content)
{
    QByteArray items = itemsBegin;
    for (int begin = content.indexOf(itemBegin); begin >= 0;) {
        const int next = content.indexOf(itemBegin, begin + 1);
        const int close = content.indexOf(itemEnd, begin);
        const bool isClosed = close >= 0 && (next < 0 || close < next);
        const QByteArray item =
            isClosed ? content.mid(begin, close + static_cast<int>(sizeof itemEnd) - 1 - begin)
                     : QByteArray();
        if (isClosed && xmlState(item).isWhole)
            items += item + '\n';
        begin = next;
    }
    return items + itemsEnd;
}

} // namespace doctor
