#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

namespace ctl {

/// Writes events to standard output and flushes after each. The first failure prints a warning.
class EventPrinter
{
public:
    explicit EventPrinter(bool pretty);

    void print(const QJsonObject &event) const;

    /// Prints an answer; @p envelope is what the page's callback would receive.
    void printAnswer(const QJsonValue &id, const QString &page, const QString &command,
                     const QJsonObject &envelope) const;

    void printError(const QJsonValue &id, const QString &message) const;

    /// Prints the end of a wait.
    void printWaited(bool timeout) const;

private:
    bool m_pretty;
    mutable bool m_hasComplained = false;
};

} // namespace ctl
