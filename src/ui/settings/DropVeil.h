#pragma once

#include <QWidget>

namespace orvelle {

/// Lies over a whole window while documents are dragged across it, and says
/// that they may be dropped. Lets every event through; follows its parent's
/// size.
class DropVeil : public QWidget
{
    Q_OBJECT

public:
    DropVeil(const QString &text, QWidget *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
};

} // namespace orvelle
