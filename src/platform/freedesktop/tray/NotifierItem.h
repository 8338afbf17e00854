#pragma once

#include "platform/StatusItem.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>

namespace orvelle {

/// One picture as the status notifier protocol carries it: rows from the top,
/// four bytes a pixel in the order alpha, red, green, blue, not premultiplied.
struct NotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;

    static NotifierPixmap fromImage(const QImage &image);
    bool operator==(const NotifierPixmap &) const = default;
};
using NotifierPixmaps = QList<NotifierPixmap>;

struct NotifierToolTip {
    QString iconName;
    NotifierPixmaps iconPixmaps;
    QString title;
    QString text;
};

QDBusArgument &operator<<(QDBusArgument &out, const NotifierPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &in, NotifierPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &out, const NotifierToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &in, NotifierToolTip &toolTip);

/// An icon for a StatusNotifierItem host (org.kde.StatusNotifierItem, the
/// freedesktop.org StatusNotifierItem specification): the object on the bus,
/// and its registration with the watcher, renewed whenever the watcher comes
/// back. Main thread; every call to the bus is asynchronous.
class NotifierItem : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category SCRIPTABLE true)
    Q_PROPERTY(QString Id READ id SCRIPTABLE true)
    Q_PROPERTY(QString Title READ title SCRIPTABLE true)
    Q_PROPERTY(QString Status READ status SCRIPTABLE true)
    Q_PROPERTY(int WindowId READ windowId SCRIPTABLE true)
    Q_PROPERTY(QString IconThemePath READ iconThemePath SCRIPTABLE true)
    Q_PROPERTY(QString IconName READ iconName SCRIPTABLE true)
    Q_PROPERTY(orvelle::NotifierPixmaps IconPixmap READ iconPixmap SCRIPTABLE true)
    Q_PROPERTY(orvelle::NotifierToolTip ToolTip READ toolTip SCRIPTABLE true)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu SCRIPTABLE true)
    Q_PROPERTY(QDBusObjectPath Menu READ menu SCRIPTABLE true)

public:
    explicit NotifierItem(const QDBusConnection &bus, QObject *parent = nullptr);
    ~NotifierItem() override;

    /// Puts the object on the bus and looks for a watcher.
    void start();
    void setPainter(StatusItem::Painter painter);
    void setColor(const QColor &color);
    void setTitle(const QString &title);
    void setToolTip(const QString &toolTip);
    /// Whether hosts are to show the menu at a left click, too.
    void setItemIsMenu(bool isMenu) { m_itemIsMenu = isMenu; }

    /// Whether a host shows the item, as far as the watcher tells.
    bool hasHost() const { return m_hasHost; }

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const { return QStringLiteral("orvelle"); }
    QString title() const { return m_title; }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString iconThemePath() const { return {}; }
    QString iconName() const { return {}; }
    NotifierPixmaps iconPixmap() const;
    /// Hosts show both lines.
    NotifierToolTip toolTip() const { return {{}, {}, m_title, m_toolTip == m_title ? QString() : m_toolTip}; }
    bool itemIsMenu() const { return m_itemIsMenu; }
    QDBusObjectPath menu() const;

public slots:
    Q_SCRIPTABLE void Activate(int x, int y);
    Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SCRIPTABLE void Scroll(int delta, const QString &orientation);
    /// The host's leave to take the focus, for what the next click opens.
    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString &token);

signals:
    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void NewStatus(const QString &status);

    /// As the host gave them: pixels of its own coordinate system.
    void activated(const QPoint &position);
    void contextMenuRequested(const QPoint &position);
    /// After each search for a host, also when its result is the same.
    void hostSearched(bool found);

private:
    void watcherOwnerChanged(const QString &newOwner);
    void registerItem();
    void setHasHost(bool found);

private slots:
    void askForHost();
    void itemUnregistered(const QString &item);

private:
    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    StatusItem::Painter m_painter;
    QColor m_color;
    QString m_title;
    QString m_toolTip;
    QString m_serviceName;
    int m_dropped = 0;                 ///< how often the watcher of the moment has dropped the item
    mutable NotifierPixmaps m_pixmaps; ///< painted when a host first asks
    quint64 m_search = 0;              ///< answers to older searches are dropped
    bool m_started = false;
    bool m_registered = false;
    bool m_hasHost = false;
    bool m_itemIsMenu = false;
};

} // namespace orvelle

Q_DECLARE_METATYPE(orvelle::NotifierPixmap)
Q_DECLARE_METATYPE(orvelle::NotifierToolTip)
