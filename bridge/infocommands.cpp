#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QUrl>

#include "bridge/answer.h"
#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "host/krt.h"
#include "info/machineload.h"

using namespace OfficeAssiant;

namespace {

/// Opens a file that was just written. False if it must not be opened.
bool openIfSafe(const QString &path)
{
    if (!krt::ksafe::KProcess::checkLocalFileSafe(path))
        return false;
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    return true;
}

} // namespace

void KVyrAssistantToolAPI::exportsysinfo(KxWebViewJSContext &context)
{
    const QString path = QFileDialog::getSaveFileName(nullptr, tr("Save File"), tr("systeminfo"));
    if (path.isEmpty()) {
        setResult(context, resultError());
        return;
    }
    // The answer is the same for a report that a full disk cuts short; the shell may tell the user.
    if (!KToolManager::instance().infoHelp.writeSysInfoReport(path, ReportSections()))
        setIncomplete(context);
    if (openIfSafe(path))
        setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::exportoftenfileperm(KxWebViewJSContext &context)
{
    const QString output =
        QFileDialog::getSaveFileName(nullptr, tr("Save File"), tr("filepermissions"));
    // The listing may still be running when it is opened.
    if (!output.isEmpty() && KToolManager::instance().infoHelp.exportOftenFilePermissions(output))
        openIfSafe(output);
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::exportspecialfileperm(KxWebViewJSContext &context)
{
    const QString file = QFileDialog::getOpenFileName(nullptr, tr("Open File"));
    if (file.isEmpty()) {
        setResult(context, resultError());
        return;
    }
    const QString output =
        QFileDialog::getSaveFileName(nullptr, tr("Save File"), tr("filepermissions"));
    if (!output.isEmpty() &&
        KToolManager::instance().infoHelp.exportSpecialFilePermissions(output, file))
        openIfSafe(output);
    setResult(context, resultSuccess());
}

void KVyrAssistantToolAPI::getcpuinfo(KxWebViewJSContext &context)
{
    setResult(context, heaviestProcessesByCpu());
}

void KVyrAssistantToolAPI::getmemoryinfo(KxWebViewJSContext &context)
{
    setResult(context, heaviestProcessesByMemory());
}

void KVyrAssistantToolAPI::getcomputermemory(KxWebViewJSContext &context)
{
    setResult(context, memoryUse());
}

void KVyrAssistantToolAPI::stratcheckenv(KxWebViewJSContext &context)
{
    setResult(context, KToolManager::instance().infoHelp.environmentSnapshot());
}

void KVyrAssistantToolAPI::stratextractfileinfo(KxWebViewJSContext &context)
{
    setResult(context, KToolManager::instance().infoHelp.extractFileInfo());
}

void KVyrAssistantToolAPI::addconfigfile(KxWebViewJSContext &context)
{
    const QString path = QFileDialog::getOpenFileName(nullptr, tr("Open File"));
    const QFileInfo file(path);
    if (path.isEmpty() || !file.exists()) {
        setResult(context, resultError());
        return;
    }
    KToolManager::instance().infoHelp.addOftenFile(file.fileName(), path);
    setResult(context, resultSuccess());
}
