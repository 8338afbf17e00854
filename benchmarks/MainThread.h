#pragma once

#include <QCoreApplication>

#include <functional>

namespace orvelle::bench {

/// The processor time that this thread has used, in ms. Other programs on a
/// busy machine do not add to it.
double threadMilliseconds();

/// Notes the longest stretch of work between two turns of the event loop.
class WatchedApplication : public QCoreApplication
{
public:
    using QCoreApplication::QCoreApplication;

    bool notify(QObject *receiver, QEvent *event) override;

    /// The longest since the last call, in ms of processor time.
    double takeLongest() { return std::exchange(m_longest, 0); }
    /// The same for work that no event brought.
    void measure(const std::function<void()> &work);
    /// Lets the event loop run until `condition` holds; ends the program when
    /// it does not for minutes.
    void await(const std::function<bool()> &condition, const char *what);

private:
    double m_longest = 0;
    int m_depth = 0;
};

} // namespace orvelle::bench
