#pragma once

#include <QString>

#include <optional>

namespace doctor {

/// Bytes of "512", "20 KiB", "1.5GiB"; K, M, G and T alone count as KiB and so on, kB as 1000.
std::optional<double> sizeOf(const QString &text);

/// Seconds of "500ms", "30s", "10 min", "12h", "7d", "2 weeks", "1 year".
std::optional<double> ageOf(const QString &text);

/// Permission bits as in chmod(1): octal digits, or words such as "u+rw,o+w".
struct ModeBits
{
    unsigned bits = 0;
    bool isOctal = false;
};
std::optional<ModeBits> modeOf(const QString &text);

/// The mode after a change such as "u+rw,o-w" or "600"; nothing for anything else.
std::optional<unsigned> changedMode(unsigned mode, const QString &change);

/// Below 0, 0 or above 0, as the first version is older, the same or newer. Digits compare as
/// numbers, "~" sorts before everything, a leading "epoch:" first: as Debian orders versions.
int compareVersions(const QString &first, const QString &second);

} // namespace doctor
