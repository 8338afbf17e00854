#include "wayland/MenuFixture.h"

namespace orvelle::test {
namespace {

/// What is on an output now, in its own pixels.
QImage shotOf(const QString &output)
{
    QProcess grim;
    grim.start(u"grim"_s, {u"-o"_s, output, u"-"_s});
    EXPECT_TRUE(waitFor([&grim] { return grim.state() == QProcess::NotRunning; }));
    return QImage::fromData(grim.readAllStandardOutput(), "PNG").convertToFormat(QImage::Format_RGB32);
}

/// The part that differs.
QRect differenceOf(const QImage &before, const QImage &now)
{
    QRect part;
    for (int y = 0; y < now.height(); ++y) {
        for (int x = 0; x < now.width(); ++x) {
            if (before.pixel(x, y) != now.pixel(x, y))
                part |= QRect(x, y, 1, 1);
        }
    }
    return part;
}

/// The greatest step of brightness from a pixel to the next, of 255.
int steepest(const QImage &image, const QRect &part)
{
    int most = 0;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x < part.right(); ++x)
            most = std::max(most, std::abs(qGray(image.pixel(x, y)) - qGray(image.pixel(x + 1, y))));
    }
    return most;
}

/// A second output of another scale, right of the first.
class WaylandOutputs : public WaylandMenu
{
protected:
    static constexpr double ratio = 1.5;
    static constexpr QRect second{1280, 0, 1200, 800}; ///< logical

    void SetUp() override
    {
        WaylandMenu::SetUp();
        if (QGuiApplication::screens().size() == 1)
            tell({u"create_output"_s});
        tell({u"output"_s, name(), u"resolution"_s, u"1800x1200"_s, u"position"_s, u"1280"_s, u"0"_s, u"scale"_s,
              u"1.5"_s});
        ASSERT_TRUE(waitFor([] { return QGuiApplication::screens().size() == 2; }));
        ASSERT_TRUE(waitFor([] { return shotOf(name()).width() == 1800; }));
        mouse.emplace(QSize(second.right() + 1, second.height()));
    }
    static QString name() { return u"HEADLESS-2"_s; }
    static void tell(const QStringList &arguments)
    {
        QProcess process;
        process.start(u"swaymsg"_s, arguments);
        EXPECT_TRUE(waitFor([&process] { return process.state() == QProcess::NotRunning; }));
        EXPECT_EQ(process.exitCode(), 0) << process.readAll().constData();
    }
    /// Opens the menu with the pointer there, in the layout of all outputs.
    void openUnder(const QPoint &place)
    {
        mouse->moveTo(place);
        bool opened = false;
        const auto frame = QObject::connect(&popup, &MenuPopup::opened, &popup, [&opened] { opened = true; });
        popup.present({{entry(u"one"_s), entry(u"two"_s), entry(u"more"_s, MenuEntry::Kind::Submenu)}}, {{}, false},
                      [this](MenuAction action) { chosen = action; });
        EXPECT_TRUE(waitFor([&opened] { return opened; }));
        QObject::disconnect(frame);
    }
    /// Where a panel is seen on the second output, in its pixels.
    QRect shown(int level) const
    {
        const QRect panel = popup.panels().at(level)->geometry();
        return {(QPointF(panel.topLeft()) * ratio).toPoint(), panel.size() * ratio};
    }

    std::optional<VirtualPointer> mouse;
};

TEST_F(WaylandOutputs, TheMenuIsSharpOnTheOutputOfThePointer)
{
    const QPoint place(300, 200);
    mouse->moveTo(second.topLeft() + place); // is in the pictures, too
    const QImage first = shotOf(u"HEADLESS-1"_s), other = shotOf(name());
    openUnder(second.topLeft() + place);
    // The compositor tells the output, and with it the scale, after the first frame.
    EXPECT_TRUE(waitFor([this] { return popup.panels().constFirst()->devicePixelRatioF() > 1; }));
    EXPECT_TRUE(waitFor([&] { return steepest(shotOf(name()), shown(0)) > 100; })) << "blurred";
    const QRect seen = differenceOf(other, shotOf(name()));
    EXPECT_LT((seen.topLeft() - QPoint(450, 300)).manhattanLength(), 30) << seen.x() << ',' << seen.y();
    // The pointer's own picture changes with what is below it.
    constexpr int cursor = 24, smoothing = 2;
    EXPECT_TRUE(shown(0).adjusted(-cursor, -cursor, smoothing, smoothing).contains(seen))
        << shown(0).width() << 'x' << shown(0).height() << " at " << shown(0).x() << ',' << shown(0).y() << " seen "
        << seen.width() << 'x' << seen.height() << " at " << seen.x() << ',' << seen.y();
    EXPECT_LT((shown(0).size() - seen.size()).width(), 60) << "all of it";
    const QRect there = differenceOf(first, shotOf(u"HEADLESS-1"_s));
    EXPECT_LT(there.width(), 2 * cursor) << "no menu there, at most the pointer that has left";
    if (qEnvironmentVariableIsSet("ORVELLE_SHOTS"))
        shotOf(name()).save(qEnvironmentVariable("ORVELLE_SHOTS") + u"/output.png"_s);
}

TEST_F(WaylandOutputs, SubmenusStayOnIt)
{
    openUnder(second.bottomRight() - QPoint(4, 4));
    const QRect all({}, second.size());
    EXPECT_TRUE(all.contains(popup.panels().constFirst()->geometry()));
    mouse->moveTo(second.topLeft() + middleOf(0, 2));
    ASSERT_TRUE(waitFor([this] { return popup.panels().size() == 2; }));
    EXPECT_TRUE(all.contains(popup.panels().at(1)->geometry()));
    mouse->moveTo(second.topLeft() + middleOf(1, 0));
    EXPECT_TRUE(waitFor([this] { return popup.panels().at(1)->currentRow() == 0; }));
    if (qEnvironmentVariableIsSet("ORVELLE_SHOTS"))
        shotOf(name()).save(qEnvironmentVariable("ORVELLE_SHOTS") + u"/submenu.png"_s);
    mouse->press();
    mouse->release();
    EXPECT_TRUE(waitFor([this] { return chosen.has_value(); }));
    EXPECT_EQ(chosen, entry(u"inner"_s).action);
}

} // namespace
} // namespace orvelle::test
