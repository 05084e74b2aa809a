#pragma once

#include <QString>

namespace doctor {

/// Reads a regular expression for the plain texts that stand in each match: what is outside all
/// groups and classes and not optional. Gives none where it does not know for certain.
class NeededText
{
public:
    explicit NeededText(const QString &pattern);

    /// Empty if there is none of at least three characters.
    QString longest() const;

private:
    bool read();
    bool readEscape();
    bool readGroup();
    bool skipClass();
    bool skipCount();
    void add(QChar character);
    void endRun();
    QChar at(int index) const;

    QString m_pattern;
    int m_position = 0;
    int m_depth = 0;
    QString m_run;
    QString m_longest;
};

} // namespace doctor
