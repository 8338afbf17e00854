#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace orvelle {

/// One row of a menu that a tray host draws. What is behind it is made when
/// the host asks for it, so a menu of any size costs what is looked at.
struct HostMenuItem {
    /// Which row it is among its neighbours: a row that changes its text or
    /// place keeps it. Of equal ones the order counts.
    QString key;
    QString title;
    bool enabled = true;
    bool separator = false;
    std::optional<bool> checked; ///< absent: no mark to be set

    QString iconName;                         ///< themed icon
    QString pictureId;                        ///< another one means another picture; empty for none
    std::function<QByteArray()> picture = {}; ///< PNG

    /// What a submenu shows; empty for a row that is none.
    std::function<QList<HostMenuItem>()> children = {};
    qsizetype childCount = 0; ///< about how many
    /// Runs from the event loop after the host's call was answered.
    std::function<void()> choose = {};
};

/// Gives a tray host a whole menu. Main thread.
class HostMenuSource : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The top level as it is now.
    virtual QList<HostMenuItem> items() = 0;
    /// The host shows the menu, or no longer does. Not every host tells, and
    /// some tell twice.
    virtual void setShown(bool shown) = 0;

signals:
    /// items() would give something else now.
    void changed();
};

} // namespace orvelle
