#include "desktop/PasteboardTools.h"
#include "platform/freedesktop/DesktopPasteboard.h"
#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/x11/XcbClipboardOwner.h"
#include "platform/freedesktop/x11/XcbPasteboard.h"
#include "support/LogCapture.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QTimer>

#include <gtest/gtest.h>

#include <csignal>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

/// Another program that copies, and answers until it is ended.
struct OtherProgram : CopyingProgram {
    OtherProgram(const QByteArray &content, const QString &type)
        : CopyingProgram(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s, type}, content)
    {
    }
};

/// A program that has copied something and never answers.
std::unique_ptr<XcbConnection> silentOwner()
{
    auto silent = XcbConnection::open({"CLIPBOARD"});
    const xcb_window_t window = xcb_generate_id(silent->raw());
    xcb_create_window(silent->raw(), XCB_COPY_FROM_PARENT, window, silent->root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(silent->raw(), window, silent->atom("CLIPBOARD"), XCB_CURRENT_TIME);
    xcb_flush(silent->raw());
    return silent;
}

/// What another program gets when it pastes.
QByteArray pasted(const QString &type)
{
    return printed(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s, type}, 10'000);
}

/// The longest times from one turn of the event loop to the next, in
/// milliseconds: on the wall, and as worked by this thread, which other
/// programs of a busy machine do not lengthen.
class Heartbeat
{
public:
    Heartbeat()
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            const qint64 now = worked();
            m_longest = std::max(m_longest, m_beat.restart());
            m_mostWork = std::max(m_mostWork, now - std::exchange(m_before, now));
        });
        m_beat.start();
        m_timer.start(5);
    }
    qint64 longest() const { return m_longest; }
    qint64 mostWork() const { return m_mostWork; }

private:
    static qint64 worked()
    {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return time.tv_sec * 1000 + time.tv_nsec / 1'000'000;
    }

    QTimer m_timer;
    QElapsedTimer m_beat;
    qint64 m_before = worked();
    qint64 m_longest = 0;
    qint64 m_mostWork = 0;
};

class PasteboardTest : public testing::Test
{
protected:
    bool changes(qint64 before) const { return reader.changes(before); }
    Result<QStringList, PasteboardError> types() { return reader.types(); }
    Result<QByteArray, PasteboardError> data(const QString &type, qint64 most = 50 * megabyte)
    {
        return reader.data(type, most);
    }

    SystemClock clock;
    XcbPasteboard pasteboard{clock};
    PasteboardReader reader{pasteboard};
};

/// An X server that ends before the test does.
class MortalServer
{
public:
    MortalServer() { start(); }
    ~MortalServer()
    {
        // Whoever waited for this one finds the next at once.
        qputenv("DISPLAY", m_former);
        kill();
    }
    void start()
    {
        m_process.start(u"Xvfb"_s, {QString::fromLatin1(m_display), u"-noreset"_s, u"-nolisten"_s, u"tcp"_s});
        qputenv("DISPLAY", m_display);
        ASSERT_TRUE(waitFor([] { return XcbConnection::open({}) != nullptr; }, 30'000));
    }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    void hang() { ::kill(pid_t(m_process.processId()), SIGSTOP); }

private:
    const QByteArray m_former = qgetenv("DISPLAY");
    // Far from those that the tests beside this one are given.
    const QByteArray m_display = ':' + QByteArray::number(20'000 + getpid() % 10'000);
    QProcess m_process;
};

TEST(PasteboardServerTest, IsJoinedAgainAfterItWasKilled)
{
    MortalServer server;
    SystemClock clock;
    QObject context;
    XcbPasteboard pasteboard(clock);
    const auto hearsOfCopies = [&pasteboard] {
        const qint64 before = pasteboard.changeCount();
        const auto other = silentOwner();
        return waitFor([&] { return pasteboard.changeCount() > before; }, 1000);
    };
    ASSERT_TRUE(waitFor(hearsOfCopies, 30'000));
    const auto gives = [&pasteboard](const QByteArray &text) {
        const qint64 before = pasteboard.changeCount();
        pasteboard.write({{u"text/plain"_s, text}});
        return waitFor([&] { return pasteboard.changeCount() > before; }) && pasted(u"UTF8_STRING"_s) == text;
    };
    EXPECT_TRUE(gives("before"));
    const auto other = silentOwner();
    std::optional<Result<QStringList, PasteboardError>> answer;
    pasteboard.types(&context, [&answer](const auto &given) { answer = given; });
    server.kill();
    EXPECT_TRUE(waitFor([&answer] { return answer.has_value(); }));
    EXPECT_FALSE(*answer);
    server.start();
    EXPECT_TRUE(waitFor(hearsOfCopies, 60'000));
    EXPECT_TRUE(gives("after"));
}

// A hung server holds the owner up wherever that is. What was left to itself
// then takes nobody's clipboard once it is let go.
TEST(PasteboardServerTest, EndsSoonWhereItHangs)
{
    SystemClock clock;
    const XcbPasteboard untouched(clock);
    const LogCapture log;
    for (const bool isConnected : {true, false}) {
        MortalServer server;
        XcbPasteboard pasteboard(clock);
        auto owner = std::make_unique<XcbClipboardOwner>();
        const auto isOwner = [&] {
            owner->write({{u"text/plain"_s, "lost"}});
            return waitFor([&pasteboard] { return pasteboard.changeCount() > 0; }, 1000);
        };
        ASSERT_TRUE(!isConnected || waitFor(isOwner, 30'000));
        server.hang();
        owner->write({{u"text/plain"_s, "later"}});
        QElapsedTimer passed;
        passed.start();
        owner.reset();
        EXPECT_LT(passed.elapsed(), 5000) << isConnected;
    }
    const QString nothing = u"Pasteboard: There is no X server that takes what was to be copied"_s;
    EXPECT_TRUE(waitFor([&log, &nothing] { return log.contains(nothing); }));
    EXPECT_EQ(untouched.changeCount(), 0);
}

TEST_F(PasteboardTest, ReadsWhatOtherProgramsCopy)
{
    struct {
        QString offered;
        QByteArray content;
        QString asked;
        QByteArray expected;
    } const cases[] = {
        {u"UTF8_STRING"_s, "h\xc3\xa9llo", u"text/plain"_s, "h\xc3\xa9llo"},
        {u"text/plain;charset=utf-8"_s, "h\xc3\xa9", u"text/plain"_s, "h\xc3\xa9"},
        {u"STRING"_s, "h\xe9", u"text/plain"_s, "h\xc3\xa9"},
        {u"text/rtf"_s, "{\\rtf1 x}", u"text/rtf"_s, "{\\rtf1 x}"},
        {u"image/png"_s, manyBytes(20 * megabyte), u"image/png"_s, manyBytes(20 * megabyte)},
    };
    for (const auto &each : cases) {
        const qint64 before = pasteboard.changeCount();
        const OtherProgram program(each.content, each.offered);
        ASSERT_TRUE(changes(before)) << qPrintable(each.offered);
        const auto offered = types();
        ASSERT_TRUE(offered);
        EXPECT_TRUE(offered->contains(each.asked)) << qPrintable(each.offered);
        const auto content = data(each.asked);
        ASSERT_TRUE(content) << qPrintable(each.offered);
        EXPECT_TRUE(*content == each.expected) << qPrintable(each.offered) << content->size();
        EXPECT_EQ(pasteboard.changeCount(), before + 1);
    }
}

TEST_F(PasteboardTest, AnOwnerThatNeverAnswersTimesOutAndFreezesNothing)
{
    const qint64 before = pasteboard.changeCount();
    const auto silent = silentOwner();
    ASSERT_TRUE(changes(before));
    const Heartbeat heart;
    QElapsedTimer passed;
    passed.start();
    const auto answer = types();
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error().kind, PasteboardError::Kind::TimedOut);
    EXPECT_GE(passed.elapsed(), 1900);
    EXPECT_LE(passed.elapsed(), 3500);
    EXPECT_LT(heart.longest(), 1000);

    const OtherProgram next("after", u"UTF8_STRING"_s);
    ASSERT_TRUE(changes(before + 1));
    ASSERT_TRUE(types());
    EXPECT_EQ(data(u"text/plain"_s).value(), "after") << "and the next one is read";
}

TEST_F(PasteboardTest, ReadsNoMoreThanAllowed)
{
    for (const qint64 allowed : {3 * megabyte - 1, 3 * megabyte}) {
        const qint64 before = pasteboard.changeCount();
        const OtherProgram program(manyBytes(3 * megabyte), u"image/png"_s);
        ASSERT_TRUE(changes(before));
        const auto content = data(u"image/png"_s, allowed);
        ASSERT_EQ(content.hasValue(), allowed == 3 * megabyte);
        const auto kind = content ? PasteboardError::Kind::TooLarge : content.error().kind;
        EXPECT_EQ(kind, PasteboardError::Kind::TooLarge);
    }
}

TEST_F(PasteboardTest, TheLargestContentFreezesNothing)
{
    const qint64 before = pasteboard.changeCount();
    const OtherProgram program(manyBytes(50 * megabyte), u"image/png"_s);
    ASSERT_TRUE(changes(before));
    const Heartbeat heart;
    const auto content = data(u"image/png"_s);
    EXPECT_LT(heart.mostWork(), 50);
    RecordProperty("most work in ms", int(heart.mostWork()));
    ASSERT_TRUE(content);
    EXPECT_EQ(content->size(), 50 * megabyte);
}

TEST_F(PasteboardTest, WhatIsCopiedIsGoneWithItsProgramAndNothingNewIsCounted)
{
    const qint64 before = pasteboard.changeCount();
    {
        const OtherProgram program("x", u"UTF8_STRING"_s);
        ASSERT_TRUE(changes(before));
    }
    EXPECT_EQ(types().error().kind, PasteboardError::Kind::Refused);
    EXPECT_EQ(pasteboard.changeCount(), before + 1);
}

TEST_F(PasteboardTest, GivesOtherProgramsWhatWasWritten)
{
    const QByteArray picture = manyBytes(5 * megabyte + 3);
    const qint64 before = pasteboard.changeCount();
    pasteboard.write({{u"text/rtf"_s, "{\\rtf1 h}"}, {u"image/png"_s, picture}, {u"text/plain"_s, "h\xc3\xa9"}});
    ASSERT_TRUE(changes(before));
    const QString targets = QString::fromUtf8(pasted(u"TARGETS"_s));
    for (const char *each : {"TARGETS", "MULTIPLE", "SAVE_TARGETS", "text/rtf", "image/png", "UTF8_STRING", "STRING"})
        EXPECT_TRUE(targets.split(u'\n').contains(QLatin1StringView(each))) << each;
    EXPECT_EQ(pasted(u"text/rtf"_s), "{\\rtf1 h}");
    EXPECT_EQ(pasted(u"UTF8_STRING"_s), "h\xc3\xa9");
    EXPECT_EQ(pasted(u"text/plain;charset=utf-8"_s), "h\xc3\xa9");
    EXPECT_EQ(pasted(u"STRING"_s), "h\xe9");
    EXPECT_TRUE(pasted(u"image/png"_s) == picture);
    ASSERT_TRUE(types());
    EXPECT_TRUE(data(u"image/png"_s).value() == picture) << "this program reads its own like another's";
    EXPECT_EQ(data(u"image/tiff"_s).error().kind, PasteboardError::Kind::Refused);

    const OtherProgram other("other", u"UTF8_STRING"_s);
    ASSERT_TRUE(changes(before + 1));
    EXPECT_EQ(pasted(u"UTF8_STRING"_s), "other");
    pasteboard.write({});
    ASSERT_TRUE(changes(before + 2));
    EXPECT_EQ(types().error().kind, PasteboardError::Kind::Refused) << "and empty is empty";
}

// The toolkit waits for the owner's answer on the main thread, also where the
// owner is this program.
TEST_F(PasteboardTest, AnswersWhileTheMainThreadWaits)
{
    const QByteArray picture = manyBytes(5 * megabyte + 3);
    const qint64 before = pasteboard.changeCount();
    pasteboard.write({{u"image/png"_s, picture}, {u"text/plain"_s, "h\xc3\xa9"}});
    ASSERT_TRUE(changes(before));
    const std::pair<QString, QByteArray> cases[] = {{u"UTF8_STRING"_s, "h\xc3\xa9"}, {u"image/png"_s, picture}};
    for (const auto &[type, content] : cases) {
        QProcess other;
        other.start(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s, type});
        ASSERT_TRUE(other.waitForFinished(10'000)) << qPrintable(type);
        EXPECT_TRUE(other.readAllStandardOutput() == content) << qPrintable(type);
    }
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"h\u00e9"_s);
}

/// Asks for several forms in one request (ICCCM 2.6.2).
class SeveralAtOnce
{
public:
    SeveralAtOnce() : m_x(XcbConnection::open({})), m_window(xcb_generate_id(m_x->raw()))
    {
        const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_x->raw(), XCB_COPY_FROM_PARENT, m_window, m_x->root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    }
    /// The targets that were answered; the last is not one that can be.
    QByteArrayList answered(const QByteArrayList &targets)
    {
        std::vector<quint32> pairs;
        for (const QByteArray &each : targets)
            pairs.insert(pairs.end(), {m_x->atom(each), m_x->atom("FOR " + each)});
        xcb_change_property(m_x->raw(), XCB_PROP_MODE_REPLACE, m_window, m_x->atom("WANTED"), m_x->atom("ATOM_PAIR"),
                            32, quint32(pairs.size()), pairs.data());
        xcb_convert_selection(m_x->raw(), m_window, m_x->atom("CLIPBOARD"), m_x->atom("MULTIPLE"), m_x->atom("WANTED"),
                              XCB_CURRENT_TIME);
        xcb_flush(m_x->raw());
        bool isTold = false;
        EXPECT_TRUE(waitFor([&] {
            while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_x->raw())})
                isTold = isTold || (event->response_type & 0x7f) == XCB_SELECTION_NOTIFY;
            return isTold;
        }));
        QByteArrayList result;
        const auto told = m_x->numbers(m_window, m_x->atom("WANTED"));
        for (std::size_t i = 0; i + 1 < told.size(); i += 2) {
            if (told[i + 1] != XCB_ATOM_NONE)
                result += targets.value(qsizetype(i / 2));
        }
        return result;
    }
    QByteArray content(const QByteArray &target)
    {
        const auto cookie =
            xcb_get_property(m_x->raw(), 0, m_window, m_x->atom("FOR " + target), XCB_GET_PROPERTY_TYPE_ANY, 0, 1024);
        const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_x->raw(), cookie, nullptr));
        return reply ? QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                                  xcb_get_property_value_length(reply.get()))
                     : QByteArray();
    }

private:
    std::unique_ptr<XcbConnection> m_x;
    xcb_window_t m_window;
};

TEST_F(PasteboardTest, GivesSeveralFormsInOneRequest)
{
    const qint64 before = pasteboard.changeCount();
    pasteboard.write({{u"text/html"_s, "<b>h\xc3\xa9</b>"}, {u"text/plain"_s, "h\xc3\xa9"}});
    ASSERT_TRUE(changes(before));
    SeveralAtOnce program;
    EXPECT_EQ(program.answered({"UTF8_STRING", "image/png", "STRING", "MULTIPLE", "text/html"}),
              QByteArrayList({"UTF8_STRING", "STRING", "text/html"}));
    EXPECT_EQ(program.content("UTF8_STRING"), "h\xc3\xa9");
    EXPECT_EQ(program.content("STRING"), "h\xe9");
    EXPECT_EQ(program.content("text/html"), "<b>h\xc3\xa9</b>");
}

/// The desktop's clipboard manager, as a program of its own.
class ClipboardManagerProgram
{
public:
    ClipboardManagerProgram()
    {
        m_process.start(QStringLiteral(CLIPBOARD_PROGRAM), {u"manager"_s});
        EXPECT_TRUE(hasSaid("ready"));
    }
    ~ClipboardManagerProgram()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    bool hasSaid(const QByteArray &line)
    {
        return waitFor([&] {
            m_said += m_process.readAllStandardOutput();
            return m_said.split('\n').contains(line);
        });
    }

private:
    QProcess m_process;
    QByteArray m_said;
};

// Each gets the window number of the one before it, often in the same
// millisecond of the server's.
TEST_F(PasteboardTest, CountsProgramsThatFollowOneAnotherAtOnce)
{
    for (int i = 0; i < 100; ++i) {
        const qint64 before = pasteboard.changeCount();
        const auto x = XcbConnection::open({"CLIPBOARD"});
        const xcb_window_t window = xcb_generate_id(x->raw());
        xcb_create_window(x->raw(), XCB_COPY_FROM_PARENT, window, x->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(x->raw(), window, x->atom("CLIPBOARD"), XCB_CURRENT_TIME);
        xcb_flush(x->raw());
        ASSERT_TRUE(changes(before)) << i;
    }
}

TEST_F(PasteboardTest, HandsOverToTheClipboardManagerAtItsEnd)
{
    const QByteArray picture = manyBytes(megabyte);
    ClipboardManagerProgram manager;
    auto ending = std::make_unique<XcbPasteboard>(clock);
    const qint64 before = pasteboard.changeCount();
    ending->write({{u"text/plain"_s, "first"}});
    ASSERT_TRUE(changes(before));
    EXPECT_EQ(pasted(u"UTF8_STRING"_s), "first");
    ending->write({{u"image/png"_s, picture}, {u"text/plain"_s, "kept"}}); // and ends at once
    ending.reset();
    EXPECT_TRUE(manager.hasSaid("saved 6")) << "a picture, and text in five forms";
    EXPECT_EQ(pasted(u"UTF8_STRING"_s), "kept");
    EXPECT_TRUE(pasted(u"image/png"_s) == picture);
}

TEST_F(PasteboardTest, EndsAtOnceWithoutAManagerAndSoonWithOneThatHangs)
{
    struct {
        bool hasManager;
        qint64 most; ///< milliseconds
    } const cases[] = {{false, 500}, {true, 1900}};
    const auto silent = XcbConnection::open({});
    for (const auto &each : cases) {
        if (each.hasManager) {
            const xcb_window_t window = xcb_generate_id(silent->raw());
            xcb_create_window(silent->raw(), XCB_COPY_FROM_PARENT, window, silent->root(), 0, 0, 1, 1, 0,
                              XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
            xcb_set_selection_owner(silent->raw(), window, silent->atom("CLIPBOARD_MANAGER"), XCB_CURRENT_TIME);
            xcb_flush(silent->raw());
        }
        auto ending = std::make_unique<XcbPasteboard>(clock);
        const qint64 before = pasteboard.changeCount();
        ending->write({{u"text/plain"_s, "lost"}});
        ASSERT_TRUE(changes(before));
        QElapsedTimer passed;
        passed.start();
        ending.reset();
        EXPECT_LT(passed.elapsed(), each.most) << each.hasManager;
    }
}

// The session's X server may only run once somebody wants it.
TEST(PasteboardOnWaylandTest, JoinsTheXServerAtTheFirstUse)
{
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("WAYLAND_DISPLAY", "wayland-of-a-test");
    qputenv("DISPLAY", ":4711");
    SystemClock clock;
    const LogCapture log;
    const auto pasteboard = desktopPasteboard(clock);
    const QString tried = u"Pasteboard: There is no X server; the clipboard cannot be read here"_s;
    EXPECT_FALSE(log.contains(tried));
    EXPECT_EQ(pasteboard->changeCount(), 0);
    EXPECT_TRUE(log.contains(tried));
    qunsetenv("WAYLAND_DISPLAY");
    qputenv("DISPLAY", display);
}

} // namespace
} // namespace orvelle::test
