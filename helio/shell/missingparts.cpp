#include "helio/shell/missingparts.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QUrl>

#include "helio/webengine/pagedirectory.h"
#include "qtversion/qtversion.h"
#include "texts/texts.h"

namespace {

bool isProgram(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

} // namespace

QString shell::chromiumHelperPath()
{
    QString named = QFile::decodeName(qgetenv("QTWEBENGINEPROCESS_PATH"));
    if (!named.isEmpty())
        return named;
    const QString helperName = QStringLiteral("/QtWebEngineProcess");
    const QString installed = QLibraryInfo::location(QLibraryInfo::LibraryExecutablesPath);
    const QString beside = QCoreApplication::applicationDirPath();
    return (isProgram(installed + helperName) ? installed : beside) + helperName;
}

QString shell::missingPart(const helio::PageDirectory &pages, const QString &startPage)
{
    if (!isProgram(chromiumHelperPath()))
        return texts::tr("Chromium's helper program is missing: %1 (on Debian, install the package "
                         "%2)")
            .arg(chromiumHelperPath(), QLatin1String(qtversion::chromiumPackage));
    if (!QFileInfo(pages.path()).isDir())
        return texts::tr("the directory of the pages is missing: %1").arg(pages.path());
    const QUrl page = pages.urlOf(startPage);
    if (!QFileInfo(page.toLocalFile()).isFile())
        return texts::tr("the start page is missing: %1").arg(page.toLocalFile());
    if (!pages.contains(page))
        return texts::tr("the start page is outside the directory of the pages: %1")
            .arg(page.toLocalFile());
    return {};
}
