#include "document/fontcomparison.h"

#include <QCoreApplication>
#include <QFile>
#include <QSettings>

#include "document/suiteapplication.h"
#include "host/krt.h"
#include "info/initext.h"
#include "plugin/config/scriptstaging.h"

namespace OfficeAssiant {

namespace {

const QString extractScript = QStringLiteral("extractfont.sh");
const QString shell = QStringLiteral("bash");
const QString missingFontKey = QStringLiteral("vyrtool/MissFonts");

} // namespace

QString decodedDocumentPath(const QString &argument)
{
    return QString::fromUtf8(QByteArray::fromBase64(argument.toUtf8()).constData());
}

std::optional<QString> missingFonts(const QString &document)
{
    const QString script = stagedScript(extractScript);
    if (script.isEmpty())
        return std::nullopt;
    const SuiteApplication *application = applicationFor(document);
    if (!application)
        return std::nullopt;
    const QString answerFile =
        krt::dirs::orvaneHome() + QStringLiteral("/tmp/") + application->missingFontFile;
    QFile::remove(answerFile);
    krt::ksafe::KProcess::Execute(
        shell, {script, QCoreApplication::applicationDirPath(), application->executable, document});
    // Not the exit status: a suite that complains may have answered all the same.
    if (!QFile::exists(answerFile))
        return std::nullopt;
    const QSettings answer(answerFile, QSettings::IniFormat);
    return decodedIniText(answer.value(missingFontKey));
}

} // namespace OfficeAssiant
