#include "doctor/format/jsondocument.h"

#include <QRegularExpression>

#include <algorithm>
#include <exception>
#include <memory>

#include <json/reader.h>

#include "texts/texts.h"

namespace doctor {

namespace {

constexpr int deepestLevel = 32;
constexpr int mostMistakes = 100;

/// Where the text is nested too deeply, or -1.
int tooDeepAt(const QByteArray &content)
{
    int depth = 0;
    bool inText = false;
    for (int i = 0; i < content.size(); ++i) {
        const char character = content[i];
        if (inText) {
            if (character == '\\')
                ++i;
            else if (character == '"')
                inText = false;
        } else if (character == '"') {
            inText = true;
        } else if (character == '{' || character == '[') {
            if (++depth > deepestLevel)
                return i;
        } else if (character == '}' || character == ']') {
            --depth;
        }
    }
    return -1;
}

bool isBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

QString decoded(const Json::Value &value)
{
    const char *begin = nullptr;
    const char *end = nullptr;
    value.getString(&begin, &end);
    return QString::fromUtf8(begin, static_cast<int>(end - begin));
}

bool isControl(QChar character)
{
    return character.unicode() < 0x20 && character != QLatin1Char('\n') &&
           character != QLatin1Char('\t');
}

} // namespace

QString JsonNode::text() const
{
    if (isNumber() || isFlag()) {
        const auto begin = static_cast<int>(m_value->getOffsetStart());
        const auto end = static_cast<int>(m_value->getOffsetLimit());
        return QString::fromUtf8(m_document->m_content.mid(begin, end - begin));
    }
    if (!isText())
        return {};
    QString text = decoded(*m_value);
    if (std::any_of(text.begin(), text.end(), isControl))
        report(texts::tr("expected a text without control characters"));
    return text;
}

QVector<JsonNode> JsonNode::items() const
{
    QVector<JsonNode> nodes;
    if (isList()) {
        for (const Json::Value &item : *m_value)
            nodes.append(JsonNode(*m_document, item));
    }
    return nodes;
}

QVector<std::pair<QString, JsonNode>> JsonNode::members() const
{
    QVector<std::pair<QString, JsonNode>> members;
    if (isObject()) {
        for (auto member = m_value->begin(); member != m_value->end(); ++member)
            members.append({QString::fromStdString(member.name()), JsonNode(*m_document, *member)});
    }
    return members;
}

QStringList JsonNode::names() const
{
    QStringList names;
    for (const auto &[name, node] : members())
        names.append(name);
    return names;
}

std::optional<JsonNode> JsonNode::member(const QString &name) const
{
    const QByteArray key = name.toUtf8();
    const Json::Value *found =
        isObject() ? m_value->find(key.constData(), key.constData() + key.size()) : nullptr;
    return found ? std::optional(JsonNode(*m_document, *found)) : std::nullopt;
}

void JsonNode::report(const QString &message) const
{
    m_document->reportAt(m_value->getOffsetStart(), message);
}

void JsonNode::reportName(const QString &message) const
{
    m_document->reportAt(m_document->nameBefore(m_value->getOffsetStart()), message);
}

JsonDocument::JsonDocument(const QByteArray &content) : m_content(content)
{
    const int deep = tooDeepAt(m_content);
    if (deep >= 0) {
        reportAt(deep, texts::tr("nested deeper than %1 levels").arg(deepestLevel));
        return;
    }
    try {
        parse();
    } catch (const std::exception &error) {
        reportAt(0, QString::fromUtf8(error.what()));
    }
}

void JsonDocument::parse()
{
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    builder["stackLimit"] = 2 * deepestLevel;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    std::string errors;
    m_isJson = reader->parse(m_content.constData(), m_content.constData() + m_content.size(),
                             &m_root, &errors);
    if (m_isJson)
        return;
    // "* Line 1, Column 2\n  Message\nSee Line …"
    static const QRegularExpression form(
        QStringLiteral("\\* Line (\\d+), Column (\\d+)\\n\\s*([^\\n]*)"));
    const QRegularExpressionMatch match = form.match(QString::fromStdString(errors));
    const int line = std::max(1, match.captured(1).toInt());
    const QByteArray before =
        m_content.split('\n').value(line - 1).left(match.captured(2).toInt() - 1);
    m_mistakes.append({line, int(QString::fromUtf8(before).size()) + 1,
                       match.hasMatch() ? match.captured(3) : texts::tr("this is not JSON")});
}

std::optional<JsonNode> JsonDocument::root()
{
    return m_isJson ? std::optional(JsonNode(*this, m_root)) : std::nullopt;
}

void JsonDocument::reportAt(qint64 offset, const QString &message)
{
    if (m_mistakes.size() >= mostMistakes)
        return;
    const QByteArray before = m_content.left(static_cast<int>(offset));
    const int lineBegin = before.lastIndexOf('\n') + 1;
    m_mistakes.append({int(before.count('\n')) + 1,
                       int(QString::fromUtf8(before.mid(lineBegin)).size()) + 1, message});
}

/// The text is known to be JSON: a colon and the name's quotes stand before the value.
qint64 JsonDocument::nameBefore(qint64 offset) const
{
    int at = static_cast<int>(offset) - 1;
    while (at > 0 && (isBlank(m_content[at]) || m_content[at] == ':'))
        --at;
    const auto isEscaped = [this](int quote) {
        int slashes = 0;
        while (quote - 1 - slashes >= 0 && m_content[quote - 1 - slashes] == '\\')
            ++slashes;
        return slashes % 2 == 1;
    };
    do
        --at;
    while (at > 0 && (m_content[at] != '"' || isEscaped(at)));
    return std::max(at, 0);
}

} // namespace doctor
