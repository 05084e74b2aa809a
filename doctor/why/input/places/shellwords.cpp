#include "doctor/why/input/places/shellwords.h"

#include <algorithm>
#include <cctype>

namespace doctor {

bool isName(const QByteArray &text)
{
    return !text.isEmpty() && std::isdigit(static_cast<unsigned char>(text.at(0))) == 0 &&
           std::all_of(text.begin(), text.end(), [](char c) {
               return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
           });
}

bool isAnyOf(const QByteArray &word, std::initializer_list<const char *> words)
{
    return std::any_of(words.begin(), words.end(),
                       [&word](const char *one) { return word == one; });
}

bool isReserved(const ShellToken &word, std::initializer_list<const char *> words)
{
    return !word.isQuoted && word.isLiteral && isAnyOf(word.text, words);
}

QByteArray assignedName(const ShellToken &word)
{
    QByteArray name = word.text.left(std::max(0, word.equals));
    if (name.endsWith('+'))
        name.chop(1);
    return isName(name) ? name : QByteArray();
}

std::optional<QByteArray> assignedValue(const ShellToken &word, bool isArgument)
{
    const bool isAdded = word.equals > 0 && word.text.at(word.equals - 1) == '+';
    if (!word.isLiteral || isAdded || (isArgument && word.isPattern))
        return std::nullopt;
    return word.text.mid(word.equals + 1);
}

std::optional<QByteArray> sourcedPath(const ShellToken &word)
{
    if (word.isLiteral && !word.isPattern)
        return word.text;
    QByteArray path = word.raw;
    path.replace('"', QByteArray());
    for (const char *home : {"~/", "$HOME/", "${HOME}/"}) {
        const QByteArray beginning(home);
        const QByteArray rest = path.mid(beginning.size());
        const bool isPlain = std::none_of(
            rest.begin(), rest.end(), [](char c) { return QByteArray("$`'\\*?[{~").contains(c); });
        if (path.startsWith(beginning) && isPlain)
            return "~/" + rest;
    }
    return std::nullopt;
}

QVector<ShellToken> environmentOf(const QVector<ShellToken> &words)
{
    QVector<ShellToken> assignments;
    for (const ShellToken &word : words.mid(1)) {
        const bool isOption = word.text.startsWith('-');
        if (!isOption && assignedName(word).isEmpty())
            break;
        if (!isOption)
            assignments.append(word);
    }
    return assignments;
}

ShellOptions optionsOf(const QVector<ShellToken> &words)
{
    ShellOptions options;
    for (int i = 1; i < words.size(); ++i) {
        const QByteArray &text = words.at(i).text;
        if (text == "--" || (!text.startsWith('-') && !text.startsWith('+')))
            break;
        const QByteArray named = isAnyOf(text, {"-o", "+o"}) ? words.value(++i).text : QByteArray();
        const bool isOn = text.startsWith('-');
        if (named == "allexport" || text.mid(1).contains('a'))
            options.exportsAll = isOn;
        if (isOn && (named == "errexit" || text.mid(1).contains('e')))
            options.endsOnFailure = true;
    }
    return options;
}

} // namespace doctor
