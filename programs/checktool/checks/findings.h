#pragma once

#include <QString>

#include <vector>

namespace programs {

/// The findings of a check, as texts for the user, in the order in which they were added.
class Findings
{
public:
    enum class Kind {
        Fine,
        Note,
        Problem
    };

    struct Finding
    {
        Kind kind = Kind::Fine;
        QString text;
    };

    void fine(const QString &text);
    /// Worth knowing, though everything works.
    void note(const QString &text);
    /// @p remedy says what the user can do about it.
    void problem(const QString &text, const QString &remedy);

    const std::vector<Finding> &all() const;
    int problemCount() const;

    /// The text that the page shows: a line for the outcome, then one line for each finding,
    /// problems first. Each line starts with a mark and a space: "✘" for a problem, "⚠" for a note,
    /// "✔" for what is fine. Long lists and lines are cut, with a mark that says so.
    QString text() const;

private:
    void add(Kind kind, const QString &text);

    std::vector<Finding> m_findings;
};

} // namespace programs
