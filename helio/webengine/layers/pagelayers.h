#pragma once

class QStackedLayout;
class QWidget;

namespace helio {

/// What lies over each other in the place of a page. The one that is seen has the page's keyboard.
class PageLayers
{
public:
    /// @p place belongs to the window in which the page is one of several.
    explicit PageLayers(QWidget *place);

    void add(QWidget *layer);
    QWidget *front() const;
    void bringForward(QWidget *layer);

    /// Gives what is seen the keyboard, unless another page of the window has it.
    void takeFocus() const;

private:
    bool mayTakeFocus() const;

    QWidget *m_place;
    QStackedLayout *m_layout;
};

} // namespace helio
