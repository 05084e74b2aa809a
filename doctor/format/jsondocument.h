#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>
#include <utility>

#include <json/value.h>

#include "doctor/format/mistake.h"

namespace doctor {

class JsonDocument;

/// A value of a document, which must outlive it.
class JsonNode
{
public:
    bool isText() const { return m_value->isString(); }
    bool isNumber() const { return m_value->isNumeric() && !m_value->isBool(); }
    bool isFlag() const { return m_value->isBool(); }
    bool isList() const { return m_value->isArray(); }
    bool isObject() const { return m_value->isObject(); }

    /// A text, number or flag as it is written; empty for anything else. Reports control
    /// characters.
    QString text() const;
    QVector<JsonNode> items() const;
    QStringList names() const;
    /// Names that are not text can be seen here only.
    QVector<std::pair<QString, JsonNode>> members() const;
    std::optional<JsonNode> member(const char *name) const { return member(QLatin1String(name)); }
    std::optional<JsonNode> member(const QString &name) const;

    /// Notes a mistake at this value.
    void report(const QString &message) const;
    /// Notes a mistake at the name before this value, which is an object's member.
    void reportName(const QString &message) const;

private:
    friend class JsonDocument;
    JsonNode(JsonDocument &document, const Json::Value &value)
        : m_document(&document), m_value(&value)
    {
    }

    JsonDocument *m_document;
    const Json::Value *m_value;
};

/// A JSON text (RFC 8259) with the places of its values. Nested deeper than 32 levels it is
/// refused.
class JsonDocument
{
public:
    explicit JsonDocument(const QByteArray &content);
    Q_DISABLE_COPY(JsonDocument)

    /// Nothing if the text is not JSON; the mistakes say why.
    std::optional<JsonNode> root();
    const QVector<Mistake> &mistakes() const { return m_mistakes; }

private:
    friend class JsonNode;
    void parse();
    void reportAt(qint64 offset, const QString &message);
    qint64 nameBefore(qint64 offset) const;

    QByteArray m_content;
    Json::Value m_root;
    bool m_isJson = false;
    QVector<Mistake> m_mistakes;
};

} // namespace doctor
