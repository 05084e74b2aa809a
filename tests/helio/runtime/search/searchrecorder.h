#pragma once

#include <QFileInfo>
#include <QTest>

#include <algorithm>

#include "host/kfssearch.h"
#include "tests/helio/runtime/search/searchplace.h"

namespace testsupport {

/// Records the signals of a search.
class SearchRecorder
{
public:
    SearchRecorder()
    {
        QObject::connect(&search, &KFsSearch::SigGetContentHasKey, &search,
                         [this](const QString &path, const QString &keyword, bool isDirectory) {
                             paths.append(path);
                             keywords.append(keyword);
                             if (isDirectory)
                                 folders.append(path);
                         });
        QObject::connect(&search, &KFsSearch::searchFinished, &search, [this] { ++ends; });
    }

    void start(const QString &keyword, const QString &directory = {}, bool caseSensitive = false)
    {
        paths.clear();
        keywords.clear();
        folders.clear();
        ends = 0;
        search.DoSearchFileName(keyword, directory, caseSensitive);
    }

    bool waitForEnd()
    {
        return QTest::qWaitFor([this] { return ends > 0; }, longestWaitMs);
    }

    bool waitForHits(int count)
    {
        return QTest::qWaitFor([this, count] { return paths.size() >= count; }, longestWaitMs);
    }

    /// Searches to the end; returns the names of the hits, sorted.
    QStringList namesOf(const QString &keyword, const QString &directory = {},
                        bool caseSensitive = false)
    {
        start(keyword, directory, caseSensitive);
        if (!waitForEnd())
            return {QStringLiteral("the search did not end")};
        return names();
    }

    QStringList names() const
    {
        QStringList found;
        for (const QString &path : paths)
            found.append(path.mid(path.lastIndexOf(QLatin1Char('/')) + 1));
        std::sort(found.begin(), found.end());
        return found;
    }

    QStringList paths;
    QStringList keywords;
    QStringList folders;
    int ends = 0;
    KFsSearch search;
};

} // namespace testsupport
