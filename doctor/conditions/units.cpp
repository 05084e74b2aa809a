#include "doctor/conditions/units.h"

#include <QRegularExpression>

#include <array>

namespace doctor {

namespace {

struct Unit
{
    const char *name;
    double factor;
};

constexpr double kibi = 1024;
constexpr std::array<Unit, 14> sizeUnits{{
    {"", 1},
    {"B", 1},
    {"kB", 1e3},
    {"MB", 1e6},
    {"GB", 1e9},
    {"TB", 1e12},
    {"K", kibi},
    {"KiB", kibi},
    {"M", kibi *kibi},
    {"MiB", kibi *kibi},
    {"G", kibi *kibi *kibi},
    {"GiB", kibi *kibi *kibi},
    {"T", kibi *kibi *kibi *kibi},
    {"TiB", kibi *kibi *kibi *kibi},
}};

constexpr double minute = 60;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;
constexpr std::array<Unit, 14> ageUnits{{
    {"ms", 0.001},
    {"s", 1},
    {"min", minute},
    {"h", hour},
    {"hour", hour},
    {"hours", hour},
    {"d", day},
    {"day", day},
    {"days", day},
    {"week", 7 * day},
    {"weeks", 7 * day},
    {"year", 365 * day},
    {"years", 365 * day},
    {"month", 30 * day},
}};

template<std::size_t Count>
std::optional<double> withUnit(const QString &text, const std::array<Unit, Count> &units)
{
    static const QRegularExpression form(
        QStringLiteral("^(\\d{1,15}(?:\\.\\d{1,9})?) ?([A-Za-z]*)$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    for (const Unit &unit : units) {
        if (match.capturedView(2) == QLatin1String(unit.name))
            return match.captured(1).toDouble() * unit.factor;
    }
    return std::nullopt;
}

constexpr int mostModeDigits = 4;
constexpr unsigned allRights = 0777;

struct ModeChange
{
    unsigned bits;
    char sign;
};

/// One word such as "ug+rw".
std::optional<ModeChange> modeChange(const QString &word)
{
    static const QRegularExpression form(QStringLiteral("^([ugoa]+)([+-])([rwx]+)$"));
    const QRegularExpressionMatch match = form.match(word);
    if (!match.hasMatch())
        return std::nullopt;
    const auto has = [&match](int part, char letter) {
        return match.captured(part).contains(QLatin1Char(letter));
    };
    const unsigned rights =
        (has(3, 'r') ? 4U : 0U) | (has(3, 'w') ? 2U : 0U) | (has(3, 'x') ? 1U : 0U);
    const bool all = has(1, 'a');
    const unsigned bits = (all || has(1, 'u') ? rights << 6U : 0U) |
                          (all || has(1, 'g') ? rights << 3U : 0U) |
                          (all || has(1, 'o') ? rights : 0U);
    return ModeChange{bits, match.captured(2).at(0).toLatin1()};
}

std::optional<unsigned> octalMode(const QString &text)
{
    bool isNumber = false;
    const unsigned bits = text.toUInt(&isNumber, 8);
    if (!isNumber || text.size() < 3 || text.size() > mostModeDigits)
        return std::nullopt;
    return bits;
}

/// The place of a character in Debian's order: "~", the end, letters, the rest.
int rankOf(const QString &text, int index)
{
    if (index >= text.size() || text[index].isDigit())
        return 0;
    const QChar character = text[index];
    if (character == QLatin1Char('~'))
        return -1;
    const bool isLetter = character.isLetter() && character.unicode() < 0x80;
    return isLetter ? character.unicode() : character.unicode() + 256;
}

bool isDigitAt(const QString &text, int index)
{
    return index < text.size() && text[index] >= QLatin1Char('0') &&
           text[index] <= QLatin1Char('9');
}

/// The digits from @p index on, without leading zeros; @p index is behind them afterwards.
QString numberAt(const QString &text, int &index)
{
    while (index < text.size() && text[index] == QLatin1Char('0'))
        ++index;
    const int begin = index;
    while (isDigitAt(text, index))
        ++index;
    return text.mid(begin, index - begin);
}

int compareParts(const QString &first, const QString &second)
{
    int i = 0;
    int j = 0;
    while (i < first.size() || j < second.size()) {
        while ((i < first.size() && !isDigitAt(first, i)) ||
               (j < second.size() && !isDigitAt(second, j))) {
            const int difference = rankOf(first, i) - rankOf(second, j);
            if (difference != 0)
                return difference;
            ++i;
            ++j;
        }
        const QString one = numberAt(first, i);
        const QString other = numberAt(second, j);
        if (one.size() != other.size())
            return one.size() - other.size();
        if (one != other)
            return one < other ? -1 : 1;
    }
    return 0;
}

/// The version's epoch, which is taken off it.
QString takeEpoch(QString &version)
{
    const int colon = version.indexOf(QLatin1Char(':'));
    QString epoch = colon < 0 ? QStringLiteral("0") : version.left(colon);
    version.remove(0, colon + 1);
    return epoch;
}

} // namespace

std::optional<double> sizeOf(const QString &text)
{
    return withUnit(text, sizeUnits);
}

std::optional<double> ageOf(const QString &text)
{
    return withUnit(text, ageUnits);
}

std::optional<ModeBits> modeOf(const QString &text)
{
    if (const std::optional<unsigned> octal = octalMode(text))
        return ModeBits{*octal, true};
    unsigned bits = 0;
    for (const QString &word : text.split(QLatin1Char(','))) {
        const std::optional<ModeChange> change = modeChange(word);
        if (!change || change->sign != '+')
            return std::nullopt;
        bits |= change->bits;
    }
    return ModeBits{bits, false};
}

std::optional<unsigned> changedMode(unsigned mode, const QString &change)
{
    if (const std::optional<unsigned> octal = octalMode(change))
        return *octal;
    for (const QString &word : change.split(QLatin1Char(','))) {
        const std::optional<ModeChange> one = modeChange(word);
        if (!one)
            return std::nullopt;
        mode = one->sign == '+' ? mode | one->bits : mode & ~(one->bits & allRights);
    }
    return mode;
}

int compareVersions(const QString &first, const QString &second)
{
    QString one = first;
    QString other = second;
    const int epochs = compareParts(takeEpoch(one), takeEpoch(other));
    return epochs != 0 ? epochs : compareParts(one, other);
}

} // namespace doctor
