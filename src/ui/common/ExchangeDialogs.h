#pragma once

#include <QStringList>

#include <functional>

class QWidget;

namespace orvelle {

/// What the settings window offers about documents that come and go: each call
/// asks for a file where one is needed, shows progress, and reports the
/// outcome by itself. Returns at once. `parent` is the window in front of
/// which the dialogs stand.
class ExchangeDialogs
{
public:
    virtual ~ExchangeDialogs() = default;

    virtual void exportDocument(QWidget *parent) = 0;
    virtual void importDocument(QWidget *parent) = 0;
    /// Bookmarks of a browser (an HTML file), to the end of the tree.
    virtual void importBookmarks(QWidget *parent) = 0;
    virtual void exportBookmarks(QWidget *parent) = 0;
    /// A folder of link files (.desktop, .url, .webloc).
    virtual void importLinkFolder(QWidget *parent) = 0;
    /// Documents dropped on the window: each is taken for what its name and
    /// content say. `rest` gets, then or later, those of the paths that are no
    /// such documents; it does not run when there are none.
    virtual void openDropped(const QStringList &paths, QWidget *parent,
                             const std::function<void(const QStringList &)> &rest) = 0;
};

} // namespace orvelle
