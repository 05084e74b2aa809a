#pragma once

#include <QString>

namespace OfficeAssiant {

struct ConfigText
{
    QString group;
    QString key;
    QString value;
};

/// Stores a text in a group of an INI file so that a kill or a full disk leaves the earlier or the
/// new content. Does nothing unless @p file is a plain file that can be written.
///
/// The new content is written beside the file and renamed. Where no file can be put there, it is
/// written over the earlier content without making the file shorter first; meanwhile a copy in the
/// suite's directory lets recoverConfig() undo a part.
void storeText(const QString &file, const ConfigText &text);

/// Restores a file that a kill left partly written, and removes what storeText() left beside it.
void recoverConfig(const QString &file);

} // namespace OfficeAssiant
