#pragma once

#include "doctor/editors/content/content.h"

#include <QVarLengthArray>

namespace doctor {

struct JsonToken
{
    enum class Kind {
        Name,
        String,
        Bare,
        Begin,
        End,
        Finished,
        Broken
    };

    Kind kind = Kind::Broken;
    Span span;
};

/// Reads JSON (RFC 8259) token by token. Commas and colons are checked and skipped.
class JsonReader
{
public:
    explicit JsonReader(const QByteArray &content);

    JsonToken next();
    /// What is wrong, after a broken token.
    QString problem() const { return m_problem; }
    /// How many objects and arrays are open.
    int depth() const { return m_open.size(); }
    /// Of the innermost one that is open.
    bool isInObject() const { return !m_open.isEmpty() && m_open.last() == '{'; }

private:
    /// What may stand next.
    enum class State {
        Value,
        First,
        AfterValue
    };

    char character() const;
    void skipSpace();
    JsonToken broken(const QString &problem);
    JsonToken readAfterValue();
    JsonToken readName();
    JsonToken readValue();
    JsonToken readBare();
    JsonToken open(char bracket);
    JsonToken close();
    bool readString();
    bool readEscape();
    bool skipDigits();
    bool readNumber();

    const QByteArray &m_content;
    QString m_problem;
    QVarLengthArray<char, maximumDepth> m_open;
    State m_state = State::Value;
    int m_position;
};

/// The text of a string with its quotes.
QString decodedJson(const QByteArray &string);
QByteArray encodedJson(const QString &text);
/// A number, true, false or null.
bool isBareJson(const QByteArray &text);

} // namespace doctor
