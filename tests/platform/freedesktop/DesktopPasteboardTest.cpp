#include "platform/freedesktop/DesktopPasteboard.h"

#include "support/FakeClock.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

/// The environment as it was, at the end.
class Variable
{
public:
    Variable(const char *name, const QByteArray &value) : m_name(name), m_former(qgetenv(name))
    {
        value.isNull() ? qunsetenv(name) : qputenv(name, value);
    }
    ~Variable() { m_former.isNull() ? qunsetenv(m_name) : qputenv(m_name, m_former); }
    Q_DISABLE_COPY_MOVE(Variable)

private:
    const char *m_name;
    QByteArray m_former;
};

TEST(DesktopPasteboardTest, SaysWhereNothingCanBeRead)
{
    // Nobody is there; a compositor without data-control looks the same.
    const QByteArray nobody("orvelle-test-nobody");
    const struct {
        QByteArray wayland, x;
        bool readable;
    } cases[]{{nobody, {}, false}, {nobody, ":4242", true}, {{}, ":4242", true}};
    for (const auto &each : cases) {
        const Variable wayland("WAYLAND_DISPLAY", each.wayland), x("DISPLAY", each.x);
        FakeClock clock;
        const auto pasteboard = desktopPasteboard(clock);
        EXPECT_EQ(pasteboard->isReadable(), each.readable) << each.wayland.constData() << each.x.constData();
        if (each.readable)
            continue;
        QObject context;
        std::optional<PasteboardError::Kind> refused;
        pasteboard->data(Pasteboard::textType(), 100, &context,
                         [&refused](const auto &answer) { refused = answer.error().kind; });
        EXPECT_FALSE(refused) << "not from inside the call";
        QCoreApplication::processEvents();
        EXPECT_EQ(refused, PasteboardError::Kind::Unavailable);
        EXPECT_EQ(pasteboard->changeCount(), 0);
    }
}

} // namespace
} // namespace orvelle::test
