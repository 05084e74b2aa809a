#include "document/printeddocument.h"

#include <QCoreApplication>
#include <QFileInfo>

#include "document/suiteapplication.h"
#include "host/krt.h"

namespace OfficeAssiant {

namespace {

const QString checkTool = QStringLiteral("/vyrEnvCheckTool");
const QString printMode = QStringLiteral("print");
const QString pdfPath = QStringLiteral("%1/tmp/%2.pdf");
const QString shell = QStringLiteral("/bin/bash");
/// A shell script, which bash finds in PATH.
const QString opener = QStringLiteral("xdg-open");

} // namespace

QString printToPdf(const QString &document)
{
    const SuiteApplication *application = applicationFor(document);
    if (!application)
        return {};
    krt::ksafe::KProcess::Execute(QCoreApplication::applicationDirPath() + checkTool,
                                  {printMode, application->executable, document});
    // The tool names the PDF after the part before the first dot.
    const QString pdf = pdfPath.arg(krt::dirs::orvaneHome(), QFileInfo(document).baseName());
    return QFileInfo::exists(pdf) ? pdf : QString();
}

void showPdf(const QString &pdf)
{
    krt::ksafe::KProcess::StartDetach(shell, {opener, pdf}, QString(), nullptr);
}

} // namespace OfficeAssiant
