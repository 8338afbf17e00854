#include "platform/freedesktop/x11/ScreenPositions.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace orvelle {

namespace {

const ScreenLayout *screenAt(const QPoint &native, const QList<ScreenLayout> &screens)
{
    const auto found = std::ranges::find_if(
        screens, [&native](const ScreenLayout &screen) { return screen.nativeGeometry().contains(native); });
    return found == screens.end() ? nullptr : &*found;
}

} // namespace

QList<ScreenLayout> currentScreens()
{
    QList<ScreenLayout> screens;
    // Only on X11 does the toolkit scale by itself what others give in pixels.
    const bool scales = QGuiApplication::platformName() == QLatin1String("xcb");
    for (const QScreen *screen : QGuiApplication::screens())
        screens += {screen->geometry(), scales ? screen->devicePixelRatio() : 1.0};
    return screens;
}

std::optional<QPoint> fromNative(const QPoint &native, const QList<ScreenLayout> &screens)
{
    const ScreenLayout *screen = screenAt(native, screens);
    if (!screen)
        return std::nullopt;
    const QPoint corner = screen->geometry.topLeft();
    return corner + (QPointF(native - corner) / screen->scale).toPoint();
}

QPoint fromHost(const QPoint &given, const QPoint &pointer, const QList<ScreenLayout> &screens)
{
    if (given.isNull())
        return pointer;
    QList<QPoint> readings;
    if (const auto native = fromNative(given, screens))
        readings += *native;
    if (std::ranges::any_of(screens, [&given](const ScreenLayout &s) { return s.geometry.contains(given); }))
        readings += given;
    const auto nearest = std::ranges::min_element(readings, {}, [&pointer](const QPoint &reading) {
        return (QPointF(reading) - QPointF(pointer)).manhattanLength();
    });
    return nearest == readings.end() ? pointer : *nearest;
}

QPoint menuAnchor(const QRect &icon, const QList<ScreenLayout> &screens)
{
    const ScreenLayout *screen = screenAt(icon.center(), screens);
    const bool inLowerHalf = screen && icon.center().y() > screen->nativeGeometry().center().y();
    return {icon.center().x(), inLowerHalf ? icon.top() : icon.bottom()};
}

} // namespace orvelle
