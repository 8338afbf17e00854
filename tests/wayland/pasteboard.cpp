#include "desktop/PasteboardTools.h"
#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/wayland/WaylandPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QRasterWindow>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

/// Another program that copies.
class OtherProgram : public CopyingProgram
{
public:
    OtherProgram(const QByteArray &content, const QString &type)
        : CopyingProgram(u"wl-copy"_s, {u"--foreground"_s, u"--type"_s, type}, content)
    {
    }
};

/// What another program gets when it pastes.
QByteArray pasted(const QString &type)
{
    return printed(u"wl-paste"_s, {u"--no-newline"_s, u"--type"_s, type});
}

class WaylandPasteboardTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(pasteboard) << "the compositor has no data-control"; }

    bool changes(qint64 before) const { return reader.changes(before); }
    Result<QStringList, PasteboardError> types() { return reader.types(); }
    Result<QByteArray, PasteboardError> data(const QString &type, qint64 most = 50 * megabyte)
    {
        return reader.data(type, most);
    }

    SystemClock clock;
    std::unique_ptr<WaylandPasteboard> pasteboard = WaylandPasteboard::open(clock);
    PasteboardReader reader{*pasteboard};
};

TEST_F(WaylandPasteboardTest, ReadsWhatOtherProgramsCopy)
{
    const struct {
        QString offered;
        QByteArray content;
        QString asked;
        QByteArray expected;
    } cases[] = {
        {u"text/plain;charset=utf-8"_s, "h\xc3\xa9", u"text/plain"_s, "h\xc3\xa9"},
        {u"text/rtf"_s, "{\\rtf1 x}", u"text/rtf"_s, "{\\rtf1 x}"},
        {u"image/png"_s, manyBytes(20 * megabyte), u"image/png"_s, manyBytes(20 * megabyte)},
    };
    for (const auto &each : cases) {
        const qint64 before = pasteboard->changeCount();
        const OtherProgram program(each.content, each.offered);
        ASSERT_TRUE(changes(before)) << qPrintable(each.offered);
        const auto offered = types();
        ASSERT_TRUE(offered);
        EXPECT_TRUE(offered->contains(each.asked)) << qPrintable(each.offered);
        const auto content = data(each.asked);
        ASSERT_TRUE(content) << qPrintable(each.offered);
        EXPECT_TRUE(*content == each.expected) << qPrintable(each.offered) << content->size();
    }
}

TEST_F(WaylandPasteboardTest, RefusesWhatItShouldNotRead)
{
    {
        const qint64 before = pasteboard->changeCount();
        const OtherProgram program(manyBytes(3 * megabyte), u"image/png"_s);
        ASSERT_TRUE(changes(before));
        const auto tooLarge = data(u"image/png"_s, megabyte);
        ASSERT_FALSE(tooLarge);
        EXPECT_EQ(tooLarge.error().kind, PasteboardError::Kind::TooLarge);
        const auto otherForm = data(u"image/tiff"_s);
        ASSERT_FALSE(otherForm);
        EXPECT_EQ(otherForm.error().kind, PasteboardError::Kind::Refused);
        program.freeze();
        const auto silent = data(u"image/png"_s);
        ASSERT_FALSE(silent);
        EXPECT_EQ(silent.error().kind, PasteboardError::Kind::TimedOut);
    }
    const qint64 before = pasteboard->changeCount();
    EXPECT_TRUE(waitFor([this] { return !types(); })) << "its owner has ended";
    EXPECT_EQ(pasteboard->changeCount(), before) << "which is no copying";
}

TEST_F(WaylandPasteboardTest, WritesWhatOtherProgramsPaste)
{
    const QByteArray picture = manyBytes(8 * megabyte);
    const qint64 before = pasteboard->changeCount();
    pasteboard->write({{u"text/plain"_s, "caf\xc3\xa9"}, {u"text/rtf"_s, "{\\rtf1 x}"}, {u"image/png"_s, picture}});
    ASSERT_TRUE(changes(before));
    for (const auto &type : {u"text/plain"_s, u"UTF8_STRING"_s, u"text/plain;charset=utf-8"_s})
        EXPECT_EQ(pasted(type), "caf\xc3\xa9") << qPrintable(type);
    EXPECT_EQ(pasted(u"STRING"_s), "caf\xe9") << "which is Latin-1";
    EXPECT_EQ(pasted(u"text/rtf"_s), "{\\rtf1 x}");
    EXPECT_TRUE(pasted(u"image/png"_s) == picture);
    EXPECT_EQ(data(u"text/plain"_s).value(), "caf\xc3\xa9") << "its own, over the compositor";

    pasteboard->write({{u"text/plain"_s, "second"}});
    EXPECT_TRUE(waitFor([] { return pasted(u"text/plain"_s) == "second"; }));
    pasteboard->write({});
    EXPECT_TRUE(waitFor([this] { return !types(); }));
}

// The toolkit waits for the owner's answer on the main thread, also where the
// owner is this program.
TEST_F(WaylandPasteboardTest, AnswersWhileTheMainThreadWaits)
{
    const QByteArray picture = manyBytes(5 * megabyte + 3);
    const qint64 before = pasteboard->changeCount();
    pasteboard->write({{u"image/png"_s, picture}, {u"text/plain"_s, "h\xc3\xa9"}});
    ASSERT_TRUE(changes(before));
    const std::pair<QString, QByteArray> cases[] = {{u"UTF8_STRING"_s, "h\xc3\xa9"}, {u"image/png"_s, picture}};
    for (const auto &[type, content] : cases) {
        QProcess other;
        other.start(u"wl-paste"_s, {u"--no-newline"_s, u"--type"_s, type});
        ASSERT_TRUE(other.waitForFinished(10'000)) << qPrintable(type);
        EXPECT_TRUE(other.readAllStandardOutput() == content) << qPrintable(type);
    }

    QRasterWindow window;
    window.resize(200, 100);
    window.show();
    const QClipboard &toolkits = *QGuiApplication::clipboard();
    ASSERT_TRUE(waitFor([&toolkits] { return toolkits.mimeData() && toolkits.mimeData()->hasText(); }))
        << "the compositor tells the window with the focus";
    EXPECT_EQ(toolkits.text(), u"h\u00e9"_s);
}

TEST_F(WaylandPasteboardTest, AReaderThatGoesAwayHarmsNobody)
{
    const qint64 before = pasteboard->changeCount();
    pasteboard->write({{u"image/png"_s, manyBytes(8 * megabyte)}});
    ASSERT_TRUE(changes(before));
    QProcess shell;
    shell.start(u"sh"_s, {u"-c"_s, u"wl-paste --type image/png | head -c 10 | wc -c"_s});
    EXPECT_TRUE(waitFor([&shell] { return shell.state() == QProcess::NotRunning; }));
    EXPECT_EQ(shell.readAllStandardOutput().trimmed(), "10");
    EXPECT_EQ(pasted(u"image/png"_s).size(), 8 * megabyte) << "it goes on";
}

} // namespace
} // namespace orvelle::test
