#pragma once

#include <QStringList>
#include <QTest>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/documentfonts.h"

namespace testsupport {

/// The families that a document's text is set in, sorted; "error: …" when it is refused.
inline QStringList documentFamilies(const QString &path)
{
    QStringList names;
    try {
        for (const programs::UsedFamily &family : programs::documentFonts(path))
            names.append(family.name);
    } catch (const programs::DocumentError &error) {
        return {QStringLiteral("error: ") + QString::fromUtf8(error.what())};
    }
    names.sort();
    return names;
}

} // namespace testsupport
