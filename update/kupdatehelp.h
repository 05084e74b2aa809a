#pragma once

#include <QObject>

namespace OfficeAssiant {

/// Looks after the updater: its configuration, its log and its test runs.
class KUpdateHelp : public QObject
{
    Q_OBJECT

public:
    explicit KUpdateHelp(QObject *parent = nullptr);
    ~KUpdateHelp() override;
};

} // namespace OfficeAssiant
