#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>

#include <functional>

namespace orvelle::test {

/// Runs the event loop until the condition holds; false after ten seconds.
inline bool spinUntil(const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 10'000;) {
        if (condition())
            return true;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
    }
    return condition();
}

} // namespace orvelle::test
