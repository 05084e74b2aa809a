#include "document/fontcomparison.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include "document/suiteapplication.h"
#include "host/krt.h"
#include "info/initext.h"
#include "plugin/config/scriptstaging.h"
#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

constexpr char extractScript[] = "extractfont.sh";
constexpr char shell[] = "bash";
constexpr qint64 largestAnswer = qint64(16) * 1024 * 1024;
constexpr char missingFontKey[] = "vyrtool/MissFonts";

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
    QFile::remove(answerFile);
    krt::ksafe::KProcess::Execute(
        QLatin1String(shell),
        {script, QCoreApplication::applicationDirPath(), application->executable, document});
    // The exit status is ignored: the suite may have answered before it failed.
    const QFileInfo file(answerFile);
    if (!file.exists() || file.size() > largestAnswer)
        return std::nullopt;
    const QSettings answer(answerFile, QSettings::IniFormat);
    return readableIniText(answer.value(QLatin1String(missingFontKey)));
}

} // namespace OfficeAssiant
