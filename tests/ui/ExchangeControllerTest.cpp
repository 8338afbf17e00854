#include "ui/exchange/ExchangeController.h"

#include "links/LinkCodec.h"
#include "links/exchange/BookmarksHtml.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeSettings.h"
#include "support/Outline.h"
#include "ui/UiWorld.h"
#include "ui/common/SyncPreviewView.h"
#include "ui/exchange/BackgroundWork.h"
#include "ui/exchange/ImportDialog.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QSemaphore>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

using namespace std::chrono_literals;

/// One setting is enough to see that the others are put back.
class FakeExchangeSettings : public ExchangeSettings
{
public:
    QString menuletIcon = u"star"_s;

    void gather(ExportData &document) const override
    {
        document.generalSettings.emplace();
        document.generalSettings->menuletIcon = menuletIcon;
    }
    bool apply(const ExportData &document) override
    {
        if (document.generalSettings)
            menuletIcon = *document.generalSettings->menuletIcon;
        return document.quickLaunchApps.has_value();
    }
};

class ExchangeControllerTest : public ::testing::Test
{
protected:
    ExchangeControllerTest()
    {
        world.links.edit(LinkStore::Step::Ordinary, u"test"_s, [](LinkList &tree) {
            tree = treeFrom(u"a g[b]"_s);
            return true;
        });
        before = encodeLinks(world.links.links());
    }

    QString write(const char *name, const QByteArray &content)
    {
        const QString path = world.folder.filePath(QString::fromLatin1(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
        return path;
    }

    QByteArray document(const char *outline, int version = 6)
    {
        ExportData data;
        data.version = version;
        data.exportDate = world.clock.now();
        data.links = treeFrom(QString::fromLatin1(outline));
        data.generalSettings.emplace();
        data.generalSettings->menuletIcon = u"bolt"_s;
        return encodeExchange(data);
    }

    /// Until the next alert is there.
    Alert nextAlert()
    {
        const qsizetype count = seenAlerts + 1;
        EXPECT_TRUE(QTest::qWaitFor([&] { return world.alerts.shown.size() >= count; }));
        seenAlerts = world.alerts.shown.size();
        return world.alerts.shown.value(count - 1);
    }

    /// With plain blanks before the numbers.
    static QString lines(const Alert &alert)
    {
        return QString(alert.informativeText).replace(QChar(QChar::Nbsp), u' ');
    }

    template<typename Dialog>
    static Dialog *nextDialog()
    {
        Dialog *found = nullptr;
        EXPECT_TRUE(QTest::qWaitFor([&found] {
            for (QWidget *widget : QApplication::topLevelWidgets()) {
                auto *dialog = qobject_cast<Dialog *>(widget);
                if (dialog && dialog->isVisible())
                    found = dialog;
            }
            return found != nullptr;
        }));
        return found;
    }

    void userChoosesMode(const QString &radio)
    {
        auto *dialog = nextDialog<ImportDialog>();
        ASSERT_TRUE(dialog);
        dialog->findChild<QRadioButton *>(radio)->click();
        dialog->accept();
    }

    void userSavesAs(const QString &path, QString *suggested = nullptr)
    {
        auto *dialog = nextDialog<QFileDialog>();
        ASSERT_TRUE(dialog);
        if (suggested)
            *suggested = QFileInfo(dialog->selectedFiles().value(0)).fileName();
        dialog->selectFile(path);
        QMetaObject::invokeMethod(dialog, "accept");
    }

    /// All of which are documents.
    void drop(const QStringList &paths)
    {
        controller.openDropped(paths, &window, [](const QStringList &rest) { ADD_FAILURE() << rest.size(); });
    }
    /// What is no document among the paths.
    QStringList restOf(const QStringList &paths)
    {
        QStringList found;
        controller.openDropped(paths, &window, [&found](const QStringList &rest) { found = rest; });
        EXPECT_TRUE(QTest::qWaitFor([&found] { return !found.isEmpty(); }));
        return found;
    }

    QString shown() const { return outlineOf(world.links.links()); }
    bool isAsBefore() const { return encodeLinks(world.links.links()) == before && settings.menuletIcon == u"star"; }

    UiWorld world;
    FakeExchangeSettings settings;
    LinkExchange exchange{world.links, settings, world.bookmarks, world.clock};
    ExchangeController controller{{world.links, exchange, settings, world.defaults, world.alerts, world.clock}};
    QWidget window;
    QByteArray before;
    qsizetype seenAlerts = 0;
};

TEST_F(ExchangeControllerTest, ImportsADocumentTheWayTheUserChooses)
{
    const std::tuple<const char16_t *, const char16_t *, const char *> cases[] = {
        {u"importMerge", u"a g[b] x", "Items added: 1\nAlready there, not added again: 1\nSettings were taken over."},
        {u"importReplace", u"a x", "Items imported: 2\nSettings were taken over."},
    };
    for (const auto &[mode, outline, said] : cases) {
        drop({write("Mine.OVEXPORT", document("a x"))});
        userChoosesMode(QString::fromUtf16(mode));
        const Alert alert = nextAlert();
        EXPECT_EQ(lines(alert).toStdString(), said);
        EXPECT_EQ(shown(), QString::fromUtf16(outline));
        EXPECT_EQ(settings.menuletIcon, u"bolt");
        ASSERT_EQ(alert.buttons.size(), 2);
        EXPECT_EQ(alert.escapeButton, 0);
        world.alerts.userChooses(1);
        EXPECT_TRUE(isAsBefore()) << shown().toStdString();
    }
}

TEST_F(ExchangeControllerTest, ClosingTheImportDialogChangesNothing)
{
    drop({write("a.ovexport", document("x"))});
    nextDialog<ImportDialog>()->reject();
    QApplication::processEvents();
    EXPECT_TRUE(isAsBefore());
    EXPECT_EQ(world.alerts.shown.size(), 0);
}

TEST_F(ExchangeControllerTest, TakesDocumentsThatTheDesktopHandedOver)
{
    controller.performFileImport(document("x", 7), ExchangeImporter::Mode::Merge);
    EXPECT_TRUE(nextAlert().informativeText.contains(u"newer version"));
    EXPECT_EQ(shown(), u"a g[b] x");
    world.alerts.userChooses(1);
    EXPECT_TRUE(isAsBefore());

    // Every link is there already: only the settings are others, then not even they.
    controller.performFileImport(document("a"), ExchangeImporter::Mode::Merge);
    EXPECT_EQ(nextAlert().buttons.size(), 2);
    world.alerts.userChooses(1);
    EXPECT_TRUE(isAsBefore());
    settings.menuletIcon = u"bolt"_s;
    controller.performFileImport(document("a"), ExchangeImporter::Mode::Merge);
    EXPECT_EQ(nextAlert().message, u"There was nothing new to import");
    world.alerts.userChooses(0);

    controller.performFileImport("[]", ExchangeImporter::Mode::ReplaceAll);
    EXPECT_EQ(nextAlert().style, Alert::Style::Warning);
    EXPECT_EQ(shown(), u"a g[b]");
}

TEST_F(ExchangeControllerTest, SynchronisesWithADocumentAfterShowingWhatChanges)
{
    controller.performFileSync(document("a g[b]"));
    EXPECT_EQ(lines(nextAlert()), u"Nothing would change: both sides hold the same.");
    world.alerts.userChooses(0);
    EXPECT_EQ(lines(nextAlert()), u"Nothing changed.");
    world.alerts.userChooses(0);
    EXPECT_TRUE(isAsBefore());
    EXPECT_TRUE(world.snapshots.list(false).isEmpty());

    // "a" is not in the document, which is newer; "b" is there in no group.
    controller.performFileSync(document("g[] b x"));
    Alert asked = nextAlert();
    EXPECT_EQ(asked.buttons.size(), 3);
    EXPECT_EQ(asked.escapeButton, 1);
    world.alerts.userChooses(1);
    EXPECT_TRUE(isAsBefore());

    // From the settings the changes are shown at once; "a" is to stay.
    drop({write("a.ovexport", document("g[b] x"))});
    userChoosesMode(u"importSync"_s);
    auto *sheet = nextDialog<SyncPreviewView>();
    ASSERT_TRUE(sheet);
    auto *model = sheet->findChild<QTreeView *>(u"syncChanges"_s)->model();
    ASSERT_EQ(model->rowCount(), 2) << "new and removed";
    EXPECT_TRUE(model->setData(model->index(1, 0), Qt::Unchecked, Qt::CheckStateRole));
    sheet->findChild<QPushButton *>(u"syncApply"_s)->click();
    EXPECT_EQ(lines(nextAlert()), u"Added: 1");
    EXPECT_EQ(shown(), u"a g[b] x");
    EXPECT_EQ(settings.menuletIcon, u"star") << "settings are not part of it";
    EXPECT_TRUE(world.links.undo());
    EXPECT_TRUE(isAsBefore());
}

TEST_F(ExchangeControllerTest, DoesNotUndoWhatCameAfterTheImport)
{
    controller.performFileImport(document("x"), ExchangeImporter::Mode::Merge);
    static_cast<void>(nextAlert());
    world.links.addLink(namedLink(u"later"_s));
    world.alerts.userChooses(1);
    EXPECT_EQ(shown(), u"a g[b] x later");
    EXPECT_TRUE(nextAlert().informativeText.contains(u"have changed since"));
}

TEST_F(ExchangeControllerTest, ImportsBookmarksAndLinkFilesAsOneStep)
{
    const QString bookmarks =
        write("My marks.html", "<!DOCTYPE NETSCAPE-Bookmark-file-1><DL><DT><A HREF=https://p.example>p</A>"
                               "<DT><A HREF=javascript:x>j</A><DT><A HREF=https://q.example>q</A></DL>");
    drop({bookmarks});
    const Alert alert = nextAlert();
    EXPECT_EQ(shown(), u"a g[b] My marks[p q]");
    EXPECT_TRUE(lines(alert).endsWith(u"addresses left out: 1")) << alert.informativeText.toStdString();
    world.alerts.userChooses(1);
    EXPECT_TRUE(isAsBefore());

    QDir(world.folder.path()).mkdir(u"Saved"_s);
    const QString one = write("Saved/one.url", "[InternetShortcut]\nURL=https://one.example\n");
    drop({world.folder.filePath(u"Saved"_s)});
    static_cast<void>(nextAlert());
    EXPECT_EQ(shown(), u"a g[b] one");
    world.alerts.userChooses(1);
    EXPECT_TRUE(isAsBefore());
}

TEST_F(ExchangeControllerTest, KnowsWhatIsNoDocument)
{
    const std::pair<const char *, QByteArray> cases[] = {
        {"notes.txt", "text"}, {"picture.png", "\x89PNG"}, {"page.html", "<html><p>hello"}, {"empty", ""}};
    for (const auto &[name, content] : cases)
        EXPECT_EQ(restOf({write(name, content)}).size(), 1) << name;
    QDir(world.folder.path()).mkdir(u"plain"_s);
    const QStringList plain{world.folder.filePath(u"plain"_s), u"/missing"_s};
    EXPECT_EQ(restOf(plain), plain);
    // Beside a document, too.
    EXPECT_EQ(restOf({plain[0], write("beside.ovexport", document("x")), plain[1]}), plain);
    nextDialog<ImportDialog>()->reject();
    // The name says nothing, the content does.
    drop({write("backup", document("x"))});
    nextDialog<ImportDialog>()->reject();
}

TEST_F(ExchangeControllerTest, ExportsWhatItImportsAgain)
{
    const QString path = world.folder.filePath(u"out.ovexport"_s);
    QString suggested;
    controller.exportDocument(&window);
    userSavesAs(path, &suggested);
    EXPECT_EQ(suggested,
              u"Orvelle %1.ovexport"_s.arg(world.clock.now().toDateTime().toLocalTime().date().toString(Qt::ISODate)));
    EXPECT_EQ(lines(nextAlert()), u"Items exported: 3");
    EXPECT_EQ(QFile::permissions(path) & ~(QFile::ReadUser | QFile::WriteUser), QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_EQ(world.defaults.get<QString>(ExchangeFiles::lastFolderKey()), world.folder.path());

    world.addNote("n", "text");
    controller.exportBookmarks(&window);
    userSavesAs(world.folder.filePath(u"out.html"_s));
    EXPECT_TRUE(nextAlert().informativeText.contains(u"Notes"));
    QFile html(world.folder.filePath(u"out.html"_s));
    ASSERT_TRUE(html.open(QFile::ReadOnly));
    const auto again = readBookmarksHtml(html.readAll(), world.clock.now());
    ASSERT_TRUE(again);
    EXPECT_EQ(outlineOf(again->items), u"a g[b]");

    controller.exportDocument(&window);
    userSavesAs(world.folder.filePath(u"no/such/out.ovexport"_s));
    EXPECT_EQ(nextAlert().style, Alert::Style::Warning);
}

/// Work that goes on until it is cancelled or let go.
struct SlowWork {
    QSemaphore letGo;
    bool finished = false;

    BackgroundWork::Work work()
    {
        return [this](WorkProgress &progress) -> BackgroundWork::Finish {
            progress.permille = 420;
            while (!progress.cancelled && !letGo.tryAcquire(1, 5)) {
            }
            return [this] { finished = true; };
        };
    }
};

TEST_F(ExchangeControllerTest, LongWorkShowsItselfAndCanBeCancelled)
{
    SlowWork slow;
    BackgroundWork::start(&controller, &window, world.clock, u"Working"_s, slow.work());
    const auto works = [this] { return controller.findChildren<BackgroundWork *>().size(); };
    const auto dialog = [] {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *found = qobject_cast<ProgressDialog *>(widget); found && found->isVisible())
                return found;
        }
        return static_cast<ProgressDialog *>(nullptr);
    };
    world.clock.advance(999ms);
    EXPECT_FALSE(dialog());
    world.clock.advance(1ms);
    ASSERT_TRUE(dialog());
    dialog()->reject();
    EXPECT_TRUE(QTest::qWaitFor([&] { return works() == 0; }));
    EXPECT_FALSE(slow.finished);
    EXPECT_FALSE(dialog());

    BackgroundWork::start(&controller, &window, world.clock, u"Working"_s, slow.work());
    slow.letGo.release();
    EXPECT_TRUE(QTest::qWaitFor([&] { return slow.finished; }));
    EXPECT_FALSE(dialog());
}

TEST_F(ExchangeControllerTest, WorkThatHangsHoldsUpNobody)
{
    const auto letGo = std::make_shared<QSemaphore>();
    const auto ended = std::make_shared<QSemaphore>();
    const auto hang = [letGo, ended](WorkProgress &) -> BackgroundWork::Finish {
        letGo->acquire();
        ended->release();
        return [] { ADD_FAILURE() << "nobody waits for it any more"; };
    };
    auto owner = std::make_unique<QObject>();
    BackgroundWork::start(owner.get(), &window, world.clock, u"Working"_s, hang);
    owner.reset();
    letGo->release();
    ended->acquire();
    QApplication::processEvents();
}

} // namespace
} // namespace orvelle::test
