#pragma once

#include <QByteArray>
#include <QString>

namespace testsupport {

/// Replaces embedded scripts while this object lives: puts the test's scripts into the staging
/// directory, where an existing copy is used unchanged.
class StagedScripts
{
public:
    StagedScripts();
    ~StagedScripts();

    /// Replaces the embedded script @p name with the bash script @p body.
    void replace(const QString &name, const QByteArray &body) const;

    /// Makes every staging fail.
    void makeImpossible() const;

private:
    Q_DISABLE_COPY_MOVE(StagedScripts)
};

} // namespace testsupport
