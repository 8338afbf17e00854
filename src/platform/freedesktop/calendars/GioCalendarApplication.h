#pragma once

#include "base/PatientThreads.h"

namespace orvelle {

/// The calendar application of the desktop: the handler of webcal addresses,
/// else that of calendar files. Main thread.
class GioCalendarApplication
{
public:
    /// Starts the application, or brings it to the front. Returns at once; that
    /// there is none is logged.
    void open();

private:
    PatientThreads m_launcher{1};
};

} // namespace orvelle
