#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

namespace doctor {

/// How much a finding matters: something to know, something to look at, something that is broken.
enum class State {
    Note,
    Warning,
    Bad
};

/// As check files and answers spell it.
inline QString nameOf(State state)
{
    switch (state) {
    case State::Bad:
        return QStringLiteral("bad");
    case State::Warning:
        return QStringLiteral("warning");
    case State::Note:
        break;
    }
    return QStringLiteral("note");
}

/// Where something was seen. What does not apply is empty or 0; lines count from 1.
struct Place
{
    QString path;
    int line = 0;
    qint64 process = 0;
};

/// What a check saw that is not as it should be.
struct Finding
{
    QString check;
    State state = State::Warning;
    /// For people, in the language that the check was run with.
    QString text;
    QVector<Place> where;
    /// What the text's placeholders were filled with.
    QMap<QString, QString> values;
    /// Ids of the repairs that fit, the recommended one first.
    QStringList repairs;
};

} // namespace doctor
