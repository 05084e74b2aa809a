#pragma once

#include <QByteArray>

#include <optional>

namespace doctor {

/// Brings both changes of @p base together, by lines. Changes of neighbouring lines get along,
/// other than in diff3(1): each line of a settings file is an entry of its own.
/// @return nothing if both changed the same lines in different ways, or a content is not text
std::optional<QByteArray> mergedLines(const QByteArray &base, const QByteArray &ours,
                                      const QByteArray &theirs);

/// Whether a content has lines at all: no byte of it is 0.
bool isText(const QByteArray &content);

} // namespace doctor
