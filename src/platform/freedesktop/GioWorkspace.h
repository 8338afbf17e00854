#pragma once

#include "base/PatientThreads.h"
#include "platform/Workspace.h"

#include <QDBusConnection>
#include <QObject>

namespace orvelle {

class WindowFocus;

/// Opens things through the desktop entries and MIME associations of the
/// system (GIO), folders through org.freedesktop.FileManager1 where a file
/// manager provides it. Handlers are started from a worker thread, so that a
/// slow disk or service never holds up the interface. Main thread.
class GioWorkspace : public QObject, public Workspace
{
    Q_OBJECT

public:
    explicit GioWorkspace(const QDBusConnection &sessionBus = QDBusConnection::sessionBus());
    /// Waits up to two seconds for handlers that are just being started.
    ~GioWorkspace() override;

    bool openUrl(const QUrl &url) override;
    bool openFile(const QString &path) override;
    bool showFolder(const QString &path) override;
    bool reveal(const QString &path) override;

    /// X11 only; elsewhere there is no focused window to be known, and 0 comes.
    WindowToken focusedWindow() const override;
    void focusWindow(WindowToken window) override;

private:
    void askFileManager(const QString &method, const QString &path, const QString &fallbackFolder);

    QDBusConnection m_bus;
    PatientThreads m_launchers;
    std::unique_ptr<WindowFocus> m_focus;
};

} // namespace orvelle
