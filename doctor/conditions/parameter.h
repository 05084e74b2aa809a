#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <chrono>
#include <cstddef>

#include "doctor/conditions/texttemplate.h"

namespace doctor {

/// A table that is written in the source.
template<class Item>
class Table
{
public:
    constexpr Table() = default;
    template<std::size_t Count>
    // NOLINTNEXTLINE(google-explicit-constructor): a table is used where its items are asked for.
    constexpr Table(const Item (&items)[Count]) : m_items(items), m_count(Count)
    {
    }

    constexpr const Item *begin() const { return m_items; }
    constexpr const Item *end() const { return m_items + m_count; }
    constexpr bool isEmpty() const { return m_count == 0; }

private:
    const Item *m_items = nullptr;
    std::size_t m_count = 0;
};

enum class ParameterType {
    Text,
    Texts,       ///< one text or a list of them
    Path,        ///< one path
    PathPattern, ///< one path or a list; "*", "?" and "[…]" stand for what matches
    Pattern,     ///< a regular expression; nothing is filled in
    Number,
    Flag,
    Duration,
    Mode,    ///< "600" or a change such as "u+rw,o-w"
    Word,    ///< one of a few
    Nothing, ///< true, for a kind that needs no argument
};

/// What a probe or a repair step is told in a check file.
struct Parameter
{
    const char *name;
    ParameterType type;
    bool isRequired = false;
    /// The possible values of a Word, separated by "|".
    const char *words = nullptr;
};

/// Parameters as they stand in the file, by name.
using RawArguments = QMap<QString, QStringList>;

/// Parameters with everything filled in.
class Arguments
{
public:
    Arguments() = default;
    explicit Arguments(const RawArguments &values) : m_values(values) {}

    bool has(const char *name) const { return m_values.contains(QLatin1String(name)); }
    QStringList texts(const char *name) const { return m_values.value(QLatin1String(name)); }
    QString text(const char *name, const char *fallback = "") const;
    bool flag(const char *name) const { return text(name) == QLatin1String("true"); }
    double number(const char *name, double fallback) const;
    std::chrono::milliseconds duration(const char *name, std::chrono::milliseconds fallback) const;

private:
    RawArguments m_values;
};

struct ExpandedArguments
{
    Arguments arguments;
    QString problem;
};

ExpandedArguments expandedArguments(const RawArguments &raw, Table<Parameter> parameters,
                                    const Values &values, const Machine &machine);

/// Why @p text cannot be this parameter; empty if it can, or has something to be filled in.
QString parameterProblem(const Parameter &parameter, const QString &text);

} // namespace doctor
