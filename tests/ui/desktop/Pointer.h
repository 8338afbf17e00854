#pragma once

#include <QPoint>
#include <QProcess>
#include <QTest>

#include <chrono>

namespace orvelle::test {

/// Drags with the real pointer, in steps as a hand would, and rests at the end
/// before letting go.
inline bool drag(const QPoint &from, const QPoint &to, std::chrono::milliseconds rest = std::chrono::milliseconds(200))
{
    const auto sleep = [](std::chrono::milliseconds time) {
        return QStringList{QStringLiteral("sleep"), QString::number(static_cast<double>(time.count()) / 1000)};
    };
    const auto moveTo = [&sleep](const QPoint &at) {
        return QStringList{QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y())} +
               sleep(std::chrono::milliseconds(50));
    };
    QStringList steps = moveTo(from);
    steps += {QStringLiteral("mousedown"), QStringLiteral("1")};
    for (int step = 1; step <= 8; ++step)
        steps += moveTo(from + (to - from) * step / 8);
    steps += sleep(rest) + QStringList{QStringLiteral("mouseup"), QStringLiteral("1")};
    QProcess xdotool;
    xdotool.start(QStringLiteral("xdotool"), steps);
    return QTest::qWaitFor([&xdotool] { return xdotool.state() == QProcess::NotRunning; }, 20000) &&
           xdotool.exitCode() == 0;
}

} // namespace orvelle::test
