#pragma once

#include <QRadioButton>

namespace orvelle {

/// A radio button drawn as a picture with its name below, the chosen one on a
/// rounded ground of the highlight colour.
class PictureRadio : public QRadioButton
{
    Q_OBJECT

public:
    PictureRadio(const QString &symbol, const QString &title, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void paintGround(QPainter &painter) const;

    QString m_symbol;
};

} // namespace orvelle
