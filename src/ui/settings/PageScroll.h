#pragma once

#include <QScrollArea>

namespace orvelle {

/// Holds a page that is as large as the view, and scrolls it up and down where
/// the view is smaller than the page can get. Never narrower than the page.
/// The wheel scrolls it, and changes nothing on the page that has not the focus.
class PageScroll : public QScrollArea
{
    Q_OBJECT

public:
    /// Takes ownership of `page`, which has a layout.
    explicit PageScroll(QWidget *page, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void fit();
};

} // namespace orvelle
