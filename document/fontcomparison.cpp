#include "document/fontcomparison.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include "document/suiteapplication.h"
#include "host/krt.h"
#include "info/initext.h"
#include "plugin/config/directorylock.h"
#include "plugin/config/scriptstaging.h"
#include "plugin/config/suitefiles.h"
#include "qtversion/qtversion.h"

namespace OfficeAssiant {

namespace {

constexpr char extractScript[] = "extractfont.sh";
constexpr char shell[] = "bash";
constexpr qint64 largestAnswer = qint64(16) * 1024 * 1024;
constexpr char missingFontKey[] = "vyrtool/MissFonts";
/// After that it is better to ask at the same time than not to answer.
constexpr int longestTurnMs = 60000;

} // namespace

QString decodedDocumentPath(const QString &argument)
{
    return QString::fromUtf8(QByteArray::fromBase64(argument.toUtf8()).constData());
}

std::optional<QString> missingFonts(const QString &document)
{
    const QString script = stagedScript(QLatin1String(extractScript));
    if (script.isEmpty())
        return std::nullopt;
    const std::optional<SuiteApplication> application = applicationFor(document);
    if (!application)
        return std::nullopt;
    const QString answerFile =
        suiteTemporaryDirectory() + QLatin1Char('/') + application->missingFontFile;
    // All programs of this home get the answer in the same file, so one asks after the other.
    const DirectoryLock turn(suiteTemporaryDirectory(), DirectoryLock::Exclusive, longestTurnMs);
    QFile::remove(answerFile);
    krt::ksafe::KProcess::Execute(
        QLatin1String(shell),
        {script, QCoreApplication::applicationDirPath(), application->executable, document});
    // The exit status is ignored: the suite may have answered before it failed.
    const QFileInfo file(answerFile);
    if (!file.exists() || file.size() > largestAnswer)
        return std::nullopt;
    const QSettings answer(answerFile, qtversion::suiteIni());
    return readableIniText(answer.value(QLatin1String(missingFontKey)));
}

} // namespace OfficeAssiant
