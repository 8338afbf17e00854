#include "ui/common/Theme.h"

#include "platform/Appearance.h"

#include <QApplication>

namespace orvelle {

namespace {

constexpr int darkBelowLightness = 128;

void setDisabled(QPalette &palette, QPalette::ColorRole role, const QColor &color)
{
    palette.setColor(QPalette::Disabled, role, color);
}

} // namespace

Theme::Theme(const Appearance &appearance, QObject *parent) : QObject(parent), m_appearance(appearance)
{
    connect(&appearance, &Appearance::changed, this, &Theme::apply);
    apply();
}

void Theme::apply()
{
    const bool dark = m_appearance.prefersDark();
    if (dark == m_darkened)
        return;
    if (dark && QApplication::palette().color(QPalette::Window).lightness() < darkBelowLightness)
        return;
    m_darkened = dark;
    // An unresolved palette stands for the theme's own.
    QApplication::setPalette(dark ? darkPalette() : QPalette());
}

QPalette Theme::darkPalette()
{
    const QColor window(0x2d, 0x2e, 0x31);
    const QColor text(0xec, 0xec, 0xec);
    const QColor faint(0x86, 0x88, 0x8c);
    const QColor accent(0x2f, 0x80, 0xc8);
    QPalette palette(text, QColor(0x3a, 0x3b, 0x3f), QColor(0x55, 0x57, 0x5b), QColor(0x1b, 0x1c, 0x1e),
                     QColor(0x45, 0x46, 0x4a), text, Qt::white, QColor(0x23, 0x24, 0x26), window);
    palette.setColor(QPalette::AlternateBase, QColor(0x2a, 0x2b, 0x2e));
    palette.setColor(QPalette::ToolTipBase, QColor(0x1f, 0x20, 0x22));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb4, 0xf5));
    palette.setColor(QPalette::LinkVisited, QColor(0xb8, 0x9b, 0xf0));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        setDisabled(palette, role, faint);
    setDisabled(palette, QPalette::Highlight, QColor(0x4a, 0x4c, 0x50));
    setDisabled(palette, QPalette::HighlightedText, faint);
    return palette;
}

} // namespace orvelle
