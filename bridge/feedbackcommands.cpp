#include <QDir>
#include <QFileDialog>
#include <QJsonObject>

#include "bridge/answer.h"
#include "bridge/documentfilters.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "document/suiteapplication.h"
#include "feedback/feedbackarchive.h"

using namespace OfficeAssiant;

namespace {

void answerChoice(KxWebViewJSContext &context, const QString &path)
{
    if (path.isEmpty())
        setResult(context, resultError());
    else
        setBase64Result(context, path);
}

FeedbackRequest requestOf(const KxWebViewJSContext &context, const QString &archivePath)
{
    FeedbackRequest request;
    request.archivePath = archivePath;
    request.type = textArgument(context, QStringLiteral("archiveType"));
    request.description = textArgument(context, QStringLiteral("archiveDescribe"));
    for (const char *name : {"archiveSample", "archiveAttach1", "archiveAttach2", "archiveAttach3"})
        request.files.append(textArgument(context, QLatin1String(name)));
    // Any text asks for the report, even "false"; the page leaves the argument out otherwise.
    request.withSystemReport = !textArgument(context, QStringLiteral("archiveSysInfo")).isEmpty();
    request.withSuiteSettings = boolArgument(context, QStringLiteral("archiveVyrInfo"));
    request.withDumps = boolArgument(context, QStringLiteral("archiveDumpInfo"));
    return request;
}

} // namespace

void KVyrAssistantToolAPI::choosesamplefile(KxWebViewJSContext &context)
{
    const QString filters = joinedFilters(
        {filterEntry(QStringLiteral("VYR/Word Files"), patternsOf(writer())),
         filterEntry(QStringLiteral("SHW/PowerPoint Files"), patternsOf(presentation())),
         filterEntry(QStringLiteral("TBL/Excel Files"), reorderedSpreadsheetPatterns())});
    answerChoice(context,
                 QFileDialog::getOpenFileName(nullptr, tr("Open File"), QDir::homePath(), filters));
}

void KVyrAssistantToolAPI::chooseattachment(KxWebViewJSContext &context)
{
    answerChoice(context, QFileDialog::getOpenFileName(nullptr, tr("Open File"), QDir::homePath()));
}

void KVyrAssistantToolAPI::archivepackage(KxWebViewJSContext &context)
{
    const QString path =
        QFileDialog::getSaveFileName(nullptr, tr("Save File"), tr("questionfeedback"));
    if (!path.isEmpty())
        startArchive(requestOf(context, path), KToolManager::instance().infoHelp);
    answerChoice(context, path);
}

void KVyrAssistantToolAPI::feedbacktovyr(KxWebViewJSContext &context)
{
    m_collectionPage = textArgument(context, QStringLiteral("infopage"));
}

void KVyrAssistantToolAPI::getcollectionpage(KxWebViewJSContext &context)
{
    QJsonObject page{{QStringLiteral("page"), m_collectionPage}};
    if (m_collectionPage == QLatin1String("layout"))
        page.insert(QStringLiteral("file"), m_layoutProblemFile);
    else if (m_collectionPage == QLatin1String("print"))
        page.insert(QStringLiteral("file"), m_printProblemFile);
    setResult(context, page);
}
