#include "base/Text.h"
#include "support/FakePasteboard.h"
#include "support/LogCapture.h"
#include "widgets/WidgetWorld.h"
#include "widgets/clipboard/ClipboardEntries.h"
#include "widgets/clipboard/ClipboardImages.h"
#include "widgets/clipboard/ClipboardManager.h"
#include "widgets/clipboard/ClipboardTypes.h"

#include <QBuffer>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Forms = QList<PasteboardItem>;
using Kind = ClipboardPayload::Kind;

PasteboardItem form(const char *type, const QByteArray &data)
{
    return {QString::fromLatin1(type), data};
}

QByteArray picture(const char *format, QRgb color, QSize size = {60, 30})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

class ClipboardTest : public testing::Test
{
protected:
    ClipboardTest() { store(u"ClipboardEnabled"_s, true); }
    void store(const QString &key, const DefaultsValue &value) { static_cast<void>(world.defaults.write(key, value)); }
    void start()
    {
        manager.emplace(ClipboardManager::Services{
            world.defaults, world.debugMode, world.notifications, world.power, world.clock, pasteboard, cache,
            [](const QByteArray &rtf) { return QString::fromUtf8(rtf).section(u' ', 1).chopped(1); }});
        manager->startMonitoring();
    }
    /// Until what was found is recorded.
    void check()
    {
        manager->checkNow();
        settle();
    }
    void settle() const
    {
        QElapsedTimer passed;
        passed.start();
        do
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        while (manager->isReading() && passed.elapsed() < 20'000);
    }
    void copy(const Forms &forms)
    {
        pasteboard.otherAppCopies(forms);
        check();
    }
    void copy(const QString &text)
    {
        pasteboard.otherAppCopies(text);
        check();
    }
    void restore(qsizetype number, ClipboardManager::PasteAs as = ClipboardManager::PasteAs::Copied)
    {
        const qint64 before = pasteboard.changeCount();
        const ClipboardEntry entry = manager->clipboardHistory().at(number);
        manager->writeToPasteboard(entry, as);
        const qint64 expected = before + (entry.payload.kind == Kind::Image ? 2 : 1);
        QElapsedTimer passed;
        passed.start();
        while (pasteboard.changeCount() < expected && passed.elapsed() < 1000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    QString shown() const
    {
        QStringList texts;
        for (const ClipboardEntry &entry : manager->clipboardHistory())
            texts += entry.displayText;
        return texts.join(u'|');
    }
    const ClipboardEntry &first() const { return manager->clipboardHistory().constFirst(); }
    QStringList cachedFiles() const { return QDir(cache.directory()).entryList(QDir::Files); }

    QTemporaryDir folder;
    ClipboardCache cache{{folder.path()}};
    WidgetWorld world{&Notifications::clipboardChanged};
    FakePasteboard pasteboard{world.clock};
    std::optional<ClipboardManager> manager;
};

TEST_F(ClipboardTest, TheFirstRuleThatAppliesMakesTheEntry)
{
    start();
    const QByteArray png = picture("PNG", 0xff0000);
    const QByteArray files = "file:///home/ada/a%20b.txt\r\nfile:///home/ada/c.txt\r\n";
    struct {
        const char *name;
        Forms forms;
        const char *id; ///< what it begins with
        QString text;
        const char *icon;
        bool pasteable;
    } const cases[] = {
        {"rtfd before all",
         {form("com.apple.flat-rtfd", "x"), form("text/rtf", "{\\rtf1 a}")},
         "rtfd:2d711642b726b04401627ca9fbac32f5c8530fb1903cc4db02258717921a4881",
         text("clipboard.typeRTF"_text),
         "doc.richtext",
         true},
        {"rtf with text beside it",
         {form("text/plain", "hello"), form("text/rtf", "{\\rtf1 hello}")},
         "rtf:",
         u"hello"_s,
         "doc.richtext",
         true},
        {"blank rtf", {form("text/rtf", "{\\rtf1   }")}, "rtf:", text("clipboard.typeRTF"_text), "doc.richtext", true},
        {"png before text",
         {form("text/html", "<img>"), form("text/plain", "x"), form("image/png", png)},
         "image:",
         text("clipboard.typeImage"_text),
         "photo",
         true},
        {"text of a page",
         {form("text/html", "<b>x</b>"), form("text/plain", "x")},
         "plain:",
         u"x"_s,
         "doc.plaintext",
         true},
        {"a browser's link",
         {form("text/x-moz-url", QByteArray("h\0t\0t\0p\0:\0/\0/\0a\0\n\0A\0", 20))},
         "url:http://a",
         u"http://a"_s,
         "link",
         true},
        {"an address",
         {form("text/uri-list", "https://example.org/\r\n")},
         "url:https://example.org/",
         u"https://example.org/"_s,
         "link",
         true},
        {"an address with its text",
         {form("text/uri-list", "https://a.org/"), form("text/plain", "https://a.org/")},
         "plain:",
         u"https://a.org/"_s,
         "doc.plaintext",
         true},
        {"pdf", {form("application/pdf", "%PDF-1.4")}, "pdf:", u"PDF"_s, "doc.text", true},
        {"one file",
         {form("text/uri-list", "file:///home/ada/a%20b.txt"), form("text/plain", "/home/ada/a b.txt")},
         "file:/home/ada/a b.txt",
         u"a b.txt"_s,
         "doc",
         true},
        {"cut files",
         {form("x-special/gnome-copied-files", "cut\nfile:///home/ada/a%20b.txt\nfile:///home/ada/c.txt")},
         "files:/home/ada/a b.txt\n/home/ada/c.txt",
         text("clipboard.typeFiles "_text) + u'2',
         "doc.on.doc",
         true},
        {"files that cannot be read",
         {form("x-special/gnome-copied-files", "copy\nsmb://host/x")},
         "file:unknown:",
         text("clipboard.typeFile"_text),
         "doc",
         false},
        {"anything else",
         {form("application/x-color", "x")},
         "other:",
         text("clipboard.typeOther"_text),
         "square.on.square",
         false},
        {"empty text", {form("text/plain", "")}, "other:", text("clipboard.typeOther"_text), "square.on.square", false},
    };
    for (const auto &each : cases) {
        manager->clearHistory();
        copy(each.forms);
        ASSERT_EQ(manager->clipboardHistory().size(), 1) << each.name;
        EXPECT_TRUE(first().id.startsWith(QString::fromLatin1(each.id))) << each.name << ' ' << qPrintable(first().id);
        EXPECT_EQ(first().displayText, each.text) << each.name;
        EXPECT_EQ(first().iconName, QString::fromLatin1(each.icon)) << each.name;
        EXPECT_EQ(first().payload.isPasteable(), each.pasteable) << each.name;
        copy(Forms(each.forms));
        EXPECT_EQ(manager->clipboardHistory().size(), 1) << each.name << ": the same content is one entry";
    }
}

TEST_F(ClipboardTest, ContentsAreReadOnlyWhenTheCountHasMoved)
{
    pasteboard.otherAppCopies(u"before"_s);
    start();
    world.clock.advance(60s);
    settle();
    EXPECT_TRUE(pasteboard.asked.isEmpty()) << "what was there at the start is not looked at";
    pasteboard.otherAppCopies(u"a"_s);
    world.clock.advance(9999ms);
    EXPECT_TRUE(pasteboard.asked.isEmpty());
    world.clock.advance(1ms);
    settle();
    EXPECT_EQ(shown(), u"a");
    EXPECT_EQ(pasteboard.asked.join(u' '), u"types text/plain");
    pasteboard.asked.clear();
    world.clock.advance(24h);
    EXPECT_TRUE(pasteboard.asked.isEmpty());
    EXPECT_EQ(world.changes, 1);

    world.power.screensGoDark();
    pasteboard.otherAppCopies(u"in the dark"_s);
    world.clock.advance(60s);
    world.power.screensComeBack();
    world.clock.advance(60s);
    settle();
    EXPECT_EQ(shown(), u"a");
    copy(u"after"_s);
    EXPECT_EQ(shown(), u"after|a");
}

TEST_F(ClipboardTest, TenEntriesNewestFirst)
{
    start();
    copy({form("image/png", picture("PNG", 1))});
    const QString path = first().payload.path;
    for (int i = 1; i <= 9; ++i)
        copy(QString::number(i));
    copy(u"5"_s);
    EXPECT_EQ(shown(), u"5|9|8|7|6|4|3|2|1|"_s + text("clipboard.typeImage"_text));
    EXPECT_TRUE(QFile::exists(path));
    copy(u"10"_s);
    EXPECT_EQ(shown(), u"10|5|9|8|7|6|4|3|2|1");
    EXPECT_FALSE(QFile::exists(path)) << "the file goes with its entry";
    manager->forget(manager->clipboardHistory().at(1).id);
    EXPECT_EQ(shown(), u"10|9|8|7|6|4|3|2|1");
}

TEST_F(ClipboardTest, ImagesAreFilesWithAThumbnail)
{
    start();
    const QByteArray png = picture("PNG", 0x00ff00);
    struct {
        Forms forms;
        const char *suffix;
        QByteArray restored; ///< empty: any PNG
    } const cases[] = {
        {{form("image/png", png), form("image/tiff", "x")}, ".png", png},
        {{form("image/tiff", "not really")}, ".tiff", "not really"},
        {{form("image/bmp", picture("BMP", 0x00ff00))}, ".png", {}},
    };
    for (const auto &each : cases) {
        manager->clearHistory();
        copy(each.forms);
        ASSERT_EQ(manager->clipboardHistory().size(), 1);
        EXPECT_TRUE(first().payload.path.endsWith(QLatin1StringView(each.suffix)));
        EXPECT_EQ(QFile::permissions(first().payload.path) & (QFile::ReadGroup | QFile::ReadOther), 0);
        restore(0);
        const QString type = first().payload.type;
        EXPECT_TRUE(each.restored.isEmpty() ? pasteboard.content(type).startsWith("\x89PNG")
                                            : pasteboard.content(type) == each.restored);
        check();
        EXPECT_EQ(manager->clipboardHistory().size(), 1);
        EXPECT_EQ(cachedFiles().size(), 1);
    }
    const QImage thumbnail = first().thumbnail;
    EXPECT_EQ(thumbnail.deviceIndependentSize(), QSizeF(32, 32));
    EXPECT_EQ(thumbnail.pixelColor(32, 32), QColor(0, 255, 0));
    EXPECT_EQ(thumbnail.pixelColor(32, 2).alpha(), 0) << "fitted, not stretched";
    EXPECT_TRUE(ClipboardImages::thumbnail(picture("PNG", 1, {8193, 4097})).isNull()) << "too many pixels";
    const QByteArray drawing =
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"><rect width="9" height="9"/></svg>)";
    EXPECT_TRUE(ClipboardImages::thumbnail(drawing).isNull()) << "no bitmap";

    QFile::remove(first().payload.path);
    restore(0);
    EXPECT_TRUE(pasteboard.content().isEmpty()) << "the file has gone: cleared, and nothing written";
}

TEST_F(ClipboardTest, TheLimitOfImagesIsExact)
{
    start();
    const LogCapture log;
    copy({form("image/tiff", QByteArray(ClipboardManager::maxImageBytes, 'x'))});
    EXPECT_EQ(manager->clipboardHistory().size(), 1);
    copy({form("image/tiff", QByteArray(ClipboardManager::maxImageBytes + 1, 'x'))});
    EXPECT_EQ(manager->clipboardHistory().size(), 1);
    EXPECT_TRUE(log.contains(u"Clipboard: Skipping clipboard image: 52428801 bytes exceeds limit"_s));
    pasteboard.asked.clear();
    check();
    EXPECT_TRUE(pasteboard.asked.isEmpty()) << "it is not looked at again";
}

TEST_F(ClipboardTest, AnImageThatCannotBeKeptIsSkipped)
{
    start();
    QDir(cache.directory()).removeRecursively();
    QFile inTheWay(cache.directory());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    const LogCapture log;
    copy({form("image/png", picture("PNG", 1))});
    EXPECT_TRUE(manager->clipboardHistory().isEmpty());
    EXPECT_TRUE(log.lines().join(u'\n').contains(u"Clipboard: Failed to write clipboard image to cache: "_s));
}

TEST_F(ClipboardTest, RestoresWhatWasCopied)
{
    start();
    copy({form("text/plain", " bold "), form("text/rtf", "{\\rtf1 bold}")});
    copy({form("text/uri-list", "file:///home/ada/a%20b"), form("text/plain", "/home/ada/a b")});
    copy(u"text"_s);
    restore(2);
    EXPECT_EQ(pasteboard.content(u"text/rtf"_s), "{\\rtf1 bold}");
    EXPECT_EQ(pasteboard.content(u"text/plain"_s), " bold ");
    check();
    EXPECT_EQ(shown(), u"bold|text|a b") << "restored, it is the newest";
    restore(0, ClipboardManager::PasteAs::PlainText);
    EXPECT_EQ(pasteboard.content(), Forms{form("text/plain", " bold ")});
    restore(2);
    EXPECT_EQ(pasteboard.content(u"text/uri-list"_s), "file:///home/ada/a%20b\r\n");
    EXPECT_EQ(pasteboard.content(u"x-special/gnome-copied-files"_s), "copy\nfile:///home/ada/a%20b");
    EXPECT_EQ(pasteboard.content(u"text/plain"_s), "/home/ada/a b");
    restore(1);
    EXPECT_EQ(pasteboard.content(u"text/plain"_s), "text");
    copy({form("application/x-color", "x")});
    restore(0);
    EXPECT_TRUE(pasteboard.content().isEmpty());
}

TEST_F(ClipboardTest, ASecretIsNeverRead)
{
    start();
    const QByteArray canary = "CANARY-7f3a91";
    const LogCapture log;
    for (const char *mark :
         {"x-kde-passwordManagerHint", "application/x-kde-passwordmanagerhint", "org.nspasteboard.ConcealedType",
          "application/x-nspasteboard-concealed-type", "org.nspasteboard.TransientType",
          "de.petermaurer.TransientPasteboardType", "com.agilebits.onepassword",
          "ExcludeClipboardContentFromMonitorProcessing", "Clipboard Viewer Ignore"}) {
        copy({form("text/plain", canary), form("text/rtf", canary), form(mark, "secret")});
        EXPECT_TRUE(manager->clipboardHistory().isEmpty()) << mark;
        EXPECT_EQ(pasteboard.asked, QStringList(u"types"_s)) << mark;
        pasteboard.asked.clear();
    }
    // What is not marked is kept from logs, settings and files all the same.
    copy({form("text/plain", canary), form("text/rtf", "{\\rtf1 " + canary + "}")});
    EXPECT_EQ(manager->clipboardHistory().size(), 1);
    EXPECT_FALSE(log.lines().join(u'\n').contains(QLatin1StringView(canary)));
    EXPECT_TRUE(cachedFiles().isEmpty());
    EXPECT_EQ(world.defaults.keys(), QStringList(u"ClipboardEnabled"_s));
    EXPECT_TRUE(world.alerts.shown.isEmpty());
}

TEST_F(ClipboardTest, WhatComesInBetweenIsNotTaken)
{
    start();
    pasteboard.otherAppCopies(u"first"_s);
    manager->checkNow();
    pasteboard.otherAppCopies({form("text/plain", "marked"), form("x-kde-passwordManagerHint", "secret")});
    settle();
    EXPECT_EQ(shown(), u"");
    check();
    EXPECT_EQ(shown(), u"") << "and by then the mark is seen";
}

TEST_F(ClipboardTest, AnOwnerThatNeverAnswersIsGivenUp)
{
    start();
    pasteboard.otherAppCopies(u"lost"_s);
    pasteboard.ownerNeverAnswers();
    manager->checkNow();
    world.clock.advance(1999ms);
    EXPECT_TRUE(manager->isReading());
    world.clock.advance(1ms);
    EXPECT_FALSE(manager->isReading());
    copy(u"next"_s);
    EXPECT_EQ(shown(), u"next");
}

// A picture is read from its file first, which can take a moment.
TEST_F(ClipboardTest, APictureThatIsChosenTakesNobodysPlaceLater)
{
    start();
    copy(u"text"_s);
    copy({form("image/png", picture("PNG", 1))});
    const ClipboardEntry image = first();
    const ClipboardEntry text = manager->clipboardHistory().at(1);
    for (const bool isOther : {true, false}) {
        const qint64 before = pasteboard.changeCount();
        manager->writeToPasteboard(image);
        if (isOther)
            pasteboard.otherAppCopies(u"newer"_s);
        else
            manager->writeToPasteboard(text);
        copy({form("image/png", picture("PNG", isOther ? 2 : 3))}); // read after the one that was chosen
        EXPECT_EQ(pasteboard.changeCount(), before + 3) << isOther;
    }
}

TEST_F(ClipboardTest, OffPausedAndCleared)
{
    start();
    copy(u"a"_s);
    copy({form("image/png", picture("PNG", 1))});
    manager->setPaused(true);
    copy(u"while paused"_s);
    world.clock.advance(60s);
    manager->setPaused(false);
    check();
    EXPECT_EQ(manager->clipboardHistory().size(), 2);
    copy(u"b"_s);
    EXPECT_EQ(manager->clipboardHistory().size(), 3);
    pasteboard.otherAppCopies(u"on its way"_s);
    manager->checkNow();
    manager->clearHistory();
    settle();
    EXPECT_EQ(shown(), u"");
    EXPECT_TRUE(cachedFiles().isEmpty());
    EXPECT_TRUE(QDir(cache.directory()).exists());

    copy({form("image/png", picture("PNG", 1))});
    world.changes = 0;
    manager->setEnabled(false);
    EXPECT_EQ(shown(), u"");
    EXPECT_TRUE(cachedFiles().isEmpty());
    EXPECT_GE(world.changes, 1);
    EXPECT_EQ(world.syncable, 1);
    copy(u"off"_s);
    world.clock.advance(60s);
    settle();
    EXPECT_EQ(shown(), u"");
    EXPECT_EQ(world.defaults.get<bool>(u"ClipboardEnabled"_s), false);
}

TEST_F(ClipboardTest, SettingsFollowImportsOtherProcessesAndDebugMode)
{
    static_cast<void>(world.defaults.remove(u"ClipboardEnabled"_s));
    start();
    EXPECT_FALSE(manager->isEnabled());
    EXPECT_FALSE(manager->menuBarOnly());
    EXPECT_EQ(manager->iconColor(), u"purple");
    // As an import does.
    store(u"ClipboardEnabled"_s, true);
    store(u"ClipboardIconColor"_s, u"blue"_s);
    emit world.notifications.clipboardChanged();
    EXPECT_EQ(manager->iconColor(), u"blue");
    copy(u"a"_s);
    EXPECT_EQ(shown(), u"a") << "it began to look by itself";
    world.changes = 0;
    manager->setIconColor(u"red"_s);
    manager->setMenuBarOnly(true);
    manager->setMenuBarOnly(true);
    EXPECT_EQ(world.changes, 2);
    EXPECT_EQ(world.syncable, 2);
    EXPECT_EQ(world.defaults.get<QString>(u"ClipboardIconColor"_s), u"red");
    world.defaults.otherProcessWrites(u"ClipboardEnabled"_s, false);
    world.defaults.announceOutsideChanges();
    EXPECT_FALSE(manager->isEnabled());
    EXPECT_EQ(shown(), u"");
}

TEST(ClipboardRow, TextsAreOneHarmlessLine)
{
    struct {
        const char16_t *copied;
        const char16_t *row;
    } const cases[] = {
        {u"plain", u"plain"},
        {u"\n\n  first\nsecond", u"first\u2026"},
        {u"a\tb\x1b[31mc\0d", u"a b[31mc"},
        {u"abc\u202Egnp.exe", u"abcgnp.exe"},
        {u"   ", u"\u2423\u2423\u2423"},
    };
    for (const auto &each : cases)
        EXPECT_EQ(rowText(QString::fromUtf16(each.copied)), QString::fromUtf16(each.row));
    EXPECT_LE(rowText(QString(1'000'000, u'x')).size(), 200);
}

TEST(ClipboardCacheTest, IsPrivateAndSweptAtBothEnds)
{
    const QTemporaryDir folder;
    const QString large = folder.path() + u"/large"_s;
    const QString small = folder.path() + u"/gone"_s;
    QDir().mkpath(large + u"/orvelle-clipboard"_s);
    QFile left(large + u"/orvelle-clipboard/left.png"_s);
    ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    {
        const ClipboardCache cache({small, large});
        EXPECT_EQ(cache.directory(), large + u"/orvelle-clipboard"_s) << "the first is not there";
        EXPECT_FALSE(left.exists()) << "what an earlier run left is gone";
        ASSERT_TRUE(cache.write("x", u"png"_s));
        EXPECT_EQ(QFileInfo(cache.directory()).permissions() & 0x077, 0);
    }
    EXPECT_FALSE(QFileInfo::exists(large + u"/orvelle-clipboard"_s));

    QDir().mkpath(folder.path() + u"/precious"_s);
    QFile precious(folder.path() + u"/precious/file"_s);
    ASSERT_TRUE(precious.open(QIODevice::WriteOnly));
    QFile::link(folder.path() + u"/precious"_s, large + u"/orvelle-clipboard"_s);
    const ClipboardCache cache({large});
    EXPECT_TRUE(precious.exists()) << "a link in its place leads nowhere";
}

} // namespace
} // namespace orvelle::test
