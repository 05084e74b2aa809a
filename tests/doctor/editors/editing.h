#pragma once

#include "doctor/editors/keyeditor.h"

/// An editor's answers as one value each, for comparisons.
class Editing
{
public:
    explicit Editing(doctor::Format format) : m_editor(doctor::keyEditor(format)) {}

    QString find(const QByteArray &content, const QStringList &key) const
    {
        const auto found = m_editor.find(content, key);
        return found ? found->value : QStringLiteral("(none)");
    }
    int line(const QByteArray &content, const QStringList &key) const
    {
        const auto found = m_editor.find(content, key);
        return found ? found->line : 0;
    }
    QByteArray set(const QByteArray &content, const QStringList &key, const QString &value) const
    {
        return result(m_editor.set(content, key, value));
    }
    QByteArray remove(const QByteArray &content, const QStringList &key) const
    {
        return result(m_editor.remove(content, key));
    }
    /// True if nothing is found, set or removed and the last two say why.
    bool refuses(const QByteArray &content, const QStringList &key) const
    {
        const auto set = m_editor.set(content, key, QStringLiteral("x"));
        const auto removed = m_editor.remove(content, key);
        return !m_editor.find(content, key) && !set.content && !set.problem.isEmpty() &&
               !removed.content && !removed.problem.isEmpty();
    }
    bool refusesToSet(const QByteArray &content, const QStringList &key, const QString &value) const
    {
        const auto set = m_editor.set(content, key, value);
        return !set.content && !set.problem.isEmpty();
    }

private:
    static QByteArray result(const doctor::EditedContent &edited)
    {
        return edited.content.value_or("refused: " + edited.problem.toUtf8());
    }

    const doctor::KeyEditor &m_editor;
};
