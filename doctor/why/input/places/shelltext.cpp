#include "doctor/why/input/places/shelltext.h"

#include <utility>

#include "doctor/why/input/places/shellwords.h"

namespace doctor {

namespace {

using Statement = ShellStatement;
using Kind = ShellStatement::Kind;
using Token = ShellToken;

/// What encloses a command.
enum class Around {
    Condition, ///< or loop, or group
    Subshell,
    Function,
};

class Reader
{
public:
    explicit Reader(const QByteArray &script) : m_lexer(script) {}

    QVector<Statement> read()
    {
        while (!m_hasEnded) {
            const Token token = m_lexer.next();
            if (token.kind == Token::Kind::End || token.kind == Token::Kind::Broken) {
                if (token.kind == Token::Kind::End)
                    endCommand(QByteArray());
                break;
            }
            if (token.kind == Token::Kind::Word)
                addWord(token);
            else
                take(token);
        }
        // A function may be called anywhere behind it.
        return m_statements + m_ofFunctions;
    }

private:
    void addWord(const Token &word)
    {
        if (m_isRedirected)
            m_isRedirected = false;
        else if (m_words.isEmpty() && !m_isInTest)
            beginCommand(word);
        else if (m_isInTest)
            m_isInTest = !isReserved(word, {"]]"});
        else
            m_words.append(word);
    }

    void beginCommand(const Token &word)
    {
        if (isReserved(word, {"if", "while", "until", "for", "select", "case"})) {
            m_around.append(Around::Condition);
            // The words up to "in" or a separator are no command.
            if (isReserved(word, {"for", "select", "case"}))
                m_words.append(word);
        } else if (isReserved(word, {"fi", "done", "esac", "}"})) {
            leave();
        } else if (isReserved(word, {"{"})) {
            m_around.append(m_isFunction ? Around::Function : Around::Condition);
            m_isFunction = false;
        } else if (isReserved(word, {"[["})) {
            m_isInTest = true;
        } else if (isReserved(word, {"function"})) {
            m_isFunction = true;
            m_isNamed = true;
        } else if (m_isNamed) {
            m_isNamed = false;
        } else if (!isReserved(word, {"then", "else", "elif", "do", "!", "time"})) {
            m_words.append(word);
        }
    }

    void leave()
    {
        if (m_around.isEmpty())
            m_mayHaveEnded = true; // the shell gives up here
        else
            m_around.removeLast();
    }

    void take(const Token &token)
    {
        if (m_isInTest && token.kind == Token::Kind::Operator)
            return;
        const QByteArray &text = token.text;
        if (text == "(") {
            m_isFunction = m_words.size() == 1;
            m_words.clear();
            m_around.append(Around::Subshell);
        } else if (text == ")") {
            closeBracket();
        } else if (text.contains('<') || text.contains('>')) {
            m_isRedirected = true;
        } else {
            endCommand(text);
        }
    }

    void closeBracket()
    {
        endCommand(QByteArray());
        // Behind a pattern of "case" no bracket was open.
        if (!m_around.isEmpty() && m_around.constLast() == Around::Subshell)
            m_around.removeLast();
        else if (m_around.isEmpty())
            m_mayHaveEnded = true;
    }

    /// @p terminator is empty at the end of a line.
    void endCommand(const QByteArray &terminator)
    {
        const bool isPiped = isAnyOf(terminator, {"|", "|&"});
        m_isCertain =
            m_around.isEmpty() && !m_isInList && !m_mayHaveEnded && !isPiped && terminator != "&";
        m_isRedirected = false;
        m_isInTest = false;
        const QVector<Token> words = std::exchange(m_words, {});
        if (!words.isEmpty())
            readCommand(words);
        const bool goesOn = isPiped || isAnyOf(terminator, {"&&", "||"});
        // Behind "&&" the command may stand on the next line.
        if (goesOn)
            m_isInList = true;
        else if (!terminator.isEmpty() || !words.isEmpty())
            m_isInList = false;
    }

    void add(Kind kind, const QByteArray &name, const std::optional<QByteArray> &value, int line)
    {
        m_statements.append({kind, name, value, line, m_exportsAll, m_isCertain});
        if (m_around.contains(Around::Function))
            m_ofFunctions.append(m_statements.constLast());
    }

    void readCommand(const QVector<Token> &words)
    {
        int index = 0;
        while (index < words.size() && !assignedName(words.at(index)).isEmpty())
            ++index;
        const int assignments = index;
        while (index < words.size() && isReserved(words.at(index), {"command", "builtin"}))
            ++index;
        const Kind kind = index == words.size() ? Kind::Assign : Kind::ForCommand;
        const bool isReplacing = m_isReplacing || words.value(index).text == "exec";
        for (int i = 0; i < assignments; ++i)
            add(kind, assignedName(words.at(i)), assignedValue(words.at(i), false),
                words.at(i).line);
        if (kind == Kind::ForCommand)
            markReplacing(assignments, isReplacing);
        if (index < words.size())
            readProgram(words.mid(index));
    }

    void markReplacing(int last, bool isReplacing)
    {
        for (int i = m_statements.size() - last; i < m_statements.size(); ++i)
            m_statements[i].isExported = isReplacing;
    }

    void readProgram(const QVector<Token> &words)
    {
        const QByteArray name = words.constFirst().isLiteral ? words.constFirst().text : "$";
        if (isAnyOf(name, {"export", "declare", "typeset", "readonly"}))
            readExport(words);
        else if (name == "unset")
            readUnset(words);
        else if (name == "set")
            readSet(words);
        else if (isAnyOf(name, {".", "source"}) && words.size() > 1)
            add(Kind::Read, name, sourcedPath(words.at(1)), words.constFirst().line);
        else if (isAnyOf(name, {"return", "exit"}))
            end(name);
        else
            readOther(words, name);
    }

    void readOther(const QVector<Token> &words, const QByteArray &name)
    {
        const int line = words.constFirst().line;
        const bool isReplacing = name == "exec" && words.size() > 1;
        const Token first = words.value(1);
        add(Kind::Command, name,
            first.isLiteral ? std::optional<QByteArray>(first.text) : std::nullopt, line);
        if (isReplacing) {
            m_isReplacing = true;
            readCommand(words.mid(1));
        }
        if (name == "env") {
            for (const Token &word : environmentOf(words)) {
                add(Kind::ForCommand, assignedName(word), assignedValue(word, true), word.line);
                markReplacing(1, m_isReplacing);
            }
        }
        m_isReplacing = false;
        if (isReplacing)
            end(name);
    }

    void readExport(const QVector<Token> &words)
    {
        const bool isExport = words.constFirst().text == "export";
        QByteArray options;
        for (const Token &word : words.mid(1)) {
            if (word.text.startsWith('-') && !word.isQuoted) {
                options += word.text;
                continue;
            }
            // Functions are no variables.
            if (options.contains('f') || options.contains('p'))
                return;
            readExported(word, isExport || options.contains('x'), options.contains('n'));
        }
    }

    void readExported(const Token &word, bool isExport, bool isWithdrawn)
    {
        Token assignment = word;
        if (word.equals < 0)
            assignment.equals = word.text.indexOf('=');
        const bool hasValue = assignment.equals >= 0;
        const QByteArray name = hasValue ? assignedName(assignment) : word.text;
        if (!isName(name))
            return;
        if (isWithdrawn) {
            add(Kind::Remove, name, {}, word.line);
            // The shell itself keeps the value, and may export it again.
            m_statements.last().isCertain = false;
        } else if (hasValue) {
            add(Kind::Assign, name, assignedValue(assignment, true), word.line);
            m_statements.last().isExported = isExport || m_exportsAll;
            if (m_around.contains(Around::Function))
                m_ofFunctions.last() = m_statements.constLast();
        } else if (isExport) {
            add(Kind::Export, name, {}, word.line);
        }
    }

    void readUnset(const QVector<Token> &words)
    {
        if (words.size() > 1 && words.at(1).text == "-f")
            return;
        for (const Token &word : words.mid(1)) {
            if (isName(word.text))
                add(Kind::Remove, word.text, {}, word.line);
        }
    }

    void readSet(const QVector<Token> &words)
    {
        const ShellOptions options = optionsOf(words);
        if (options.exportsAll)
            m_exportsAll = *options.exportsAll && m_isCertain;
        if (options.endsOnFailure)
            m_mayHaveEnded = true;
    }

    void end(const QByteArray &how)
    {
        if (m_isCertain)
            m_hasEnded = true;
        else if (!m_around.contains(Around::Subshell) &&
                 (how != "return" || !m_around.contains(Around::Function)))
            m_mayHaveEnded = true;
    }

    ShellLexer m_lexer;
    QVector<Statement> m_statements;
    QVector<Statement> m_ofFunctions;
    QVector<Token> m_words;
    QVector<Around> m_around;
    /// The program of the command takes the shell's place.
    bool m_isReplacing = false;
    bool m_isInTest = false;
    bool m_isRedirected = false;
    bool m_isFunction = false;
    bool m_isNamed = false;
    bool m_isInList = false;
    bool m_isCertain = true;
    bool m_exportsAll = false;
    bool m_mayHaveEnded = false;
    bool m_hasEnded = false;
};

} // namespace

QVector<ShellStatement> shellStatements(const QByteArray &script)
{
    return Reader(script).read();
}

} // namespace doctor
