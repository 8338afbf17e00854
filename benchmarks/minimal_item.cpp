// The least that a Qt program with an icon in the tray can be: an application
// object and a StatusNotifierItem registered with the watcher. What Orvelle's
// start-up time and memory are compared with.
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>

namespace {

class Item : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ id CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString IconName READ iconName CONSTANT)

public:
    QString id() const { return QStringLiteral("minimal"); }
    QString status() const { return QStringLiteral("Active"); }
    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString iconName() const { return QStringLiteral("emblem-default"); }

public slots:
    void Activate(int, int) {}
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Item item;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(QStringLiteral("/StatusNotifierItem"), &item,
                       QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSlots);
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.kde.StatusNotifierWatcher"), QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.kde.StatusNotifierWatcher"), QStringLiteral("RegisterStatusNotifierItem"));
    message << bus.baseService();
    bus.send(message);
    return QApplication::exec();
}

#include "minimal_item.moc"
