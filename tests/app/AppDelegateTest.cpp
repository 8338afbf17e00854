#include "app/AppDelegate.h"

#include "menubar/MenuTestFakes.h"
#include "support/Fakes.h"
#include "ui/common/ExchangeImporter.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace std::chrono_literals;

class FakeImporter : public ExchangeImporter
{
public:
    QStringList calls;

    void performFileImport(const QByteArray &data, Mode mode) override
    {
        calls += (mode == Mode::ReplaceAll ? QStringLiteral("replace ") : QStringLiteral("merge ")) +
                 QString::fromUtf8(data);
    }
    void performFileSync(const QByteArray &data) override
    {
        calls += QStringLiteral("sync ") + QString::fromUtf8(data);
    }
};

struct App : Shell {
    App() : Shell({item("x", LinkType::Url, "https://e")}) {}

    FakeImporter importer;
    QList<DistantFiles::Look> looks;
    bool saves = true;
    AppDelegate delegate{{manager, jobs, defaults, clock, alerts, windows, power, importer,
                          [this](const QString &, const DistantFiles::Look &look) { looks += look; },
                          [this] { return saves; }, [this] { calls += QStringLiteral("activate"); }}};

    QString write(const char *name, const QByteArray &content)
    {
        const QString path = folder.filePath(QString::fromUtf8(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }
    void open(const QStringList &paths)
    {
        delegate.openFiles(paths);
        for (const DistantFiles::Look &look : std::exchange(looks, {}))
            look(bookmarks)();
    }
    /// "yes", "no", or nothing while the question is open.
    QString askToQuit()
    {
        answer.clear();
        delegate.applicationShouldTerminate(
            [this](bool yes) { answer = yes ? QStringLiteral("yes") : QStringLiteral("no"); });
        return answer;
    }
    QString answer;
};

TEST(AppDelegate, StartsEverythingInOrderAndLateJobsLate)
{
    App app;
    app.jobs.enabled = defaultWidgetOrder();
    app.delegate.applicationDidFinishLaunching();
    const QString atOnce = QStringLiteral("shortcut|start weather|start systemInfo|start network|start clipboard|"
                                          "start calendar|launch");
    EXPECT_TRUE(app.statusItem.shown);
    EXPECT_EQ(app.calls.join(u'|'), atOnce);
    const std::pair<std::chrono::milliseconds, const char *> late[] = {
        {999ms, ""}, {1ms, "favicons"}, {1999ms, ""}, {1ms, "updates"}, {1999ms, ""}, {1ms, "tip"}, {1h, ""}};
    for (const auto &[wait, call] : late) {
        app.calls.clear();
        app.clock.advance(wait);
        EXPECT_EQ(app.calls.join(u'|'), QLatin1StringView(call));
    }
}

TEST(AppDelegate, DoesNotStartDisabledWidgets)
{
    App app;
    app.jobs.enabled = {WidgetType::Clipboard, WidgetType::Timer};
    app.delegate.applicationDidFinishLaunching();
    EXPECT_EQ(app.calls.join(u'|'), u"shortcut|start clipboard|launch");
}

TEST(AppDelegate, HandsDocumentsToTheChosenImport)
{
    const char *const expected[] = {"replace {}", "merge {}", "sync {}", ""};
    for (int button = 0; button < 4; ++button) {
        App app;
        app.open({app.write("Backup.OVEXPORT", "{}"), app.write("backup.json", "{}")});
        ASSERT_EQ(app.alerts.shown.size(), 1);
        const Alert alert = app.alerts.shown.first();
        EXPECT_EQ(alert.message, u"import.fileOpenTitle");
        EXPECT_EQ(alert.buttons.join(u' '), u"import.replaceAll import.merge import.sync sheet.cancel");
        EXPECT_EQ(app.calls.join(u' '), u"activate");
        app.alerts.userChooses(button);
        EXPECT_EQ(app.importer.calls.join(u'|'), QLatin1StringView(expected[button]));
    }
}

TEST(AppDelegate, TellsWhyADocumentCannotBeRead)
{
    App app;
    ASSERT_TRUE(QDir(app.folder.path()).mkdir(QStringLiteral("folder.ovexport")));
    app.open({app.write("broken.ovexport", "{\"links\": ["), app.folder.filePath(QStringLiteral("none.ovexport")),
              app.folder.filePath(QStringLiteral("folder.ovexport"))});
    ASSERT_EQ(app.alerts.shown.size(), 3);
    for (const Alert &alert : app.alerts.shown) {
        EXPECT_EQ(alert.message, u"import.title");
        EXPECT_EQ(alert.buttons.size(), 1);
    }
}

TEST(AppDelegate, DecidesAboutQuitting)
{
    const QString confirm = QStringLiteral("ConfirmBeforeQuit");
    const QString skip = QStringLiteral("SkipQuitConfirmation");
    App app;
    app.delegate.applicationDidFinishLaunching();
    EXPECT_EQ(app.askToQuit(), u"") << "never written counts as: ask";
    EXPECT_EQ(app.alerts.shown.last().buttons.join(u' '), u"quit.confirm quit.closeWindow");
    EXPECT_EQ(app.askToQuit(), u"no") << "one question at a time";
    ASSERT_EQ(app.alerts.unanswered(), 1);
    app.alerts.userChooses(1);
    EXPECT_EQ(app.answer, u"no");
    EXPECT_TRUE(app.calls.contains(QStringLiteral("close settings")));
    app.askToQuit();
    app.alerts.userChooses(0);
    EXPECT_EQ(app.answer, u"yes");

    ASSERT_TRUE(app.defaults.write(confirm, true));
    app.manager.quitApp();
    EXPECT_EQ(app.askToQuit(), u"yes");
    EXPECT_FALSE(app.defaults.value(skip)) << "used up";
    EXPECT_EQ(app.askToQuit(), u"");
    app.alerts.userChooses(1);
    ASSERT_TRUE(app.defaults.write(confirm, false));
    EXPECT_EQ(app.askToQuit(), u"yes");

    ASSERT_TRUE(app.defaults.write(confirm, true));
    const auto alertsBefore = app.alerts.shown.size();
    app.power.systemPowersOff();
    EXPECT_EQ(app.askToQuit(), u"yes");
    EXPECT_EQ(app.alerts.shown.size(), alertsBefore);
}

TEST(AppDelegate, AsksBeforeChangesAreLostThatCannotBeSaved)
{
    App app;
    app.delegate.applicationDidFinishLaunching();
    app.saves = false;
    ASSERT_TRUE(app.defaults.write(QStringLiteral("ConfirmBeforeQuit"), false));
    for (const auto &[button, answer] : {std::pair(0, "no"), std::pair(1, "yes")}) {
        EXPECT_EQ(app.askToQuit(), u"");
        EXPECT_EQ(app.alerts.shown.last().buttons.value(button),
                  QString::fromLatin1(button == 0 ? "quit.unsavedStay" : "quit.unsavedQuit"));
        EXPECT_EQ(app.askToQuit(), u"no") << "one question at a time";
        app.alerts.userChooses(button);
        EXPECT_EQ(app.answer, QString::fromLatin1(answer));
    }
    EXPECT_EQ(app.alerts.shown.last().escapeButton, 0);

    // The question may have been about something else.
    ASSERT_TRUE(app.defaults.write(QStringLiteral("ConfirmBeforeQuit"), true));
    EXPECT_EQ(app.askToQuit(), u"");
    app.alerts.userChooses(0);
    EXPECT_EQ(app.answer, u"") << "the wish is granted, the loss is not";
    app.saves = true;
    app.manager.quitApp();
    EXPECT_EQ(app.askToQuit(), u"yes") << "they could be saved meanwhile";

    app.saves = false;
    app.power.systemPowersOff();
    EXPECT_EQ(app.askToQuit(), u"yes") << "nobody can be asked";
}

} // namespace
} // namespace orvelle::test
