#pragma once

#include <QObject>

namespace shell {

/// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal. Only one object may exist.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

signals:
    void received();
};

} // namespace shell
