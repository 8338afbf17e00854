#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace orvelle {

/// A question or message with buttons in a fixed order, the affirmative one
/// first.
struct Alert {
    enum class Style { Information, Warning, Critical };
    Style style = Style::Information;
    QString message;         ///< the title line; of an overlong one the ends are shown
    QString informativeText; ///< the smaller text below it, likewise
    QStringList buttons;     ///< at least one
    int escapeButton = -1;   ///< the one that Escape means; the last when negative
    QString symbol = {};     ///< drawn instead of the picture for the style
    int defaultButton = 0;   ///< the one that Enter means, and that has the focus first
};

/// Shows alerts, one after the other. Main thread.
class Alerts
{
public:
    virtual ~Alerts() = default;

    /// Returns at once; `chosen` gets the position of the button later, from
    /// the event loop. It is called exactly once unless the program ends.
    virtual void show(const Alert &alert, std::function<void(int button)> chosen = {}) = 0;
};

/// Lets the user choose one folder.
class FolderChooser
{
public:
    virtual ~FolderChooser() = default;

    /// Opens a folder chooser at `startFolder`; `done` gets the absolute path
    /// or an empty string when cancelled.
    virtual void chooseFolder(const QString &message, const QString &confirmLabel, const QString &startFolder,
                              std::function<void(QString path)> done) = 0;
};

} // namespace orvelle
