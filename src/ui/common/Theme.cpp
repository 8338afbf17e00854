#include "ui/common/Theme.h"

#include "platform/Appearance.h"
#include "platform/WindowSystem.h"
#include "ui/common/Colors.h"
#include "ui/common/EdgeStyle.h"

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QScopedValueRollback>
#include <QWindow>

#include <algorithm>
#include <array>

namespace orvelle {

namespace {

/// `color` moved towards black or white, whichever leads away from `ground`.
QColor awayFrom(const QColor &color, const QColor &ground, double ratio)
{
    const bool lighten = contrastRatio(ground, Qt::white) > contrastRatio(ground, Qt::black);
    return readable(color, ground, lighten ? Qt::white : Qt::black, ratio);
}

void setDisabled(QPalette &palette, const QColor &color, const QColor &ground)
{
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, color);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, ground);
}

bool isSame(const QPalette &one, const QPalette &other)
{
    return std::ranges::all_of(std::array{QPalette::Window, QPalette::Base, QPalette::Highlight},
                               [&](QPalette::ColorRole role) { return one.color(role) == other.color(role); });
}

QPalette chosen(const QPalette &toolkits, const std::optional<QPalette> &desktops, bool dark, bool highContrast)
{
    const QPalette &own = desktops && !isSame(*desktops, toolkits) ? *desktops : toolkits;
    if (highContrast && !isHighContrast(own))
        return Theme::highContrastPalette(dark || isDark(own));
    if (dark && !isDark(own))
        return highContrast ? Theme::highContrastPalette(true) : Theme::darkPalette();
    return Theme::legible(own);
}

bool isIconTheme(const QString &name)
{
    return std::ranges::any_of(QIcon::themeSearchPaths(), [&name](const QString &folder) {
        return QFile::exists(folder + u'/' + name + QStringLiteral("/index.theme"));
    });
}

/// Icons of one colour are drawn for light windows or for dark ones.
void chooseIcons(bool dark)
{
    QIcon::setThemeName({}); // the desktop's
    const QString desktops = QIcon::themeName();
    if (!dark || desktops.endsWith(QStringLiteral("dark"), Qt::CaseInsensitive))
        return;
    for (const QString &suffix : {QStringLiteral("-dark"), QStringLiteral("-Dark")}) {
        if (isIconTheme(desktops + suffix))
            return QIcon::setThemeName(desktops + suffix);
    }
}

/// The frames that the toolkit draws itself, on Wayland, keep the colours of the
/// time they were made.
void renewFrames()
{
    if (!isOnWayland())
        return;
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (!window->handle() || window->frameMargins().isNull())
            continue;
        const Qt::WindowFlags flags = window->flags();
        window->setFlags(flags | Qt::FramelessWindowHint);
        window->setFlags(flags);
    }
}

} // namespace

Theme::Theme(const Appearance &appearance, QObject *parent) : QObject(parent), m_appearance(appearance)
{
    EdgeStyle::install();
    // To look at what is mirrored without a language that is.
    if (qEnvironmentVariableIsSet("ORVELLE_MIRRORED"))
        QApplication::setLayoutDirection(Qt::RightToLeft);
    connect(&appearance, &Appearance::changed, this, &Theme::apply);
    apply();
}

void Theme::apply()
{
    // A change of ours is reported like one by the desktop.
    if (m_applying)
        return;
    const QScopedValueRollback applying(m_applying, true);
    Wish wish{m_appearance.prefersDark(), m_appearance.prefersHighContrast(), m_appearance.palette(),
              QApplication::palette().color(QPalette::Window)};
    if (wish == m_applied)
        return;
    // Roles that nobody set are the theme's, also when it has changed since.
    if (m_replaced)
        QApplication::setPalette(m_own);
    m_own = QApplication::palette();
    const QPalette palette = chosen(m_own, wish.desktop, wish.dark, wish.highContrast);
    m_replaced = palette != m_own;
    if (m_replaced)
        QApplication::setPalette(palette);
    chooseIcons(isDark(palette));
    renewFrames();
    wish.ground = QApplication::palette().color(QPalette::Window);
    m_applied = wish;
}

QPalette Theme::legible(const QPalette &own)
{
    constexpr double ratio = 4.5;
    QPalette palette = own;
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        const auto color = [&](QPalette::ColorRole role) { return own.color(group, role); };
        const auto mend = [&](QPalette::ColorRole role, const QColor &mended) {
            if (color(role) != mended)
                palette.setColor(group, role, mended);
        };
        mend(QPalette::Highlight, awayFrom(color(QPalette::Highlight), color(QPalette::HighlightedText), ratio));
        // Styles make the hint of the text's colour, half transparent.
        QColor hint = color(QPalette::PlaceholderText);
        const QColor base = color(QPalette::Base);
        if (hint.alpha() < 255)
            mend(QPalette::PlaceholderText, quiet(color(QPalette::Text), base, 0.4, own));
        else
            mend(QPalette::PlaceholderText, readable(hint, base, color(QPalette::Text), ratio));
        for (const auto link : {QPalette::Link, QPalette::LinkVisited})
            mend(link, readable(color(link), color(QPalette::Window), color(QPalette::WindowText), ratio));
    }
    return palette;
}

QPalette Theme::darkPalette()
{
    const QColor window(0x2d, 0x2e, 0x31);
    const QColor text(0xec, 0xec, 0xec);
    const QColor faint(0x86, 0x88, 0x8c);
    QPalette palette(text, QColor(0x3a, 0x3b, 0x3f), QColor(0x55, 0x57, 0x5b), QColor(0x1b, 0x1c, 0x1e),
                     QColor(0x45, 0x46, 0x4a), text, Qt::white, QColor(0x23, 0x24, 0x26), window);
    palette.setColor(QPalette::AlternateBase, QColor(0x2a, 0x2b, 0x2e));
    palette.setColor(QPalette::ToolTipBase, QColor(0x1f, 0x20, 0x22));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9c, 0xa0));
    palette.setColor(QPalette::Highlight, QColor(0x29, 0x71, 0xb2));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x6c, 0xb4, 0xf5));
    palette.setColor(QPalette::LinkVisited, QColor(0xb8, 0x9b, 0xf0));
    setDisabled(palette, faint, QColor(0x4a, 0x4c, 0x50));
    return palette;
}

QPalette Theme::highContrastPalette(bool dark)
{
    const QColor ground = dark ? Qt::black : Qt::white;
    const QColor text = dark ? Qt::white : Qt::black;
    // Lines have the colour of texts, whatever the style takes them from.
    QPalette palette(text, ground, text, text, text, text, text, ground, ground);
    palette.setColor(QPalette::Midlight, text);
    palette.setColor(QPalette::AlternateBase, ground);
    palette.setColor(QPalette::ToolTipBase, ground);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, dark ? QColor(0xc4, 0xc4, 0xc4) : QColor(0x40, 0x40, 0x40));
    palette.setColor(QPalette::Highlight, dark ? QColor(0xff, 0xd9, 0x1a) : QColor(0x00, 0x38, 0x94));
    palette.setColor(QPalette::HighlightedText, ground);
    palette.setColor(QPalette::Link, dark ? QColor(0x7c, 0xd0, 0xff) : QColor(0x00, 0x2e, 0x9c));
    palette.setColor(QPalette::LinkVisited, dark ? QColor(0xdc, 0xbc, 0xff) : QColor(0x5a, 0x13, 0x8c));
    setDisabled(palette, dark ? QColor(0xa6, 0xa6, 0xa6) : QColor(0x55, 0x55, 0x55), ground);
    return palette;
}

} // namespace orvelle
