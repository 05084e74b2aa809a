#include "host/kfssearch.h"

class KFsSearch::Private
{
};

KFsSearch::KFsSearch(QObject *parent) : QObject(parent) {}

KFsSearch::~KFsSearch() = default;

void KFsSearch::DoSearchFileName(const QString &, const QString &, bool)
{
    emit searchFinished();
}

void KFsSearch::StopSearch() {}

void KFsSearch::RunEverythingDaemon() {}
