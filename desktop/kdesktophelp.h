#pragma once

#include <QObject>

namespace OfficeAssiant {

/// Inspects and repairs desktop shortcuts and file associations.
class KDesktopHelp : public QObject
{
    Q_OBJECT

public:
    explicit KDesktopHelp(QObject *parent = nullptr);
    ~KDesktopHelp() override;
};

} // namespace OfficeAssiant
