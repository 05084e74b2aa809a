#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include "doctor/model/descriptor.h"

namespace doctor {

/// Larger files are neither written nor kept for undo: they would have to be held in memory twice.
constexpr int largestFile = 64 << 20;

/// A directory entry whose directory is held open: links that are put into the way to it later do
/// not lead anywhere else.
struct Spot
{
    Descriptor directory;
    QByteArray name;
};

// Each of these answers 0 or an errno.

/// Opens the directory of @p path, an absolute path, in which no directory may be a link.
int openSpot(const QByteArray &path, Spot &spot);
int writeAll(int descriptor, const QByteArray &bytes);
/// At most @p most bytes; EFBIG if there are more.
int readAll(int descriptor, int most, QByteArray &bytes);
int removeEntry(int directory, const QByteArray &name);
/// Renames, also between directories, and never replaces anything: EEXIST.
int renameNew(int fromDirectory, const QByteArray &from, int toDirectory, const QByteArray &to);
int syncDescriptor(int descriptor);

} // namespace doctor
