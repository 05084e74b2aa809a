#include "envcheck/checktoolanswer.h"

#include <QSettings>

#include "envcheck/environmentcheck.h"
#include "plugin/config/suitefiles.h"
#include "qtversion/qtversion.h"

namespace OfficeAssiant {

namespace {

constexpr char answerFile[] = "/vyrEnv.ini";
constexpr char answerGroup[] = "vyrEnv";

} // namespace

QString checkToolAnswer(const EnvironmentCheck &check)
{
    QSettings answers(suiteTemporaryDirectory() + QLatin1String(answerFile), QSettings::IniFormat);
    qtversion::useUtf8(answers);
    answers.beginGroup(QLatin1String(answerGroup));
    // The tool names the component first; the page, and so the kept results, the check.
    const QByteArray value = answers.value(check.app + QLatin1Char('-') + check.type).toByteArray();
    return value.isNull() ? QString() : QString::fromUtf8(value.constData());
}

} // namespace OfficeAssiant
