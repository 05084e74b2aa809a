#include "doctor/editors/sectioneditor.h"

#include "doctor/editors/edits.h"
#include "texts/texts.h"

namespace doctor {

/// Calls visit with each line and whether it is in the key's section.
template<typename Visit>
QString SectionEditor::walk(const QByteArray &content, const QStringList &key, Visit visit) const
{
    QString problem = inputProblem(content, key);
    if (problem.isEmpty() && key.size() != 2)
        problem = texts::tr("A key has two parts: section and name.");
    const int zero = content.indexOf('\0');
    if (problem.isEmpty() && zero >= 0)
        problem = atLine(content, zero, texts::tr("this is not text."));
    bool lacksHeader = m_dialect.isStrict();
    if (problem.isEmpty() && lacksHeader && markSize(content) > 0)
        problem = atLine(content, 0, texts::tr("a byte order mark stands before the text."));
    bool isInSection = m_dialect.isSection({}, key.value(0));
    for (int position = markSize(content); problem.isEmpty() && position < content.size();) {
        SectionLine line;
        problem = m_dialect.readLine(content, position, line);
        if (problem.isEmpty() && line.kind == SectionLine::Kind::Header) {
            isInSection = m_dialect.isSection(bytesIn(content, line.name), key.first());
            lacksHeader = false;
        }
        if (lacksHeader && line.kind == SectionLine::Kind::Entry)
            problem = atLine(content, position, texts::tr("a key stands before all groups."));
        if (problem.isEmpty())
            visit(line, isInSection);
        position = line.whole.end;
    }
    return problem;
}

std::optional<FoundKey> SectionEditor::find(const QByteArray &content, const QStringList &key) const
{
    std::optional<SectionLine> entry;
    const QString problem = walk(content, key, [&](const SectionLine &line, bool isInSection) {
        if (isInSection && line.kind == SectionLine::Kind::Entry &&
            m_dialect.isKey(bytesIn(content, line.name), key.last()))
            entry = line;
    });
    if (!problem.isEmpty() || !entry)
        return std::nullopt;
    return FoundKey{m_dialect.decoded(bytesIn(content, entry->spacedValue)),
                    lineAt(content, entry->name.begin)};
}

EditedContent SectionEditor::set(const QByteArray &content, const QStringList &key,
                                 const QString &value) const
{
    std::optional<SectionLine> entry;
    std::optional<int> behindSection;
    // Behind a byte order mark it would not be read.
    if (markSize(content) == 0 && m_dialect.isSection({}, key.value(0)))
        behindSection = 0;
    const QString problem = walk(content, key, [&](const SectionLine &line, bool isInSection) {
        if (!isInSection || line.kind == SectionLine::Kind::Other)
            return;
        behindSection = line.whole.end;
        if (line.kind == SectionLine::Kind::Entry &&
            m_dialect.isKey(bytesIn(content, line.name), key.last()))
            entry = line;
    });
    if (!problem.isEmpty())
        return refused(problem);
    const QString writeProblem = m_dialect.writeProblem(key, value);
    if (!writeProblem.isEmpty())
        return refused(writeProblem);
    if (!entry)
        return added(content, key, value, behindSection);
    const QByteArray before = bytesIn(content, entry->value);
    if (m_dialect.decoded(bytesIn(content, entry->spacedValue)) == value)
        return {content, {}};
    return edited(content, {{entry->value, m_dialect.encoded(value, before)}});
}

/// Inserts lines at the start of a line or at the end of the content, which keeps or lacks its last
/// line end as before.
EditedContent SectionEditor::withLines(const QByteArray &content, int position,
                                       const QByteArrayList &lines) const
{
    const QByteArray lineEnd = lineEndOf(content);
    QByteArray text = lines.join(lineEnd);
    if (position == markSize(content) || m_dialect.isLineEnd(content.at(position - 1)))
        text += lineEnd;
    else
        text.prepend(lineEnd);
    return edited(content, {{{position, position}, text}});
}

EditedContent SectionEditor::added(const QByteArray &content, const QStringList &key,
                                   const QString &value, std::optional<int> position) const
{
    const QByteArray entry =
        m_dialect.encodedKey(key.last()) + '=' + m_dialect.encoded(value, QByteArray());
    if (position)
        return withLines(content, *position, {entry});
    QByteArrayList lines{'[' + m_dialect.encodedSection(key.first()) + ']', entry};
    const QByteArray lineEnd = lineEndOf(content);
    const bool needsGap =
        content.size() > markSize(content) && !content.endsWith(lineEnd + lineEnd);
    if (needsGap)
        lines.prepend(QByteArray());
    return withLines(content, content.size(), lines);
}

EditedContent SectionEditor::remove(const QByteArray &content, const QStringList &key) const
{
    QVector<Edit> removed;
    const QString problem = walk(content, key, [&](const SectionLine &line, bool isInSection) {
        if (!isInSection || line.kind != SectionLine::Kind::Entry ||
            !m_dialect.isKey(bytesIn(content, line.name), key.last()))
            return;
        if (!removed.isEmpty() && removed.last().span.end == line.whole.begin)
            removed.last().span.end = line.comment;
        else
            removed.append(Edit{{line.whole.begin, line.comment}, {}});
    });
    return problem.isEmpty() ? edited(content, removed) : refused(problem);
}

} // namespace doctor
