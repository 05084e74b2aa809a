#pragma once

#include <QByteArray>
#include <QString>

namespace testsupport {

/// Scripts of the test's own in the staging directory of its private home: a copy that lies there
/// is used as it is, so these run in place of the embedded ones for as long as this object lives.
class StagedScripts
{
public:
    StagedScripts();
    ~StagedScripts();

    /// Puts @p body, a bash script, in place of the embedded script @p name.
    void replace(const QString &name, const QByteArray &body) const;

    /// Makes every staging fail.
    void makeImpossible() const;

private:
    Q_DISABLE_COPY_MOVE(StagedScripts)
};

} // namespace testsupport
