#pragma once

namespace orvelle {

class LaunchAtLogin;

/// Whether the application starts when the user logs in. Main thread.
class LaunchAtLoginManager
{
public:
    explicit LaunchAtLoginManager(LaunchAtLogin &service) : m_service(service) {}

    /// As the desktop says now.
    bool isEnabled() const;
    /// A failure is logged; isEnabled() then goes on telling what is.
    void setEnabled(bool enabled);
    /// To be called at start, for the program may lie elsewhere than last time.
    void followProgram();

private:
    LaunchAtLogin &m_service;
};

} // namespace orvelle
