#pragma once

#include <QJsonObject>
#include <QObject>
#include <QStringList>

namespace helio {

/// Remembers what was dropped on the widgets that it watches: Chromium tells a page the names of
/// dropped files, but not their paths.
class DroppedFiles : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override;

    /// The "paths" of the last drop, once.
    QJsonObject take();

private:
    QStringList m_paths;
};

} // namespace helio
