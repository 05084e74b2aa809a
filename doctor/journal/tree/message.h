#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace doctor {

/// A sentence for people: English with %1, %2 …, and what stands there. The English text is the key
/// of its translation.
struct Message
{
    const char *english = "";
    QStringList values;

    /// The sentence with its values, in English.
    QString text() const { return filled(QString::fromUtf8(english)); }
    /// Same from a translation of the English text.
    QString filled(const QString &translation) const;
};

/// Why something was not done; nothing if it was.
using Problem = std::optional<Message>;

/// The sentence for an errno of working on @p path.
Message systemProblem(int error, const QString &path);

} // namespace doctor
