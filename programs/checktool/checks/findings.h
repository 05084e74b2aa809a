#pragma once

#include <QString>

#include <vector>

namespace standin {

/// What a check has found, in words, in the order in which it was said.
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
    /// Something to know that keeps nothing from working.
    void note(const QString &text);
    /// @p remedy is what the user can do about it.
    void problem(const QString &text, const QString &remedy);

    const std::vector<Finding> &all() const;
    int problemCount() const;

    /// The findings as the page shows them: a line for the outcome, then a line each, problems
    /// first. Each begins with a mark and a space, "✘" a problem, "⚠" a note, "✔" what is fine,
    /// since the page shows lines as they are. Long lists and lines are cut, and say so.
    QString text() const;

private:
    void add(Kind kind, const QString &text);

    std::vector<Finding> m_findings;
};

} // namespace standin
