#pragma once

#include <QString>

namespace standin {

/// The text as one word of a command line that is pasted into a shell.
QString shellWord(const QString &text);

} // namespace standin
