#include "platform/freedesktop/DesktopColorScheme.h"

#include "support/PrivateBus.h"
#include "support/SpinUntil.h"

#include <QDBusConnectionInterface>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

/// A desktop of KDE without a portal.
class KdeColorSchemeTest : public testing::Test
{
protected:
    KdeColorSchemeTest()
    {
        QStandardPaths::setTestModeEnabled(false); // which has folders of its own
        for (const char *name : {"XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_HOME", "XDG_DATA_DIRS"})
            set(name, home.path().toUtf8());
        set("XDG_CURRENT_DESKTOP", "KDE");
        set("QT_QPA_PLATFORMTHEME", {});
    }
    ~KdeColorSchemeTest() override
    {
        for (const auto &[name, value] : before)
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
        QStandardPaths::setTestModeEnabled(true);
    }
    void set(const char *name, const QByteArray &value)
    {
        before.append({name, qgetenv(name)});
        qputenv(name, value);
    }
    void userTakes(const char *window)
    {
        QFile file(home.filePath(u"kdeglobals"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("[Colors:Window]\nBackgroundNormal=") + window +
                   "\n[Colors:Button]\nBackgroundNormal=9,9,9\n");
        file.close();
        auto told = QDBusMessage::createSignal(u"/KGlobalSettings"_s, u"org.kde.KGlobalSettings"_s, u"notifyChange"_s);
        told << 0 << 0;
        settings.send(told);
    }

    QTemporaryDir home;
    QList<std::pair<const char *, QByteArray>> before;
    PrivateBus bus;
    QDBusConnection settings = bus.connection();
};

TEST_F(KdeColorSchemeTest, FollowsTheUserWithoutAPortal)
{
    userTakes("42,46,50");
    const QDBusConnection connection = bus.connection();
    DesktopColorScheme scheme(connection);
    int changes = 0;
    QObject::connect(&scheme, &Appearance::changed, [&changes] { ++changes; });
    scheme.start();
    connection.interface()->isServiceRegistered(u"org.example"_s); // by then it listens
    EXPECT_TRUE(scheme.prefersDark());
    EXPECT_EQ(scheme.symbolColor(), DesktopColorScheme::onDark());
    changes = 0;
    userTakes("239,240,241");
    ASSERT_TRUE(spinUntil([&changes] { return changes > 0; }));
    EXPECT_FALSE(scheme.prefersDark());
    EXPECT_EQ(scheme.symbolColor(), DesktopColorScheme::onLight());
    ASSERT_TRUE(scheme.palette());
    EXPECT_EQ(scheme.palette()->color(QPalette::Window), QColor(239, 240, 241));
}

} // namespace
} // namespace orvelle::test
