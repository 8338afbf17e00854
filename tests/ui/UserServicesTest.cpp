#include "base/Text.h"
#include "platform/LaunchAtLogin.h"
#include "services/LaunchAtLoginManager.h"
#include "services/UpdateManager.h"
#include "support/FakeHttp.h"
#include "support/LogCapture.h"
#include "ui/UiWorld.h"
#include "ui/settings/InfoView.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

class FakeLaunchAtLogin : public LaunchAtLogin
{
public:
    Status current = Status::Disabled;
    bool refuses = false;

    Status status() const override { return current; }
    Outcome registerApplication() override { return become(Status::Enabled); }
    Outcome unregisterApplication() override { return become(Status::Disabled); }
    Outcome followProgram() override { return Done(); }

private:
    Outcome become(Status status)
    {
        if (refuses)
            return Error{u"no room"_s};
        current = status;
        return Done();
    }
};

/// The settings window with updates and the login item.
class UserServicesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(world.defaults.write(u"HasLaunchedBefore"_s, true));
        host(u"updates.example"_s);
    }
    void host(const QString &name) { ASSERT_TRUE(world.defaults.write(u"UpdateServiceHost"_s, name)); }
    void open()
    {
        SettingsServices services = world.settings();
        services.updates = &updates;
        services.launchAtLogin = &launchAtLogin;
        window = std::make_unique<SettingsWindow>(services);
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
        QApplication::processEvents();
    }
    template<typename T>
    T *child(const char *name)
    {
        return window->findChild<T *>(QString::fromLatin1(name));
    }
    QString state() { return child<QLabel>("updateState")->text(); }
    void answer(const QByteArray &version)
    {
        http.answers(u"*"_s, 200,
                     R"({"build":"8","url":"https://orvelle.example/get","releaseDate":"1 May","version":")" + version +
                         "\"}");
        http.deliver();
    }

    UiWorld world;
    FakeHttp http;
    FakeWorkspace workspace;
    FakeLaunchAtLogin login;
    UpdateManager updates{{world.defaults, world.clock, http, world.alerts, workspace, [] {}},
                          {u"1.2.3"_s, u"7"_s, QString()}};
    LaunchAtLoginManager launchAtLogin{login};
    std::unique_ptr<SettingsWindow> window;
};

TEST_F(UserServicesTest, TheAboutTabFollowsACheck)
{
    open();
    auto *check = child<QPushButton>("checkForUpdates");
    auto *download = child<QPushButton>("downloadUpdate");
    const QString never = state();
    check->click();
    EXPECT_FALSE(check->isEnabled());
    const QString checking = state();
    answer("1.2.2");
    EXPECT_TRUE(check->isEnabled());
    EXPECT_TRUE(download->isHidden());
    const QString upToDate = state();
    EXPECT_EQ(QStringList({never, checking, upToDate}).removeDuplicates(), 0);
    check->click();
    answer("1.3");
    EXPECT_TRUE(state().contains(u"1.3 (8)"_s) && state().contains(u"1 May"_s)) << state().toStdString();
    EXPECT_FALSE(download->isHidden());
    download->click();
    EXPECT_EQ(workspace.opened, QStringList(u"url:https://orvelle.example/get"_s));
}

TEST_F(UserServicesTest, TheDailyCheckIsASwitchInAboutAndInTheWelcome)
{
    open();
    auto *about = child<QCheckBox>("autoCheckForUpdates");
    EXPECT_TRUE(about->isChecked());
    EXPECT_TRUE(about->accessibleDescription().contains(u"updates.example"_s));
    about->click();
    EXPECT_FALSE(updates.autoCheckEnabled());
    child<QPushButton>("showWelcome")->click();
    auto *welcome = child<QCheckBox>("welcomeUpdates");
    EXPECT_FALSE(welcome->isChecked());
    welcome->click();
    EXPECT_TRUE(about->isChecked());
    world.defaults.failWrites(DefaultsError{});
    about->click();
    EXPECT_TRUE(about->isChecked()) << "what could not be stored is not shown";

    auto *icons = child<QCheckBox>("welcomeSiteIcons");
    EXPECT_TRUE(icons->isChecked());
    world.defaults.failWrites(std::nullopt);
    icons->click();
    EXPECT_FALSE(world.favicons.isEnabled());
    EXPECT_FALSE(child<QCheckBox>("siteIcons")->isChecked());
}

TEST_F(UserServicesTest, WithoutAServerNothingIsOffered)
{
    host(QString());
    open();
    for (const char *name : {"checkForUpdates", "autoCheckForUpdates", "downloadUpdate"})
        EXPECT_TRUE(child<QWidget>(name)->isHidden()) << name;
    EXPECT_FALSE(state().isEmpty());
    child<QPushButton>("showWelcome")->click();
    EXPECT_EQ(child<QCheckBox>("welcomeUpdates"), nullptr);
    EXPECT_NE(child<QCheckBox>("welcomeSiteIcons"), nullptr);
}

TEST_F(UserServicesTest, TheLoginSwitchShowsWhatTheDesktopSays)
{
    const auto stored = [this] { return world.defaults.get<bool>(u"LaunchAtLogin"_s); };
    login.current = LaunchAtLogin::Status::Enabled;
    open();
    auto *box = child<QCheckBox>("launchAtLogin");
    EXPECT_TRUE(box->isChecked());
    EXPECT_EQ(stored(), true);
    login.current = LaunchAtLogin::Status::Disabled;
    QEvent back(QEvent::WindowActivate);
    QApplication::sendEvent(window.get(), &back);
    EXPECT_FALSE(box->isChecked());
    box->click();
    EXPECT_EQ(login.current, LaunchAtLogin::Status::Enabled);
    EXPECT_EQ(stored(), true);
    login.refuses = true;
    LogCapture log;
    box->click();
    EXPECT_TRUE(box->isChecked()) << "the switch falls back";
    EXPECT_EQ(child<QLabel>("status")->accessibleName(), text("settings.launchAtLoginFailed"_text));
    EXPECT_EQ(log.lines(), QStringList(u"LaunchAtLogin: Erreur modification lancement au démarrage: no room"_s));
}

} // namespace
} // namespace orvelle::test
