#pragma once

#include <QThreadPool>

namespace orvelle {

/// The calendar application of the desktop: the handler of webcal addresses,
/// else that of calendar files. Main thread.
class GioCalendarApplication
{
public:
    GioCalendarApplication();
    /// Waits up to two seconds for an application that is just being started.
    ~GioCalendarApplication();

    /// Starts the application, or brings it to the front. Returns at once; that
    /// there is none is logged.
    void open();

private:
    QThreadPool m_launcher;
};

} // namespace orvelle
