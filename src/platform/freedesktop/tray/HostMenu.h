#pragma once

#include "platform/StatusItem.h"
#include "platform/freedesktop/tray/HostMenuTree.h"

#include <QDBusContext>

namespace orvelle {

/// A menu as an object on the bus (com.canonical.dbusmenu, version 3), for tray
/// hosts that draw menus themselves: the small one of a right click, or a
/// whole one from a source.
class HostMenu : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version SCRIPTABLE true)
    Q_PROPERTY(QString Status READ status SCRIPTABLE true)
    Q_PROPERTY(QString TextDirection READ textDirection SCRIPTABLE true)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath SCRIPTABLE true)

public:
    explicit HostMenu(QObject *parent = nullptr);

    /// The small menu. Entries whose id is not positive or comes twice are left
    /// out, and logged.
    void setEntries(const QList<HostMenuEntry> &entries);
    /// The whole menu, in the place of the small one. `source` outlives this.
    void setSource(HostMenuSource &source);

    uint version() const { return 3; }
    QString status() const { return QStringLiteral("normal"); }
    QString textDirection() const;
    QStringList iconThemePath() const { return {}; }

    /// Where the object belongs on the bus.
    static QString objectPath() { return QStringLiteral("/MenuBar"); }

public slots:
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                orvelle::HostMenuNode &layout);
    Q_SCRIPTABLE QList<orvelle::HostMenuProperties> GetGroupProperties(const QList<int> &ids,
                                                                       const QStringList &propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString &name);
    Q_SCRIPTABLE void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<orvelle::HostMenuEvent> &events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

signals:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);
    Q_SCRIPTABLE void ItemsPropertiesUpdated(const QList<orvelle::HostMenuProperties> &updatedProps,
                                             const QList<orvelle::HostMenuRemovals> &removedProps);

    /// The user chose the entry of the small menu.
    void chosen(int id);

private:
    /// True when the host has to ask for the layout again.
    bool catchUp();
    bool prepare(int id);
    void refuse(const QString &why);
    bool handleEvent(int id, const QString &eventId);
    void choose(int id);

    HostMenuTree m_tree;
    HostMenuSource *m_source = nullptr;
    bool m_isStale = false; ///< the source has not been asked since it changed
    bool m_wasRead = false; ///< some host knows the menu
    uint m_revision = 1;
};

} // namespace orvelle
