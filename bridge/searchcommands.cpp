#include <QDesktopServices>
#include <QFileInfo>
#include <QJsonObject>
#include <QUrl>

#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "host/krt.h"

using namespace OfficeAssiant;

void KVyrAssistantToolAPI::opensearchfile(KxWebViewJSContext &context)
{
    const QString file = textArgument(context, QStringLiteral("file"));
    if (!krt::ksafe::KProcess::checkLocalFileSafe(file))
        return;
    QDesktopServices::openUrl(QUrl::fromLocalFile(file));
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::startsearchfile(KxWebViewJSContext &context)
{
    auto &search = KToolManager::instance().fsSearch;
    search.StopSearch();
    const QString keyword = textArgument(context, QStringLiteral("keyword"));
    if (!keyword.isEmpty())
        search.DoSearchFileName(keyword, QStringLiteral(""), false);
}

void KVyrAssistantToolAPI::onsearchfileresult(const QString &path, const QString &, bool)
{
    if (path.isEmpty())
        return;
    const QFileInfo file(path);
    // Both parts are encoded so that any file name can be a key.
    const QJsonObject hit{{toBase64(file.fileName()), toBase64(file.absolutePath())}};
    publishAnswer(*this, QStringLiteral("startsearchfileCallBack"), hit);
}

void KVyrAssistantToolAPI::onsearchfinished()
{
    publishAnswer(*this, QStringLiteral("searchfilefinish"), resultSuccess());
}
