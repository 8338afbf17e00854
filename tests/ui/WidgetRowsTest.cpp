#include "base/Text.h"
#include "support/FakeHost.h"
#include "ui/UiWorld.h"
#include "ui/menu/MenuPopup.h"
#include "ui/menu/rows/NetworkRowView.h"
#include "ui/menu/rows/SystemInfoRowView.h"
#include "ui/menu/rows/TimerRowView.h"
#include "ui/settings/NetworkSection.h"
#include "ui/settings/SystemInfoSection.h"
#include "ui/settings/TimerSection.h"
#include "ui/timer/CustomTimerView.h"
#include "widgets/network/NetworkManager.h"
#include "widgets/systeminfo/SystemInfoManager.h"
#include "widgets/timer/TimerManager.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

struct WidgetsWorld : UiWorld {
    FakeSampler sampler{clock};
    FakeHostStatistics host;
    FakeNetworkCounters counters;
    FakeSounds sounds;
    FakeDesktopNotifications messages;
    SystemInfoManager system{{defaults, debugMode, notifications, powerEvents, sampler, host}};
    NetworkManager network{{defaults, debugMode, notifications, powerEvents, sampler, counters}};
    TimerManager timer{{defaults, debugMode, notifications, clock, alerts, sounds, messages, [] {}}};
};

class WidgetRowsTest : public testing::Test
{
protected:
    WidgetRowsTest()
    {
        popup.setWidgetRowFactory([this](WidgetType type, QWidget *parent) -> QWidget * {
            switch (type) {
            case WidgetType::SystemInfo:
                return new SystemInfoRowView(world.system, world.notifications, parent);
            case WidgetType::Network:
                return new NetworkRowView(world.network, world.notifications, parent);
            case WidgetType::Timer:
                return new TimerRowView(world.timer, world.notifications, world.clock, parent);
            default:
                return nullptr;
            }
        });
    }
    void open(const QList<WidgetType> &widgets)
    {
        MenuEntry link;
        link.title = u"Link"_s;
        Menu menu{{link}};
        for (const WidgetType type : widgets) {
            MenuEntry entry;
            entry.kind = MenuEntry::Kind::Widget;
            entry.widget = type;
            menu.entries += entry;
        }
        popup.present(menu, {{10, 10}, true}, {});
        QApplication::processEvents();
    }
    MenuPanel &panel() const { return *popup.panels().constFirst(); }
    QWidget *row(int number) const { return panel().rowWidget(number); }
    QWidget *button(const char *name) const { return panel().findChild<QWidget *>(QString::fromLatin1(name)); }
    /// To whatever has the focus, as the toolkit hands keys to a popup.
    void press(int key)
    {
        QWidget *receiver = panel().focusWidget() ? panel().focusWidget() : &panel();
        QTest::keyClick(receiver, static_cast<Qt::Key>(key));
    }
    QString focused() const
    {
        const QWidget *widget = QApplication::focusWidget();
        return widget && !widget->isWindow() ? widget->accessibleName() : QString();
    }

    WidgetsWorld world;
    MenuPopup popup{[](const MenuEntry &) { return QList<MenuEntry>(); }};
};

TEST_F(WidgetRowsTest, KeysGoThroughTheButtonsOfARowAndOn)
{
    open({WidgetType::SystemInfo, WidgetType::Timer});
    const QString five = text("timer.startFor %@"_text, u"5 min"_s);
    const QString ten = text("timer.startFor %@"_text, u"10 min"_s);
    const QString custom = text("timer.customButton"_text);
    struct {
        int key;
        int row;
        QString focused;
    } const walk[] = {
        {Qt::Key_Down, 0, {}},
        {Qt::Key_Down, 1, text("systemInfo.title"_text)},
        {Qt::Key_Tab, 2, five},
        {Qt::Key_Right, 2, ten},
        {Qt::Key_Left, 2, five},
        {Qt::Key_Left, 2, five},
        {Qt::Key_Tab, 2, ten},
        {Qt::Key_Backtab, 2, five},
        {Qt::Key_Backtab, 1, text("systemInfo.title"_text)},
        {Qt::Key_Up, 0, {}},
        {Qt::Key_Backtab, 2, custom},
        {Qt::Key_Tab, 0, {}},
        {Qt::Key_Up, 2, five},
    };
    for (const auto &step : walk) {
        press(step.key);
        EXPECT_EQ(panel().currentRow(), step.row);
        EXPECT_EQ(focused(), step.focused);
    }
    press(Qt::Key_Return);
    EXPECT_EQ(world.timer.remainingSeconds(), 300);
    EXPECT_TRUE(popup.isOpen());
    EXPECT_EQ(focused(), text("timer.stop"_text));
    press(Qt::Key_Space);
    EXPECT_FALSE(world.timer.isRunning());
}

TEST_F(WidgetRowsTest, ARowChangesInPlace)
{
    world.host.ram = {3ULL << 30, 8ULL << 30};
    world.system.setDisplayMode(SystemInfoDisplayMode::Terminal);
    world.network.setDisplayMode(NetworkDisplayMode::Graph);
    world.clock.advance(0s);
    open({WidgetType::SystemInfo, WidgetType::Network, WidgetType::Timer});
    const QRect place = panel().geometry();
    const auto changesWith = [&](int number, const std::function<void()> &change) {
        const QImage before = row(number)->grab().toImage();
        const QString said = row(number)->accessibleDescription();
        change();
        QApplication::processEvents();
        EXPECT_EQ(panel().geometry(), place);
        EXPECT_NE(row(number)->accessibleDescription(), said);
        return row(number)->grab().toImage() != before;
    };
    EXPECT_TRUE(changesWith(1, [&] {
        world.host.ram.free = 1ULL << 30;
        world.system.startLiveRefresh();
        world.clock.advance(1s);
    }));
    EXPECT_TRUE(row(1)->accessibleDescription().contains(u"7.0G/8.0G"_s));
    EXPECT_TRUE(changesWith(2, [&] {
        world.counters.reading = {{{2, u"eth0"_s, {}, 0, 5'000'000, 1000}}};
        world.clock.advance(5s);
    }));
    EXPECT_TRUE(changesWith(3, [&] { world.timer.start(90); }));
    EXPECT_EQ(row(3)->accessibleDescription(), u"01:30"_s);
    EXPECT_TRUE(changesWith(3, [&] { world.clock.advance(1s); }));
    EXPECT_EQ(row(3)->accessibleDescription(), u"01:29"_s);
    EXPECT_TRUE(changesWith(3, [&] { world.clock.advance(89s); }));
    EXPECT_TRUE(button("custom")->isVisible());
}

TEST_F(WidgetRowsTest, ThePointerPressesButtonsAndMovesTheFocusOn)
{
    open({WidgetType::Timer});
    bool asked = false;
    QObject::connect(&world.notifications, &Notifications::openTimerCustom, [&] { asked = true; });
    QTest::mouseClick(button("custom"), Qt::LeftButton);
    EXPECT_TRUE(asked);
    button("custom")->setFocus(Qt::MouseFocusReason);
    panel().setCurrent(1);
    panel().setCurrent(0);
    EXPECT_FALSE(button("custom")->hasFocus()) << "another row is the current one";
}

TEST(CustomTimer, StartsOnlyWithADurationAndTellsOnce)
{
    struct {
        int hours;
        int minutes;
        int expected;
    } const cases[] = {{0, 0, 0}, {0, 1, 60}, {1, 30, 5400}, {23, 59, 86340}};
    for (const auto &each : cases) {
        QList<qint64> started;
        int cancelled = 0;
        {
            CustomTimerView view([&](qint64 seconds) { started += seconds; }, [&] { ++cancelled; });
            view.setAttribute(Qt::WA_DeleteOnClose, false);
            view.show();
            view.findChild<QSpinBox *>(u"hours"_s)->setValue(each.hours);
            view.findChild<QSpinBox *>(u"minutes"_s)->setValue(each.minutes);
            auto *start = view.findChild<QPushButton *>(u"start"_s);
            EXPECT_EQ(start->isEnabled(), each.expected > 0);
            QTest::keyClick(&view, Qt::Key_Return);
            QTest::keyClick(&view, Qt::Key_Escape);
        }
        EXPECT_EQ(started, each.expected > 0 ? QList<qint64>{each.expected} : QList<qint64>());
        EXPECT_EQ(cancelled, each.expected > 0 ? 0 : 1);
    }
}

TEST(CustomTimer, ReturnPressesTheButtonThatHasTheFocus)
{
    for (const char *focused : {"cancel", "start", "hours"}) {
        int started = 0;
        int cancelled = 0;
        CustomTimerView view([&](qint64) { ++started; }, [&] { ++cancelled; });
        view.setAttribute(Qt::WA_DeleteOnClose, false);
        view.show();
        auto *widget = view.findChild<QWidget *>(QString::fromLatin1(focused));
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_Return);
        EXPECT_EQ(started, focused == QByteArray("cancel") ? 0 : 1) << focused;
        EXPECT_EQ(cancelled, 1 - started) << focused;
        EXPECT_FALSE(view.isVisible());
    }
}

TEST(WidgetSections, WriteWhatIsChosenAndShowWhatChanges)
{
    WidgetsWorld world;
    const auto child = [](QWidget &section, const char *name) {
        return section.findChild<QAbstractButton *>(QString::fromLatin1(name));
    };
    SystemInfoSection system(world.system, world.notifications, nullptr);
    child(system, "mode.1")->click();
    EXPECT_EQ(world.system.displayMode(), SystemInfoDisplayMode::Terminal);
    child(system, "menuBarOnly")->click();
    EXPECT_FALSE(world.system.menuBarOnly());
    world.system.setDisplayMode(SystemInfoDisplayMode::Discreet);
    EXPECT_TRUE(child(system, "mode.2")->isChecked());

    NetworkSection network(world.network, world.notifications, nullptr);
    child(network, "mode.2")->click();
    EXPECT_EQ(world.network.displayMode(), NetworkDisplayMode::Discreet);
    child(network, "mode.0")->click();
    EXPECT_FALSE(world.network.isEnabled());

    TimerSection timer(world.timer, world.notifications, nullptr);
    child(timer, "enabled")->click();
    EXPECT_TRUE(world.timer.isEnabled());
    timer.findChild<QSpinBox *>(u"preset.1"_s)->setValue(12);
    EXPECT_EQ(world.timer.presets(), QList<qint64>({300, 720, 1500}));
    world.timer.setPresets({90, 720, 1500});
    EXPECT_EQ(timer.findChild<QSpinBox *>(u"preset.0"_s)->value(), 2) << "rounded up";
    EXPECT_EQ(world.timer.presets().first(), 90) << "and not rounded by showing it";
    auto *minutes = timer.findChild<QLineEdit *>(u"customMinutes"_s);
    for (const char *typed : {"0", "1441"}) {
        minutes->setText(QString::fromLatin1(typed));
        EXPECT_FALSE(child(timer, "startCustom")->isEnabled()) << typed;
    }
    minutes->setText(u"3"_s);
    child(timer, "startCustom")->click();
    EXPECT_EQ(world.timer.remainingSeconds(), 180);
}

} // namespace
} // namespace orvelle::test
