#include "doctor/why/input/places/environmentfiles.h"

#include <QList>

#include <algorithm>
#include <cctype>

namespace doctor {

namespace {

struct Line
{
    QByteArray text;
    int number;
};

/// A backslash at the end takes the next line in; lines have the number that they begin at.
QVector<Line> joinedLines(const QByteArray &content, const QByteArray &comments)
{
    QVector<Line> lines;
    bool goesOn = false;
    int number = 0;
    for (const QByteArray &line : content.split('\n')) {
        ++number;
        const QByteArray trimmed = line.trimmed();
        const bool isComment = !trimmed.isEmpty() && comments.contains(trimmed.at(0));
        if (isComment && !goesOn)
            continue;
        if (goesOn)
            lines.last().text += line;
        else
            lines.append({line, number});
        goesOn = lines.last().text.endsWith('\\');
        if (goesOn)
            lines.last().text.chop(1);
    }
    return lines;
}

QByteArray beforeComment(const QByteArray &line)
{
    return line.split('#').constFirst().trimmed();
}

bool isSubstituted(const QByteArray &value)
{
    const int dollar = value.indexOf('$');
    return dollar >= 0 && dollar + 1 < value.size();
}

/// A value with "…", '…' and backslashes, which end with the line.
std::optional<QByteArray> unquoted(const QByteArray &text)
{
    QByteArray value;
    char quote = '\0';
    int kept = 0;
    for (int i = 0; i < text.size(); ++i) {
        const char c = text.at(i);
        if (quote != '\0' && c == quote) {
            quote = '\0';
            kept = value.size();
        } else if (quote == '\0' && (c == '"' || c == '\'')) {
            quote = c;
        } else if (c == '\\' && quote != '\'' && i + 1 < text.size()) {
            value += text.at(++i);
            kept = value.size();
        } else {
            value += c;
        }
        if (quote != '\0' || std::isspace(static_cast<unsigned char>(c)) == 0)
            kept = value.size();
    }
    if (quote != '\0')
        return std::nullopt;
    return value.left(kept);
}

void add(QVector<Setting> &settings, const QByteArray &name, const std::optional<QByteArray> &value,
         int line)
{
    if (!isInputVariable(name))
        return;
    Setting setting;
    setting.variable = name;
    setting.value = value;
    setting.line = line;
    settings.append(setting);
}

/// What follows "NAME=" up to the next blank outside of quotes.
std::optional<QByteArray> pamField(const QByteArray &line, const QByteArray &name)
{
    int begin = line.indexOf(name);
    if (begin < 0)
        return QByteArray();
    begin += name.size();
    const bool isQuoted = begin < line.size() && line.at(begin) == '"';
    QByteArray value;
    for (int i = isQuoted ? begin + 1 : begin; i < line.size(); ++i) {
        const char c = line.at(i);
        if (c == '\\' && i + 1 < line.size())
            value += line.at(++i);
        else if (c == '$' || c == '@')
            return std::nullopt;
        else if (isQuoted ? c == '"' : std::isspace(static_cast<unsigned char>(c)) != 0)
            return value;
        else
            value += c;
    }
    return isQuoted ? std::nullopt : std::optional(value);
}

/// As pam_env takes quotes: one at the beginning, and one at the very end.
QByteArray plainValue(QByteArray value)
{
    const bool isQuoted = value.startsWith('"') || value.startsWith('\'');
    if (!isQuoted)
        return value;
    value.remove(0, 1);
    if (value.endsWith('"') || value.endsWith('\''))
        value.chop(1);
    return value;
}

} // namespace

bool isInputVariable(const QByteArray &name)
{
    return std::any_of(inputVariables.begin(), inputVariables.end(),
                       [&name](const char *one) { return name == one; });
}

QVector<Setting> settingsOfPlainFile(const QByteArray &content)
{
    QVector<Setting> settings;
    int number = 0;
    for (const QByteArray &whole : content.split('\n')) {
        ++number;
        QByteArray line = beforeComment(whole);
        if (line.startsWith("export "))
            line.remove(0, 7);
        const int equals = line.indexOf('=');
        const bool isRemoved = equals < 0;
        add(settings, isRemoved ? line : line.left(equals), plainValue(line.mid(equals + 1)),
            number);
        if (isRemoved && isInputVariable(line))
            settings.last().isRemoved = true;
    }
    return settings;
}

QVector<Setting> settingsOfPamFile(const QByteArray &content)
{
    QVector<Setting> settings;
    for (const Line &line : joinedLines(content, "#")) {
        const QByteArray text = beforeComment(line.text);
        const auto end = std::find_if(text.begin(), text.end(), [](char c) {
            return std::isspace(static_cast<unsigned char>(c)) != 0 || c == '=';
        });
        const int length = static_cast<int>(end - text.begin());
        const QByteArray name = text.left(length);
        const QByteArray rest = text.mid(length);
        const std::optional<QByteArray> replaced = pamField(rest, "OVERRIDE=");
        const std::optional<QByteArray> usual = pamField(rest, "DEFAULT=");
        const bool isReplaced = !replaced || !replaced->isEmpty();
        add(settings, name, isReplaced ? replaced : usual, line.number);
        if (settings.isEmpty() || settings.last().line != line.number)
            continue;
        // Versions differ in what they make of NAME=value, and of a value that may be empty.
        settings.last().isSure = !rest.startsWith('=');
        settings.last().isRemoved = settings.last().value == QByteArray();
        if (rest.startsWith('='))
            settings.last() = {name, plainValue(rest.mid(1)), false, false, {}, {}, line.number};
    }
    return settings;
}

QVector<Setting> settingsOfEnvironmentD(const QByteArray &content)
{
    QVector<Setting> settings;
    bool isSure = true;
    for (const Line &line : joinedLines(content, "#;")) {
        const int equals = line.text.indexOf('=');
        if (equals < 0)
            continue;
        std::optional<QByteArray> value = unquoted(line.text.mid(equals + 1).trimmed());
        // An open quote takes the next lines in.
        isSure = isSure && value.has_value();
        if (value && isSubstituted(*value))
            value.reset();
        add(settings, line.text.left(equals).trimmed(), value, line.number);
        if (!isSure && !settings.isEmpty() && settings.last().line == line.number)
            settings.last().isSure = false;
    }
    return settings;
}

QVector<Setting> settingsOfLocaleFile(const QByteArray &content)
{
    QVector<Setting> settings = settingsOfEnvironmentD(content);
    settings.erase(std::remove_if(settings.begin(), settings.end(),
                                  [](const Setting &one) { return one.variable != "LANG"; }),
                   settings.end());
    return settings;
}

} // namespace doctor
