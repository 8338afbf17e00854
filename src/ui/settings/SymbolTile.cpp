#include "ui/settings/SymbolTile.h"

#include "links/LinkColors.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"

#include <QPainter>

namespace orvelle {

namespace {

/// Of the tile to the text's colour, so that its symbol can keep its own.
constexpr double tileContrast = 9;

} // namespace

SymbolTile::SymbolTile(const QString &symbol, const QString &colorKey, int side, QWidget *parent)
    : QWidget(parent), m_symbol(symbol), m_colorKey(colorKey)
{
    setFixedSize(side, side);
}

void SymbolTile::paintEvent(QPaintEvent *)
{
    const QColor ground = palette().color(QPalette::Window);
    const auto known = nsColor(m_colorKey);
    const QColor color = known ? toQColor(*known, palette()) : palette().color(QPalette::Highlight);
    const Tint tint = softTint(color, ground, palette().color(QPalette::WindowText), tileContrast);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tint.ground);
    painter.drawRoundedRect(rect(), width() * 0.24, height() * 0.24);
    const int side = width() / 2;
    const QColor readableColor = readable(color, tint.ground, tint.text, textContrast(palette()));
    painter.drawPixmap((width() - side) / 2, (height() - side) / 2,
                       symbolPixmap(m_symbol, side, readableColor, devicePixelRatioF()));
}

} // namespace orvelle
