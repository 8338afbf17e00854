// The toolkit's "signals" hides a name of GIO's.
#include "base/Text.h"
#include "platform/freedesktop/tray/HostMenu.h"
#include "support/FakePasteboard.h"
#include "support/PrivateBus.h"
#include "ui/UiWorld.h"
#include "ui/common/Icons.h"
#include "ui/menu/BottomRowView.h"
#include "ui/menu/HostMenuContent.h"
#include "ui/menu/HostWidgetItems.h"
#include "ui/menu/rows/ClipboardRowView.h"
#include "ui/menu/rows/WidgetRowView.h"
#include "widgets/clipboard/ClipboardManager.h"

#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QImage>
#include <QKeyEvent>
#include <QTest>

#include <gtest/gtest.h>
#include <libdbusmenu-glib/client.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

bool waitFor(const std::function<bool()> &done)
{
    return QTest::qWaitFor(done, 30'000);
}

/// A panel's view of a menu, through the library that panels use.
class Host
{
public:
    explicit Host(const QString &service)
        : m_client(dbusmenu_client_new(service.toUtf8().constData(), HostMenu::objectPath().toUtf8().constData()))
    {
    }
    ~Host() { g_object_unref(m_client); }
    Q_DISABLE_COPY_MOVE(Host)

    /// "label {children}", a disabled one in brackets, a separator as dashes.
    QString outline() const { return outlineOf(root()); }
    DbusmenuMenuitem *root() const { return dbusmenu_client_get_root(m_client); }
    /// By labels from the top; null when there is none.
    DbusmenuMenuitem *find(const QStringList &path) const
    {
        DbusmenuMenuitem *at = root();
        for (const QString &label : path) {
            DbusmenuMenuitem *found = nullptr;
            for (GList *each = at ? dbusmenu_menuitem_get_children(at) : nullptr; each; each = each->next) {
                if (labelOf(item(each)) == label)
                    found = item(each);
            }
            at = found;
        }
        return at;
    }
    void click(const QStringList &path) const
    {
        DbusmenuMenuitem *at = find(path);
        ASSERT_TRUE(at) << qPrintable(path.join(u'/'));
        dbusmenu_menuitem_handle_event(at, "clicked", g_variant_new_int32(0), 0);
    }
    void open(const QStringList &path) const
    {
        DbusmenuMenuitem *at = find(path);
        ASSERT_TRUE(at) << qPrintable(path.join(u'/'));
        bool answered = false;
        dbusmenu_menuitem_send_about_to_show(
            at, [](DbusmenuMenuitem *, gpointer flag) { *static_cast<bool *>(flag) = true; }, &answered);
        EXPECT_TRUE(waitFor([&answered] { return answered; }));
    }
    static QImage picture(DbusmenuMenuitem *at)
    {
        gsize size = 0;
        const guchar *bytes = dbusmenu_menuitem_property_get_byte_array(at, "icon-data", &size);

        return QImage::fromData(bytes, int(size), "PNG");
    }

private:
    static DbusmenuMenuitem *item(const GList *each) { return static_cast<DbusmenuMenuitem *>(each->data); }
    static QString labelOf(DbusmenuMenuitem *at)
    {
        return QString::fromUtf8(dbusmenu_menuitem_property_get(at, "label")).replace(u"__"_s, u"_"_s);
    }
    static QString outlineOf(DbusmenuMenuitem *parent)
    {
        QStringList lines;
        for (GList *each = parent ? dbusmenu_menuitem_get_children(parent) : nullptr; each; each = each->next) {
            DbusmenuMenuitem *at = item(each);
            const bool separator = qstrcmp(dbusmenu_menuitem_property_get(at, "type"), "separator") == 0;
            QString line = separator ? u"--"_s : labelOf(at);
            if (!separator && !dbusmenu_menuitem_property_get_bool(at, "enabled"))
                line = u'(' + line + u')';
            const QString below = outlineOf(at);
            lines += below.isEmpty() ? line : line + u" {"_s + below + u'}';
        }
        return lines.join(u' ');
    }

    DbusmenuClient *m_client;
};

/// What the host is to show of the same value.
QString outlineOf(const QList<MenuEntry> &entries)
{
    QStringList lines;
    for (const MenuEntry &entry : entries) {
        const QString line = entry.enabled ? entry.title : u'(' + entry.title + u')';
        if (entry.kind == MenuEntry::Kind::Submenu)
            lines += line + u" {"_s + outlineOf(childEntries(entry)) + u'}';
        else if (entry.kind == MenuEntry::Kind::Item)
            lines += line;
    }
    return lines.join(u' ');
}

LinkItem link(const QString &name)
{
    return LinkItem::make(name, u"https://example.org/"_s + name, LinkType::Url, {});
}

LinkItem group(const QString &name, const LinkList &children)
{
    LinkItem made = LinkItem::make(name, {}, LinkType::Group, {});
    made.children = children;
    return made;
}

MenuEntry widget(WidgetType type)
{
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::Widget;
    entry.widget = type;
    return entry;
}

/// A row that only says something and one that does something as a whole.
class SayingRow : public WidgetRowView
{
public:
    SayingRow(const QString &said, std::function<void()> does, QWidget *parent)
        : WidgetRowView(parent), m_does(std::move(does))
    {
        describe(u"Row"_s, said);
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (m_does && event->key() == Qt::Key_Return)
            m_does();
    }

private:
    std::function<void()> m_does;
};

/// One bus for the process: GIO connects to one session bus only.
PrivateBus &sessionBus()
{
    static PrivateBus bus;
    // The library says that its questions are not answered when a test ends.
    g_log_set_handler(
        "LIBDBUSMENU-GLIB", G_LOG_LEVEL_WARNING, [](auto...) {}, nullptr);
    static const bool told = qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
    EXPECT_TRUE(told);
    return bus;
}

class HostMenuTest : public testing::Test
{
protected:
    HostMenuTest()
    {
        manager.setEnabled(true);
        links = {link(u"under_score & <b>"_s), group(u"Outer"_s, {link(u"a"_s), group(u"Inner"_s, {link(u"deep"_s)})}),
                 group(u"Empty"_s, {}), LinkItem::make(u"Note"_s, {}, LinkType::Note, {})};
        MenuEntry settings, quit;
        settings.title = text("menu.settings"_text);
        settings.action.kind = MenuAction::Kind::OpenSettings;
        quit.title = u"Quit"_s;
        quit.action.kind = MenuAction::Kind::Quit;
        context.entries = {settings, quit};
        bus.registerObject(HostMenu::objectPath(), &menu, QDBusConnection::ExportScriptableContents);
    }
    ~HostMenuTest() override { bus.unregisterObject(HostMenu::objectPath()); }

    Menu whole() const
    {
        Menu built;
        for (const LinkItem &each : links)
            built.entries += menuEntry(each);
        for (const WidgetType type : widgets)
            built.entries += widget(type);
        MenuEntry bottom;
        bottom.kind = MenuEntry::Kind::BottomRow;
        built.entries += bottom;
        return built;
    }
    QWidget *makeRow(WidgetType type, QWidget *parent)
    {
        if (type == WidgetType::Clipboard)
            return new ClipboardRowView(
                manager, world.notifications, [] {}, parent);
        if (type == WidgetType::Weather)
            return new SayingRow(
                weather, [this] { done += u"weather"_s; }, parent);
        return type == WidgetType::Network ? new SayingRow(u"quiet"_s, {}, parent) : nullptr;
    }
    QString bottom() const
    {
        QStringList names;
        for (int button = 0; button < BottomRowView::buttonCount; ++button)
            names += BottomRowView::name(button);
        return u"-- "_s + names.join(u' ') + u" Quit"_s;
    }
    bool shows(const QString &expected) const
    {
        const bool same = waitFor([&] { return host.outline() == expected; });
        EXPECT_EQ(host.outline().toStdString(), expected.toStdString());
        return same;
    }
    void copy(const QString &said)
    {
        pasteboard.otherAppCopies({{Pasteboard::textType(), said.toUtf8()}});
        manager.checkNow();
        EXPECT_TRUE(waitFor([this] { return !manager.isReading(); }));
    }
    QDBusMessage call(const QString &method, const QVariantList &arguments)
    {
        auto message = QDBusMessage::createMethodCall(bus.baseService(), HostMenu::objectPath(),
                                                      u"com.canonical.dbusmenu"_s, method);
        message.setArguments(arguments);
        const QDBusPendingCall pending = panel.asyncCall(message, 30'000);
        EXPECT_TRUE(waitFor([&pending] { return pending.isFinished(); }));
        return pending.reply();
    }

    UiWorld world;
    FakePasteboard pasteboard{world.clock};
    ClipboardCache cache{{world.folder.path()}};
    ClipboardManager manager{{world.defaults, world.debugMode, world.notifications, world.powerEvents, world.clock,
                              pasteboard, cache, [](const QByteArray &) { return QString(); }}};
    LinkList links;
    QList<WidgetType> widgets;
    Menu context;
    QString weather = u"mild"_s;
    QStringList done;
    int caughtUp = 0, childrenMade = 0;
    QList<bool> live;
    QDBusConnection bus = sessionBus().connection();
    QDBusConnection panel = sessionBus().connection();
    HostMenuContent content{{[this] { return whole(); }, [this] { ++caughtUp; }, [this] { return context; },
                             [this](const MenuEntry &entry) {
                                 const auto children = childEntries(entry);
                                 childrenMade += int(children.size());
                                 return children;
                             },
                             [this](WidgetType type, QWidget *parent) { return makeRow(type, parent); },
                             [this](const MenuAction &action) {
                                 done += action.kind == MenuAction::Kind::OpenLink ? action.linkId.toString()
                                                                                   : QString::number(int(action.kind));
                             },
                             [this](bool on) { live += on; }},
                            world.clock};
    HostMenu menu;
    Host host{bus.baseService()};
};

TEST_F(HostMenuTest, TheHostShowsTheWholeMenu)
{
    widgets = {WidgetType::Clipboard, WidgetType::Weather, WidgetType::Network, WidgetType::Timer};
    copy(u"first_line"_s);
    menu.setSource(content);
    const QString clipboard = text("clipboard.title"_text) + u" {"_s + text("clipboard.pause"_text) + u' ' +
                              text("clipboard.clear"_text) + u" first_line}"_s;
    ASSERT_TRUE(shows(outlineOf(whole().entries) + u" -- "_s + clipboard + u" Row – mild (Row – quiet) "_s + bottom()));
    for (const QStringList &path :
         {QStringList{u"under_score & <b>"_s}, QStringList{u"Outer"_s, u"Inner"_s}, QStringList{u"Row – mild"_s}})
        EXPECT_TRUE(waitFor([&] { return Host::picture(host.find(path)).width() == 32; }))
            << qPrintable(path.join(u'/'));
    EXPECT_TRUE(Host::picture(host.find({u"Quit"_s})).isNull()) << "it has none";
}

TEST(HostWidgetSymbol, IsDrawnForEveryWidget)
{
    for (const WidgetType widget : defaultWidgetOrder())
        EXPECT_TRUE(hasSymbol(hostWidgetSymbol(widget))) << qPrintable(rawValue(widget));
}

TEST_F(HostMenuTest, AClickDoesWhatTheDrawnMenuDoes)
{
    widgets = {WidgetType::Clipboard, WidgetType::Weather, WidgetType::Network};
    copy(u"older"_s);
    copy(u"newer"_s);
    menu.setSource(content);
    ASSERT_TRUE(waitFor([this] { return host.find({u"Quit"_s}) != nullptr; }));
    const QString title = text("clipboard.title"_text);
    host.click({u"Row – quiet"_s}); // does nothing
    host.click({u"Outer"_s});       // opens only
    host.click({u"Outer"_s, u"Inner"_s, u"deep"_s});
    host.click({u"Row – mild"_s});
    host.click({text("menu.settings"_text)});
    host.click({u"Quit"_s});
    const QString deep = links[1].children->at(1).children->at(0).id.toString();
    const QStringList expected{deep, u"weather"_s, QString::number(int(MenuAction::Kind::OpenSettings)),
                               QString::number(int(MenuAction::Kind::Quit))};
    EXPECT_TRUE(waitFor([&] { return done.size() >= expected.size(); }));
    EXPECT_EQ(done, expected);
    host.click({title, u"older"_s});
    EXPECT_TRUE(waitFor([this] { return pasteboard.content(Pasteboard::textType()) == "older"; }));
    host.click({title, text("clipboard.pause"_text)});
    EXPECT_TRUE(waitFor([this] { return manager.isPaused(); }));
}

TEST_F(HostMenuTest, FollowsChangesAndKeepsWhatStays)
{
    widgets = {WidgetType::Weather};
    menu.setSource(content);
    const auto all = [this](const QString &row) {
        return outlineOf(whole().entries) + u" -- "_s + row + u' ' + bottom();
    };
    ASSERT_TRUE(shows(all(u"Row – mild"_s)));
    const int outer = dbusmenu_menuitem_get_id(host.find({u"Outer"_s}));
    const int deep = dbusmenu_menuitem_get_id(host.find({u"Outer"_s, u"Inner"_s, u"deep"_s}));

    links[0].name = u"renamed"_s;
    LinkList inner = *links[1].children;
    inner.prepend(link(u"new"_s));
    links[1].children = inner;
    links.move(0, 2);
    content.contentChanged();
    content.contentChanged();
    world.clock.advance(HostMenuContent::gathering);
    ASSERT_TRUE(shows(all(u"Row – mild"_s)));
    EXPECT_EQ(dbusmenu_menuitem_get_id(host.find({u"Outer"_s})), outer);
    EXPECT_EQ(dbusmenu_menuitem_get_id(host.find({u"Outer"_s, u"Inner"_s, u"deep"_s})), deep);

    weather = u"stormy"_s;
    host.open({});
    EXPECT_EQ(live, QList{true});
    EXPECT_EQ(caughtUp, 1);
    ASSERT_TRUE(shows(all(u"Row – stormy"_s)));
    weather = u"calm"_s;
    world.clock.advance(HostMenuContent::livePeriod);
    ASSERT_TRUE(shows(all(u"Row – calm"_s)));
    // A click on what has gone meanwhile meets nothing.
    links.removeAt(0);
    content.contentChanged();
    world.clock.advance(HostMenuContent::gathering);
    const auto gone = call(u"Event"_s, {outer, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_EQ(gone.type(), QDBusMessage::ErrorMessage) << "what has gone";
    world.clock.advance(HostMenuContent::longestShown);
    EXPECT_EQ(live, (QList{true, false})) << "this host does not tell when it has closed the menu";
}

TEST_F(HostMenuTest, TenThousandLinksAreMadeWhenTheyAreLookedAt)
{
    LinkList many;
    for (int i = 0; i < 10'000; ++i)
        many += link(u"link %1"_s.arg(i));
    links = {group(u"Many"_s, many), group(u"Few"_s, {link(u"x"_s)})};
    menu.setSource(content);
    ASSERT_TRUE(waitFor([this] { return host.find({u"Few"_s, u"x"_s}) != nullptr; }));
    EXPECT_EQ(childrenMade, 1);
    const int group = dbusmenu_menuitem_get_id(host.find({u"Many"_s}));
    EXPECT_TRUE(call(u"AboutToShow"_s, {group}).arguments().value(0).toBool());
    const auto reply = call(u"GetLayout"_s, {group, 1, QStringList{u"label"_s}});
    const auto level = qdbus_cast<HostMenuNode>(reply.arguments().value(1));
    ASSERT_EQ(level.children.size(), many.size());
    EXPECT_EQ(level.children.constLast().properties, QVariantMap({{u"label"_s, u"link 9999"_s}}));
    EXPECT_FALSE(call(u"AboutToShow"_s, {group}).arguments().value(0).toBool()) << "nothing new";
    EXPECT_EQ(childrenMade, 1 + many.size());
    call(u"Event"_s, {level.children.constLast().id, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_TRUE(waitFor([this] { return done == QStringList{links[0].children->last().id.toString()}; }));
}

TEST_F(HostMenuTest, HostileCallsAreRefusedAndHarmNothing)
{
    qDBusRegisterMetaType<QList<int>>();
    widgets = {WidgetType::Clipboard};
    menu.setSource(content);
    ASSERT_TRUE(waitFor([this] { return host.find({u"Quit"_s}) != nullptr; }));
    const QString before = host.outline();
    const QVariant odd = QVariant::fromValue(QDBusVariant(QByteArray(1000, 'x')));
    const QList<int> wrong{INT_MIN, INT_MAX, -1, 777'777};
    QList<HostMenuEvent> flood(5000, {INT_MAX, u"clicked"_s, QDBusVariant(0), 0});
    const struct {
        QString method;
        QVariantList arguments;
    } refused[]{
        {u"GetLayout"_s, {INT_MIN, -1, QStringList()}},
        {u"GetLayout"_s, {0, INT_MIN, QStringList()}},
        {u"GetLayout"_s, {777'777, INT_MAX, QStringList()}},
        {u"GetLayout"_s, {u"0"_s, -1, QStringList()}},
        {u"GetProperty"_s, {0, u"objectName"_s}},
        {u"Event"_s, {INT_MAX, u"clicked"_s, odd, 0U}},
        {u"Event"_s, {0, u"clicked"_s, 1, 0U}},
        {u"EventGroup"_s, {QVariant::fromValue(flood)}},
        {u"AboutToShow"_s, {INT_MIN}},
        {u"AboutToShow"_s, {0U}},
        {u"AboutToShowGroup"_s, {QVariant::fromValue(wrong)}},
    };
    for (const auto &[method, arguments] : refused)
        EXPECT_EQ(call(method, arguments).type(), QDBusMessage::ErrorMessage) << qPrintable(method);
    const struct {
        QString method;
        QVariantList arguments;
    } harmless[]{
        {u"GetLayout"_s, {0, INT_MAX, QStringList(1000, u"label"_s)}},
        {u"GetGroupProperties"_s, {QVariant::fromValue(wrong), QStringList()}},
        {u"Event"_s, {0, u"clicked"_s, odd, 0U}},
        {u"Event"_s, {0, QString(100'000, u'e'), odd, 0U}},
    };
    for (const auto &[method, arguments] : harmless)
        EXPECT_EQ(call(method, arguments).type(), QDBusMessage::ReplyMessage) << qPrintable(method);
    EXPECT_EQ(host.outline(), before);
    EXPECT_TRUE(done.isEmpty());
}

} // namespace
} // namespace orvelle::test
