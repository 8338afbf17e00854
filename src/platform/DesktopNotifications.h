#pragma once

#include <QString>

namespace orvelle {

/// Messages that the desktop shows by itself for a while. Main thread. A
/// desktop without such a service shows nothing; that is no error.
class DesktopNotifications
{
public:
    struct Message {
        QString title;
        QString body;     ///< plain text
        QString iconName; ///< themed icon
        bool urgent = false;
    };

    virtual ~DesktopNotifications() = default;

    /// Shows `message` instead of an earlier one of the same `tag`.
    virtual void show(const QString &tag, const Message &message) = 0;
    /// Takes the message of that tag away if it is still there.
    virtual void withdraw(const QString &tag) = 0;
};

} // namespace orvelle
