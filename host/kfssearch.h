#pragma once

#include <QObject>
#include <QString>

#include <memory>

#include "host/khelioexport.h"

/// The shell's search for files by name. One search at a time; everything but the search itself
/// happens on the thread of this object.
class HELIO_EXPORT KFsSearch : public QObject
{
    Q_OBJECT

public:
    explicit KFsSearch(QObject *parent = nullptr);
    ~KFsSearch() override;

    /// Searches for files and folders whose name contains @p keyword, taken as plain text
    /// without regard to case. A running search is stopped first. @p directory limits the search to
    /// what lies below it, empty searches everything; @p caseSensitive compares the case too.
    void DoSearchFileName(const QString &keyword, const QString &directory, bool caseSensitive);

    /// Stops a running search: no further hit and no end of it is reported.
    void StopSearch();

    /// Makes sure that the data behind the search exist and are brought up to date in the
    /// background.
    void RunEverythingDaemon();

Q_SIGNALS:
    /// A hit: its absolute path, the keyword, and whether it is a folder.
    void SigGetContentHasKey(QString path, QString keyword, bool isDirectory);

    /// The end of a search that was not stopped.
    void searchFinished();

private:
    class Private;
    std::unique_ptr<Private> d;
};

// The plug-in holds one by value.
static_assert(sizeof(KFsSearch) == sizeof(QObject) + sizeof(void *),
              "the size is part of the border");
