#pragma once

#include <QRect>
#include <QString>
#include <QVector>

class QWidget;

namespace shell {

/// What the window keeps from one start to the next.
struct RememberedWindow
{
    /// The place and size that it has when it is not maximised; empty if none is known.
    QRect area;
    bool isMaximised = false;
    /// The page that was open beside the main page; empty for none.
    QString view;
};

/// The file in which the window's state is kept.
class WindowMemory
{
public:
    /// Keeps nothing if @p file is empty.
    explicit WindowMemory(const QString &file);

    RememberedWindow read() const;
    void keep(const RememberedWindow &state) const;

private:
    QString m_file;
};

/// Moves and shrinks @p area so that all of it is on the one of the @p screens which shows most of
/// it, or else on the first. The screens are the places that windows may take.
QRect fittedToScreens(const QRect &area, const QVector<QRect> &screens);

/// Places @p window at @p area as far as the screens have it, or in the middle if that is empty.
void placeWindow(QWidget *window, const QRect &area);

} // namespace shell
