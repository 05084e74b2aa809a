#include "document/printeddocument.h"

#include <QFileInfo>

#include "document/suiteapplication.h"
#include "host/krt.h"
#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

constexpr char printMode[] = "print";
constexpr char pdfPath[] = "%1/%2.pdf";
constexpr char shell[] = "/bin/bash";
/// A shell script that bash finds in PATH.
constexpr char opener[] = "xdg-open";

} // namespace

QString printToPdf(const QString &document)
{
    const std::optional<SuiteApplication> application = applicationFor(document);
    if (!application)
        return {};
    krt::ksafe::KProcess::Execute(checkToolPath(),
                                  {QLatin1String(printMode), application->executable, document});
    // The tool names the PDF after the part of the file name before the first dot.
    const QString pdf =
        QLatin1String(pdfPath).arg(suiteTemporaryDirectory(), QFileInfo(document).baseName());
    return QFileInfo::exists(pdf) ? pdf : QString();
}

void showPdf(const QString &pdf)
{
    krt::ksafe::KProcess::StartDetach(QLatin1String(shell), {QLatin1String(opener), pdf}, QString(),
                                      nullptr);
}

} // namespace OfficeAssiant
