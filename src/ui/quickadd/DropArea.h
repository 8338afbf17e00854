#pragma once

#include <QWidget>

namespace orvelle {

/// The dashed field that says where files can be dropped. Drawing only; the
/// view around it takes the drops, so that missing the field by a little does
/// no harm.
class DropArea : public QWidget
{
    Q_OBJECT

public:
    explicit DropArea(QWidget *parent = nullptr);

    void setDropTargeted(bool targeted);
    bool isDropTargeted() const { return m_isDropTargeted; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_isDropTargeted = false;
};

} // namespace orvelle
