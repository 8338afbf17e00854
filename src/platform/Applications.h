#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace orvelle {

/// An application as its desktop entry describes it (Desktop Entry
/// Specification 1.5), texts in the user's language.
struct DesktopApplication {
    QString id;   ///< the desktop file's id: "org.example.Editor.desktop"
    QString path; ///< of the desktop file, absolute
    QString name;
    QString description; ///< one line; may be empty
    QStringList keywords;
    QString icon; ///< a name in the icon theme, or an absolute path; may be empty
    friend bool operator==(const DesktopApplication &, const DesktopApplication &) = default;
};

/// The applications of the desktop. Main thread.
class Applications
{
public:
    virtual ~Applications() = default;

    /// Those that menus show, by name.
    virtual QList<DesktopApplication> installed() const = 0;

    /// The application at this path; where there is none, the one installed
    /// under `id` if that is given, as the same application lies elsewhere on
    /// another machine. Absent when it is gone, its program is not installed, or
    /// the file may not be trusted: outside the folders of installed
    /// applications it has to be marked as executable. On a distant volume it
    /// is taken to be there, with the file's name as its own.
    virtual std::optional<DesktopApplication> find(const QString &path, const QString &id = {}) const = 0;

    /// Starts it as the desktop's menus do, or brings it to the front where it
    /// says so itself: over the bus where it wants that, with a startup
    /// notification, never by a shell. Returns at once; a failure is logged.
    /// What find() would not give is not started.
    virtual void launch(const QString &path, const QString &id = {}) = 0;
};

} // namespace orvelle
