#pragma once

#include <QAbstractButton>

namespace orvelle {

/// The quiet row that offers the address in the clipboard: "From the
/// clipboard: example.org/page", with the key that takes it. Hidden while
/// there is nothing to offer.
class ClipboardOffer : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ClipboardOffer(QWidget *parent = nullptr);

    /// An empty link offers nothing.
    void setLink(const QString &link);
    QString link() const { return m_link; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    QString m_link;
};

} // namespace orvelle
