#include "base/Text.h"
#include "support/FakeCalendarStore.h"
#include "ui/UiWorld.h"
#include "ui/menu/MenuPopup.h"
#include "ui/menu/rows/CalendarRowView.h"
#include "ui/settings/CalendarSection.h"
#include "widgets/calendar/CalendarManager.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

struct CalendarUi : UiWorld {
    FakeCalendarStore store;
    CalendarManager manager{{defaults, debugMode, notifications, clock, store}};
    Timestamp noon;

    CalendarUi()
    {
        noon = Timestamp::fromDateTime(QDateTime(QDate(2026, 3, 25), QTime(12, 0)));
        clock.setNow(noon + -7200);
        manager.setMaxEvents(9);
        manager.setDisplayScope(CalendarScope::All);
        manager.setEnabled(true);
        store.answer();
    }
    CalendarEvent make(const char *title, double hours)
    {
        CalendarEvent made;
        made.title = QString::fromUtf8(title);
        made.start = noon + hours * 3600;
        made.end = made.start + 3600;
        return made;
    }
    void show(const QList<CalendarEvent> &events)
    {
        store.events = events;
        manager.fetchNextEvent();
        store.answer();
    }
};

class CalendarRowTest : public testing::Test
{
protected:
    CalendarRowTest()
    {
        popup.setWidgetRowFactory([this](WidgetType, QWidget *parent) {
            const auto note = [this](const char *what) { return [this, what] { went += QString::fromLatin1(what); }; };
            return new CalendarRowView(world.manager, world.notifications,
                                       {[this] {
                                            went += popup.isOpen() ? u"close"_s : u"closed before"_s;
                                            popup.close();
                                        },
                                        note("calendar"), note("settings"),
                                        [this](const QUrl &address) { went += address.toString(); }},
                                       parent);
        });
    }
    void open()
    {
        MenuEntry link;
        link.title = u"Link"_s;
        MenuEntry calendar;
        calendar.kind = MenuEntry::Kind::Widget;
        calendar.widget = WidgetType::Calendar;
        popup.present({{link, calendar, link}}, {{10, 10}, true}, {});
        QApplication::processEvents();
        went.clear();
    }
    MenuPanel &panel() const { return *popup.panels().constFirst(); }
    QWidget *row() const { return panel().rowWidget(1); }
    /// What there is to press, in the order of the keyboard.
    QStringList walk()
    {
        QStringList names;
        for (int key = Qt::Key_Down;; key = Qt::Key_Right) {
            press(key);
            if (panel().currentRow() == 0) {
                press(Qt::Key_Down);
            }
            const QString name =
                QApplication::focusWidget() ? QApplication::focusWidget()->accessibleName() : QString();
            if (panel().currentRow() != 1 || (!names.isEmpty() && names.constLast() == name))
                return names;
            names += name;
        }
    }
    void press(int key)
    {
        QWidget *receiver = panel().focusWidget() ? panel().focusWidget() : &panel();
        QTest::keyClick(receiver, static_cast<Qt::Key>(key));
        QApplication::processEvents();
    }
    /// The longest line without a gap across the row's text, in pixels.
    int longestStroke()
    {
        const QImage image = row()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const QRgb ground = image.pixel(image.width() - 2, 1);
        int longest = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0, run = 0; x < image.width(); ++x) {
                run = image.pixel(x, y) == ground ? 0 : run + 1;
                longest = std::max(longest, run);
            }
        }
        return longest;
    }

    CalendarUi world;
    QStringList went;
    MenuPopup popup{[](const MenuEntry &) { return QList<MenuEntry>(); }};
};

TEST_F(CalendarRowTest, SaysWhyThereAreNoEvents)
{
    struct {
        CalendarStore::Access access;
        QString said;
        QString leadsTo;
    } const cases[] = {
        {CalendarStore::Access::Denied, text("calendar.accessRequired"_text), u"settings"_s},
        {CalendarStore::Access::Granted, text("calendar.noEvent"_text), u"calendar"_s},
    };
    for (const auto &each : cases) {
        world.store.present = each.access;
        emit world.store.availabilityChanged();
        world.store.answer();
        open();
        EXPECT_EQ(walk(), QStringList{each.said});
        EXPECT_EQ(row()->accessibleDescription(), each.said);
        press(Qt::Key_Return);
        EXPECT_EQ(went, (QStringList{u"close"_s, each.leadsTo}));
        popup.close();
    }
}

TEST_F(CalendarRowTest, EventsAreReachedOneAfterTheOtherEachWithItsMeeting)
{
    CalendarEvent day = world.make("Holiday", 12);
    day.isAllDay = true;
    CalendarEvent meeting = world.make("Review <b>", 2);
    meeting.location = u"https://meet.jit.si/Room"_s;
    CalendarEvent declined = world.make("Declined", 3);
    declined.isDeclined = true;
    world.show({day, meeting, declined, world.make("", 4)});
    open();
    const QString join = text("calendar.joinEvent %@"_text, u"Review <b>"_s);
    const QString tomorrow = text("calendar.tomorrow"_text) + u' ' + text("calendar.allDay"_text);
    EXPECT_EQ(walk(), (QStringList{u"Review <b>, 14:00"_s, join, u"Declined, 15:00"_s,
                                   text("calendar.untitled"_text) + u", 16:00"_s, u"Holiday, "_s + tomorrow}));
    const auto lines = row()->findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[1]->accessibleDescription(), text("calendar.declined"_text));
    QTest::mouseClick(row()->findChild<QAbstractButton *>(u"join"_s), Qt::LeftButton);
    EXPECT_EQ(went, (QStringList{u"close"_s, u"https://meet.jit.si/Room"_s}));
    open();
    QTest::mouseClick(row()->findChildren<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly)[2], Qt::LeftButton);
    EXPECT_EQ(went, (QStringList{u"close"_s, u"calendar"_s}));
}

TEST_F(CalendarRowTest, DeclinedOnesAreStruckThroughUntilHidden)
{
    CalendarEvent event = world.make("i i i i i i i i i i i i", 2);
    world.show({event});
    open();
    EXPECT_LT(longestStroke(), 30);
    event.isDeclined = true;
    world.show({event});
    EXPECT_GT(longestStroke(), 60);
    world.manager.setHidesDeclined(true);
    world.store.answer();
    EXPECT_EQ(row()->accessibleDescription(), text("calendar.noEvent"_text));
}

TEST_F(CalendarRowTest, GrowsInPlaceAndNeverOverTheScreen)
{
    open();
    const int before = row()->height();
    QList<CalendarEvent> many;
    for (int i = 0; i < 9; ++i)
        many += world.make("A title that goes on and on, much longer than any menu should ever become for it", i);
    world.show(many);
    QApplication::processEvents();
    const QWidget *line = row()->findChild<QAbstractButton *>(QString(), Qt::FindDirectChildrenOnly);
    EXPECT_EQ(row()->height() - before, 8 * line->height());
    EXPECT_LE(panel().width(), MenuLook::maximumWidth + 40);
    EXPECT_TRUE(popup.isOpen());
}

TEST(CalendarSettings, StoreWhatIsChosen)
{
    CalendarUi world;
    QStringList folders{QDir::homePath() + u"/calendars"_s, u"/srv/team"_s};
    FakeFolderChooser chooser;
    CalendarSection section(world.manager, world.notifications,
                            {[&] { return folders; }, [&](const QStringList &chosen) { folders = chosen; }}, chooser,
                            nullptr);
    section.refresh();
    auto *list = section.findChild<QListWidget *>(u"folders"_s);
    auto *add = section.findChild<QPushButton *>(u"addFolder"_s);
    auto *remove = section.findChild<QPushButton *>(u"removeFolder"_s);
    ASSERT_EQ(list->count(), 2);
    EXPECT_EQ(list->item(0)->text(), u"~/calendars");
    EXPECT_FALSE(remove->isEnabled());
    add->click();
    EXPECT_EQ(folders.size(), 2) << "cancelled";
    for (int i = 0; i < 2; ++i) {
        chooser.answer = u"/srv/other"_s;
        add->click();
    }
    EXPECT_EQ(folders.size(), 3) << "once";
    list->setCurrentRow(1);
    EXPECT_TRUE(remove->isEnabled());
    remove->click();
    EXPECT_EQ(folders, (QStringList{QDir::homePath() + u"/calendars"_s, u"/srv/other"_s}));
    EXPECT_EQ(list->count(), 2);

    for (int i = 0; i < 2; ++i) {
        list->setCurrentRow(0);
        remove->click();
    }
    EXPECT_EQ(list->item(0)->text(), text("calendar.noFolder"_text));
    list->setCurrentRow(0);
    remove->click();
    EXPECT_TRUE(folders.isEmpty());

    section.findChild<QSpinBox *>(u"maxEvents"_s)->setValue(4);
    EXPECT_EQ(world.manager.maxEvents(), 4);
    section.findChild<QCheckBox *>(u"hideDeclined"_s)->click();
    EXPECT_TRUE(world.manager.hidesDeclined());
    auto *scope = section.findChild<QComboBox *>(u"scope"_s);
    EXPECT_EQ(scope->currentText(), text("calendar.scope.all"_text));
    section.show();
    QTest::keyClick(scope, Qt::Key_Up);
    EXPECT_EQ(world.manager.displayScope(), CalendarScope::OneDay);
}

} // namespace
} // namespace orvelle::test
