#pragma once

#include <QString>
#include <QUrl>

#include <functional>

namespace orvelle {

/// A window of any program, as handed out by Workspace; 0 means none.
using WindowToken = quint64;

/// The desktop's way of opening things. No call runs a shell. Calls return at
/// once; a failure of the handler to start is logged.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// Hands the address to the registered handler of its scheme. False when
    /// the address is invalid, without scheme, of a scheme that would run code
    /// (isCodeScheme()), or of a file on another machine.
    virtual bool openUrl(const QUrl &url) = 0;
    /// Opens a file with its default application.
    virtual bool openFile(const QString &path) = 0;
    /// Opens a file-manager window on the folder, nothing selected.
    virtual bool showFolder(const QString &path) = 0;
    /// Opens the file manager on the containing folder with the item selected.
    virtual bool reveal(const QString &path) = 0;

    /// The window that has the focus now, as far as the desktop tells.
    virtual WindowToken focusedWindow() const = 0;
    /// Gives the focus back to that window if it still exists and another one
    /// has the focus. Nothing happens for 0.
    virtual void focusWindow(WindowToken window) = 0;
};

} // namespace orvelle
