#include "programs/checktool/checks/findings.h"

#include <QStringList>

#include <algorithm>

#include "texts/texts.h"

namespace programs {

namespace {

constexpr int mostLines = 200;
constexpr int longestLine = 1000;

QString mark(Findings::Kind kind)
{
    switch (kind) {
    case Findings::Kind::Problem:
        return QStringLiteral("✘ ");
    case Findings::Kind::Note:
        return QStringLiteral("⚠ ");
    case Findings::Kind::Fine:
        break;
    }
    return QStringLiteral("✔ ");
}

/// Names from outside may contain line breaks; a finding must stay one line.
QString oneLine(const QString &text)
{
    QString line;
    for (const QChar c : text.left(longestLine)) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7f)
            line += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            line += c;
    }
    return text.size() > longestLine ? line + QStringLiteral("…") : line;
}

QString outcome(int problems)
{
    if (problems == 0)
        return QStringLiteral("✔ ") + texts::tr("No problem was found.");
    return QStringLiteral("✘ ") + (problems == 1
                                       ? texts::tr("One problem was found.")
                                       : texts::tr("%1 problems were found.").arg(problems));
}

} // namespace

void Findings::fine(const QString &text)
{
    add(Kind::Fine, text);
}

void Findings::note(const QString &text)
{
    add(Kind::Note, text);
}

void Findings::problem(const QString &text, const QString &remedy)
{
    add(Kind::Problem, text + QLatin1Char(' ') + remedy);
}

const std::vector<Findings::Finding> &Findings::all() const
{
    return m_findings;
}

int Findings::problemCount() const
{
    return static_cast<int>(
        std::count_if(m_findings.begin(), m_findings.end(),
                      [](const Finding &finding) { return finding.kind == Kind::Problem; }));
}

QString Findings::text() const
{
    QStringList lines{outcome(problemCount())};
    for (const Kind kind : {Kind::Problem, Kind::Note, Kind::Fine}) {
        for (const Finding &finding : m_findings) {
            if (finding.kind == kind)
                lines.append(mark(kind) + oneLine(finding.text));
        }
    }
    const int cut = lines.size() - mostLines;
    if (cut > 0) {
        lines = lines.mid(0, mostLines);
        lines.append(mark(Kind::Note) + texts::tr("%1 further lines are left out.").arg(cut));
    }
    return lines.join(QLatin1Char('\n'));
}

void Findings::add(Kind kind, const QString &text)
{
    m_findings.push_back({kind, text});
}

} // namespace programs
