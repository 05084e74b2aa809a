#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace doctor {

/// A rule for the content of files; it holds if its bytes stand there and one of its inner rules
/// holds, if it has any.
struct MagicRule
{
    int depth = 0;
    int offset = 0;
    /// How many offsets from the first one on may hold it.
    int range = 1;
    QByteArray value;
    QByteArray mask;
};

struct MagicType
{
    QString type;
    int priority = 0;
    QVector<MagicRule> rules;
};

/// The rules of a file "magic" that update-mime-database(1) compiles, the strongest first. What
/// follows something else is left out.
QVector<MagicType> parseMagic(const QByteArray &content);

/// The type whose rule the beginning of a file fits; null if it fits none.
const MagicType *matchingType(const QVector<MagicType> &types, const QByteArray &beginning);

} // namespace doctor
