#include "ui/looks/LooksWorld.h"

#include "base/Text.h"
#include "support/Outline.h"
#include "ui/common/MessageAlerts.h"
#include "ui/common/SyncPreviewView.h"
#include "ui/exchange/ImportDialog.h"
#include "ui/exchange/ImportReport.h"
#include "ui/menu/rows/CalendarRowView.h"
#include "ui/menu/rows/ClipboardRowView.h"
#include "ui/menu/rows/NetworkRowView.h"
#include "ui/menu/rows/QuickLaunchRowView.h"
#include "ui/menu/rows/SystemInfoRowView.h"
#include "ui/menu/rows/TimerRowView.h"
#include "ui/menu/rows/WeatherRowView.h"
#include "ui/notes/NoteEditorWindow.h"
#include "ui/settings/ApplicationChooser.h"
#include "ui/settings/CalendarSection.h"
#include "ui/settings/ClipboardSection.h"
#include "ui/settings/InfoView.h"
#include "ui/settings/NetworkSection.h"
#include "ui/settings/PassphraseDialog.h"
#include "ui/settings/QuickLaunchSection.h"
#include "ui/settings/SnapshotPreview.h"
#include "ui/settings/SystemInfoSection.h"
#include "ui/settings/TimerSection.h"
#include "ui/settings/WeatherSection.h"
#include "ui/settings/WidgetOrderList.h"
#include "ui/timer/CustomTimerView.h"

#include <QApplication>
#include <QListWidget>
#include <QTest>
#include <QTranslator>

namespace orvelle::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr quint64 gibibyte = quint64(1) << 30;

PreparedImport importOf(LooksWorld &world)
{
    PreparedImport prepared;
    auto document = std::make_shared<ExportData>();
    document->generalSettings.emplace();
    prepared.document = document;
    prepared.items = world.links.links();
    prepared.hasVersionMismatch = true;
    prepared.droppedCount = 3;
    return prepared;
}

SyncAnalysis differences()
{
    SyncAnalysis analysis;
    const auto add = [&analysis](SyncCategory category, const char *name) {
        SyncChange change;
        change.category = category;
        if (category != SyncCategory::Added)
            change.localLink = namedLink(QString::fromLatin1(name));
        if (category != SyncCategory::Removed)
            change.importedLink = namedLink(QString::fromLatin1(name));
        if (category == SyncCategory::UpdatedRemote)
            change.details = {u"sync.details.pathChanged"_s, u"sync.details.nameChanged"_s};
        analysis.changes += change;
    };
    add(SyncCategory::UpdatedRemote, "theirs");
    add(SyncCategory::Added, "new");
    add(SyncCategory::Removed, "gone");
    DuplicateGroup twins;
    twins.instances = {namedLink(u"twice"_s), namedLink(u"twice"_s)};
    analysis.duplicateGroups = {twins};
    return analysis;
}

std::unique_ptr<QWidget> own(QWidget *window)
{
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    return std::unique_ptr<QWidget>(window);
}

std::unique_ptr<QWidget> settingsOn(LooksWorld &world, const char *tab)
{
    auto *window = new SettingsWindow(world.settings());
    window->showTab(QString::fromLatin1(tab));
    return own(window);
}

template<int row>
std::unique_ptr<QWidget> widgetSection(LooksWorld &world)
{
    auto window = settingsOn(world, "widgets");
    window->findChild<WidgetOrderList *>()->setCurrentRow(row);
    return window;
}

/// The alert's window; the alerts live in it.
std::unique_ptr<QWidget> alertWindow(const Alert &alert)
{
    auto *alerts = new MessageAlerts;
    alerts->show(alert);
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == u"Alert" && window->isVisible()) {
            window->setAttribute(Qt::WA_DeleteOnClose, false);
            QObject::connect(window, &QObject::destroyed, alerts, &QObject::deleteLater);
            return std::unique_ptr<QWidget>(window);
        }
    }
    return {};
}

std::unique_ptr<QWidget> snapshot(LooksWorld &world)
{
    LinkItem changed = namedLink(u"b"_s);
    const LinkList current{changed, namedLink(u"only here"_s)};
    changed.name = u"B"_s;
    return own(new SnapshotPreview({{}, world.clock.now(), u"replace"_s, 1234}, {changed, namedLink(u"only there"_s)},
                                   current, world.clock.now()));
}

std::unique_ptr<QWidget> noteEditor(LooksWorld &world)
{
    const LinkItem note = world.addNote("A note", "Milk, bread\nand something else");
    return own(new NoteEditorWindow(world.notes(), note));
}

} // namespace

const QList<KnownWindow> &knownWindows()
{
    static const QList<KnownWindow> windows{
        {"general", [](LooksWorld &world) { return settingsOn(world, "general"); }},
        {"sync", [](LooksWorld &world) { return settingsOn(world, "sync"); }},
        {"about", [](LooksWorld &world) { return settingsOn(world, "about"); }},
        {"widget0", &widgetSection<0>},
        {"widget1", &widgetSection<1>},
        {"widget2", &widgetSection<2>},
        {"widget3", &widgetSection<3>},
        {"widget4", &widgetSection<4>},
        {"widget5", &widgetSection<5>},
        {"widget6", &widgetSection<6>},
        {"welcome", [](LooksWorld &world) { return own(new InfoView(world.settings())); }},
        {"quickadd", [](LooksWorld &world) { return own(new QuickAddPanel(world.quickAdd(), std::nullopt)); }},
        {"note", &noteEditor},
        {"timer", [](LooksWorld &) { return own(new CustomTimerView([](qint64) {}, [] {})); }},
        {"applications", [](LooksWorld &world) { return own(new ApplicationChooser(world.applications, nullptr)); }},
        {"passphrase",
         [](LooksWorld &) { return own(new PassphraseDialog(PassphraseDialog::Purpose::Choose, nullptr)); }},
        {"import", [](LooksWorld &world) { return own(new ImportDialog(u"old.ovexport"_s, importOf(world))); }},
        {"preview",
         [](LooksWorld &) { return own(new SyncPreviewView(differences(), SyncPreviewView::Purpose::Apply)); }},
        {"heldback",
         [](LooksWorld &) { return own(new SyncPreviewView(differences(), SyncPreviewView::Purpose::Decide)); }},
        {"snapshot", &snapshot},
        {"imported",
         [](LooksWorld &) {
             return alertWindow(importAlert({12, 3, true, true}, ImportMode::Merge, 2, true));
         }},
        {"alert",
         [](LooksWorld &) {
             return alertWindow({Alert::Style::Warning,
                                 text("repair.alertTitle"_text),
                                 text("quit.confirmMessage"_text),
                                 {text("import.replaceAll"_text), text("import.merge"_text), text("import.sync"_text),
                                  text("sheet.cancel"_text), text("quit.closeWindow"_text)}});
         }},
    };
    return windows;
}

LooksWorld::LooksWorld()
{
    static_cast<void>(defaults.write(u"HasLaunchedBefore"_s, true));
    clock.setNow(Timestamp::fromDateTime(QDateTime(QDate(2026, 3, 25), QTime(10, 0))));
    syncControl.stored.kind = SyncPlace::Kind::Folder;
    syncControl.stored.folder = u"/home/ada/Sync/Orvelle"_s;
    syncControl.on = true;
    syncControl.current.state = SyncStatus::State::Current;
    syncControl.held = HeldBackChange{};
    syncControl.held->analysis = differences();
    sync = &syncControl;
    fillTree();
    fillWidgets();
}

void LooksWorld::fillTree()
{
    LinkItem work = make("Work", LinkType::Group);
    LinkItem inner = make("Reports of the last quarter", LinkType::Group);
    inner.children = LinkList{make("January", LinkType::Url, "https://example.org/1")};
    LinkItem tinted = make("Team wiki", LinkType::Url, "https://example.org/wiki");
    tinted.customIconColor = u"red"_s;
    work.children = LinkList{inner, tinted, make("Paper.odt", LinkType::File, "/home/ada/Paper.odt")};
    LinkItem note = make("Shopping", LinkType::Note);
    note.customIconColor = u"yellow"_s;
    note.noteContent = u"Milk"_s;
    for (const LinkItem &item :
         {work, make("Documents", LinkType::Folder, "/home/ada/Documents"),
          make("A page with a name that is much longer than any menu is wide", LinkType::Url, "https://example.org/"),
          make("Server", LinkType::Url, "smb://server.example/share"), make("Empty", LinkType::Group), note})
        links.addLink(item);
}

void LooksWorld::fillWidgets()
{
    host.ram = {3 * gibibyte, 16 * gibibyte};
    host.disk = {120 * gibibyte, 500 * gibibyte};
    host.ticks = {100, 100, 0};
    system.setDisplayMode(SystemInfoDisplayMode::Discreet);
    network.setDisplayMode(NetworkDisplayMode::Graph);
    system.startMonitoring();
    network.startMonitoring();
    system.startLiveRefresh();
    network.startLiveRefresh();
    for (int second = 0; second < 30; ++second) {
        const auto passed = static_cast<quint64>(second);
        counters.reading.interfaces = {{1, u"eth0"_s, {}, 0, passed * passed * 40'000, passed * passed * passed * 900}};
        clock.advance(2s);
    }
    timer.setEnabled(true);
    http.answers(u"*"_s, 200,
                 R"({"current":{"temperature_2m":20.5,"weather_code":2,"is_day":1},)"
                 R"("daily":{"temperature_2m_min":[11.4],"temperature_2m_max":[24]}})");
    geocoder.places.insert(u"Paris"_s, QList<Placemark>{{Coordinates{48.8566, 2.3522}, u"Paris"_s, {}}});
    weather.setLocationMode(WeatherLocationMode::Manual);
    weather.setManualCity(u"Paris"_s);
    weather.geocodeAndFetch();
    geocoder.deliver();
    http.deliverAll();
    CalendarEvent meeting;
    meeting.title = u"Planning with everybody"_s;
    meeting.start = clock.now() + 3600;
    meeting.end = meeting.start + 3600;
    calendars.events = {meeting};
    calendar.setMaxEvents(3);
    calendar.setEnabled(true);
    calendars.answer();
    for (const QString &name : {u"Editor"_s, u"Mail"_s, u"Music"_s})
        applications.install(name);
    quickLaunch.setEnabled(true);
    quickLaunch.setApp(0, u"/apps/editor.desktop"_s);
    quickLaunch.setApp(1, u"/apps/mail.desktop"_s);
    clipboard.setEnabled(true);
    for (const QString &copied : {u"git log --oneline"_s, u"A long sentence that somebody has copied from a page"_s}) {
        pasteboard.otherAppCopies(copied);
        clipboard.checkNow();
        static_cast<void>(QTest::qWaitFor([this] { return !clipboard.isReading(); }));
    }
}

SettingsServices LooksWorld::settings()
{
    SettingsServices services = UiWorld::settings();
    services.widgetSections = {
        {WidgetType::SystemInfo, [this](QWidget *p) { return new SystemInfoSection(system, notifications, p); }},
        {WidgetType::Network, [this](QWidget *p) { return new NetworkSection(network, notifications, p); }},
        {WidgetType::Timer, [this](QWidget *p) { return new TimerSection(timer, notifications, p); }},
        {WidgetType::Clipboard, [this](QWidget *p) { return new ClipboardSection(clipboard, notifications, p); }},
        {WidgetType::Weather, [this](QWidget *p) { return new WeatherSection(weather, notifications, p); }},
        {WidgetType::QuickLaunch,
         [this](QWidget *p) { return new QuickLaunchSection(quickLaunch, applications, notifications, p); }},
        {WidgetType::Calendar,
         [this](QWidget *p) {
             return new CalendarSection(
                 calendar, notifications,
                 {[] { return QStringList{u"/home/ada/Calendars"_s}; }, [](const QStringList &) {}}, folderChooser, p);
         }},
    };
    return services;
}

QWidget *LooksWorld::makeRow(WidgetType type, QWidget *parent)
{
    switch (type) {
    case WidgetType::SystemInfo:
        return new SystemInfoRowView(system, notifications, parent);
    case WidgetType::Network:
        return new NetworkRowView(network, notifications, parent);
    case WidgetType::Timer:
        return new TimerRowView(timer, notifications, clock, parent);
    case WidgetType::Clipboard:
        return new ClipboardRowView(
            clipboard, notifications, [] {}, parent);
    case WidgetType::Weather:
        return new WeatherRowView(
            weather, notifications, clock, [] {}, parent);
    case WidgetType::QuickLaunch:
        return new QuickLaunchRowView(quickLaunch, applications, notifications, {[](int) {}, [] {}}, parent);
    case WidgetType::Calendar:
        return new CalendarRowView(calendar, notifications, {[] {}, [] {}, [] {}, [](const QUrl &) {}}, parent);
    }
    return nullptr;
}

Menu LooksWorld::menu() const
{
    Menu menu;
    for (const LinkItem &item : links.links())
        menu.entries += menuEntry(item);
    MenuEntry separator;
    separator.kind = MenuEntry::Kind::Separator;
    menu.entries += separator;
    for (const WidgetType type : widgetOrder.order()) {
        MenuEntry widget;
        widget.kind = MenuEntry::Kind::Widget;
        widget.widget = type;
        menu.entries += widget;
    }
    MenuEntry bottom;
    bottom.kind = MenuEntry::Kind::BottomRow;
    menu.entries += bottom;
    return menu;
}

std::unique_ptr<MenuPopup> LooksWorld::openMenu(const MenuPlacement &placement)
{
    auto popup = std::make_unique<MenuPopup>([](const MenuEntry &submenu) { return childEntries(submenu); });
    popup->setWidgetRowFactory([this](WidgetType type, QWidget *parent) { return makeRow(type, parent); });
    popup->present(menu(), placement, {});
    QApplication::processEvents();
    QWidget *panel = popup->panels().constFirst();
    const bool rightToLeft = panel->layoutDirection() == Qt::RightToLeft;
    QTest::keyClick(panel, Qt::Key_Home);
    QTest::keyClick(panel, rightToLeft ? Qt::Key_Left : Qt::Key_Right);
    QApplication::processEvents();
    return popup;
}

namespace {

class LongTextTranslator : public QTranslator
{
public:
    QString translate(const char *, const char *id, const char *, int) const override
    {
        const QString plain = m_english.translate(nullptr, id);
        if (plain.isEmpty())
            return {};
        QString longer;
        for (const QChar c : plain)
            longer += accented(c);
        // Words, so that lines can be broken as in a language.
        const qsizetype more = (2 * plain.size() + 4) / 5;
        for (qsizetype i = 0; i < more; ++i)
            longer += i % 7 == 0 ? u' ' : u'õ';
        return u'[' + longer + u']';
    }
    bool isEmpty() const override { return false; }
    bool load() { return m_english.load(u":/i18n/orvelle_en.qm"_s); }

private:
    /// Vowels only: no placeholder has one.
    static QChar accented(QChar c)
    {
        const qsizetype at = u"aeiouAEIOU"_s.indexOf(c);
        return at < 0 ? c : u"äéïöûÄÉÏÖÛ"_s.at(at);
    }

    QTranslator m_english;
};

} // namespace

LongTexts::LongTexts()
{
    auto translator = std::make_unique<LongTextTranslator>();
    if (translator->load())
        QCoreApplication::installTranslator(translator.get());
    m_translator = std::move(translator);
}

LongTexts::~LongTexts()
{
    QCoreApplication::removeTranslator(m_translator.get());
}

} // namespace orvelle::test
