#pragma once

#include <QByteArray>
#include <QVector>

namespace doctor {

/// A piece of a shell script: a word, an operator such as "&&", or the end of a line.
struct ShellToken
{
    enum class Kind {
        Word,
        Operator,
        NewLine,
        End,
        Broken, ///< a quote or substitution that does not end
    };

    Kind kind = Kind::End;
    /// Without quotes; operators as they stand.
    QByteArray text;
    /// As it stands in the script.
    QByteArray raw;
    /// From 1, where it begins.
    int line = 1;
    /// Whether the text is what the shell makes of the word: nothing is substituted.
    bool isLiteral = true;
    /// Whether the shell could make names of files or several words of it.
    bool isPattern = false;
    bool isQuoted = false;
    /// Where the first "=" stands in the text if all before it is unquoted; -1 otherwise.
    int equals = -1;
};

/// Splits a script as a POSIX shell does. Comments and the lines of here-documents are left out.
class ShellLexer
{
public:
    explicit ShellLexer(const QByteArray &script) : m_script(script) {}

    ShellToken next();

private:
    char at(int position) const
    {
        return position < m_script.size() ? m_script.at(position) : '\0';
    }
    bool isAtEnd() const { return m_position >= m_script.size(); }
    void skipBlanks();
    ShellToken readOperator();
    ShellToken readWord();
    void readPiece(ShellToken &word);
    void readSingleQuotes(ShellToken &word);
    void readDoubleQuotes(ShellToken &word);
    void readDollar(ShellToken &word);
    void skipBackticks();
    /// Behind an opening bracket up to its closing one.
    void skipBracket(char open, char close);
    void skipQuoted(char quote);
    void step();
    void skipHereDocuments();

    QByteArray m_script;
    int m_position = 0;
    int m_line = 1;
    bool m_isBroken = false;
    struct HereDocument
    {
        QByteArray end;
        bool isIndented;
    };
    QVector<HereDocument> m_hereDocuments;
    /// The next word ends a here-document.
    bool m_awaitsEnd = false;
    bool m_isIndented = false;
};

} // namespace doctor
