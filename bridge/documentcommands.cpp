#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QJsonObject>
#include <QPointer>
#include <QUrl>

#include "bridge/answer.h"
#include "bridge/documentfilters.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "document/fontcomparison.h"
#include "document/printeddocument.h"
#include "document/suiteapplication.h"
#include "host/krt.h"

using namespace OfficeAssiant;

void KVyrAssistantToolAPI::comparefont(KxWebViewJSContext &context)
{
    const QString document = decodedDocumentPath(textArgument(context, QStringLiteral("filepath")));
    if (const auto fonts = missingFonts(document))
        setResult(context, QJsonObject{{QStringLiteral("MissFonts"), toBase64(*fonts)}});
    else
        setResult(context, resultError());
}

void KVyrAssistantToolAPI::chooselayouterrorfile(KxWebViewJSContext &context)
{
    // The page may be closed while the dialog is open.
    const QPointer<KVyrAssistantToolAPI> alive(this);
    const QString filters =
        joinedFilters({filterEntry(tr("VYR/Word Files"), patternsOf(writer())),
                       filterEntry(tr("TBL/Excel Files"), reorderedSpreadsheetPatterns()),
                       filterEntry(tr("SHW/PowerPoint Files"), patternsOf(presentation()))});
    const QString path =
        QFileDialog::getOpenFileName(nullptr, tr("Open File"), QDir::homePath(), filters);
    if (path.isEmpty()) {
        setResult(context, resultError());
        return;
    }
    if (alive)
        m_layoutProblemFile = path;
    setBase64Result(context, path);
}

void KVyrAssistantToolAPI::openlaytouerrorfile(KxWebViewJSContext &context)
{
    if (m_layoutProblemFile.isEmpty() || !QFile::exists(m_layoutProblemFile)) {
        setResult(context, resultError());
        return;
    }
    // A file that must not be opened gives no "result".
    if (!krt::ksafe::KProcess::checkLocalFileSafe(m_layoutProblemFile))
        return;
    QDesktopServices::openUrl(QUrl::fromLocalFile(m_layoutProblemFile));
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::openprinterrorfile(KxWebViewJSContext &context)
{
    // The page may be closed while the dialog is open.
    const QPointer<KVyrAssistantToolAPI> alive(this);
    // These labels are not translated.
    const QString filters = joinedFilters(
        {filterEntry(QStringLiteral("VYR/Word Files"), patternsOf(writer())),
         filterEntry(QStringLiteral("TBL/Excel Files"), patternsOf(spreadsheet())),
         filterEntry(QStringLiteral("SHW/PowerPoint Files"), patternsOf(presentation()))});
    const QString path =
        QFileDialog::getOpenFileName(nullptr, tr("Open File"), QDir::homePath(), filters);
    const QString pdf = path.isEmpty() ? QString() : printToPdf(path);
    if (pdf.isEmpty()) {
        setResult(context, resultError());
        return;
    }
    if (alive)
        m_printProblemFile = path;
    showPdf(pdf);
    setBase64Result(context, path);
}
