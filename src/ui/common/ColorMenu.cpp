#include "ui/common/ColorMenu.h"

#include "base/Text.h"
#include "links/LinkColors.h"
#include "ui/common/Colors.h"

#include <QAction>
#include <QPainter>

namespace orvelle {

namespace {

constexpr int swatchSide = 16;

QPixmap swatchPixmap(const QColor &color, const QColor &outline, qreal ratio)
{
    QPixmap pixmap(qRound(swatchSide * ratio), qRound(swatchSide * ratio));
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(color);
    painter.setPen(QPen(outline, 1));
    painter.drawEllipse(QRectF(1.5, 1.5, swatchSide - 3, swatchSide - 3));
    return pixmap;
}

} // namespace

QIcon colorSwatch(const QString &colorKey, const QPalette &palette)
{
    const auto color = nsColor(colorKey);
    if (!color)
        return {};
    // White on a white ground and black on a black one need an edge.
    const QColor ground = palette.color(QPalette::Window);
    const QColor outline =
        readable(palette.color(QPalette::Mid), ground, palette.color(QPalette::WindowText), edgeContrast(palette));
    QIcon icon;
    for (const qreal ratio : {1.0, 2.0, 3.0})
        icon.addPixmap(swatchPixmap(toQColor(*color, palette), outline, ratio));
    return icon;
}

ColorMenu::ColorMenu(QWidget *parent) : QMenu(parent)
{
    for (const ColorChoice &choice : allColors()) {
        const QString key = QString::fromLatin1(choice.key);
        QAction *action = addAction(text(choice.label));
        action->setData(key);
        action->setCheckable(true);
        connect(action, &QAction::triggered, this, [this, key] { emit chosen(key); });
    }
    connect(this, &QMenu::aboutToShow, this, &ColorMenu::refreshSwatches);
}

void ColorMenu::setCurrent(const std::optional<QString> &colorKey)
{
    for (QAction *action : actions())
        action->setChecked(colorKey && action->data().toString() == *colorKey);
}

void ColorMenu::refreshSwatches()
{
    for (QAction *action : actions())
        action->setIcon(colorSwatch(action->data().toString(), palette()));
}

} // namespace orvelle
