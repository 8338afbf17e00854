// Measures the whole program with every widget on: at rest with the menu shut,
// with the menu open, after ten large pictures, and how long the hot key takes
// beside a click on the icon. Needs an X server and a session bus on which
// nobody owns the notifier watcher's name.
#include "Figures.h"
#include "Subject.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>

using namespace orvelle::bench;
using namespace Qt::StringLiterals;

namespace {

constexpr int restSeconds = 60;
constexpr int pictures = 10;
constexpr int pictureSide = 4160; ///< in pixels of three bytes: 49.5 MiB
constexpr quint8 keyX = 45 + 8;   ///< as X servers on Linux number keys

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        fail(program + u' ' + arguments.join(u' ') + u" failed"_s);
}

void turnEverythingOn(const QString &orvelle)
{
    const QList<QStringList> settings{
        {u"HasLaunchedBefore"_s, u"bool"_s, u"true"_s},    {u"WeatherLocationMode"_s, u"string"_s, u"automatic"_s},
        {u"CalendarEnabled"_s, u"bool"_s, u"true"_s},      {u"ClipboardEnabled"_s, u"bool"_s, u"true"_s},
        {u"TimerEnabled"_s, u"bool"_s, u"true"_s},         {u"SystemInfoDisplayMode"_s, u"string"_s, u"terminal"_s},
        {u"NetworkDisplayMode"_s, u"string"_s, u"graph"_s}};
    for (const QStringList &each : settings)
        run(orvelle, QStringList{u"defaults"_s, u"write"_s} + each);
}

/// The X server as somebody looks at it who waits for the menu.
class Screen
{
public:
    Screen() : m_x(xcb_connect(nullptr, nullptr), &xcb_disconnect)
    {
        if (xcb_connection_has_error(m_x.get()) != 0)
            fail(u"no X server"_s);
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_x.get())).data->root;
        const quint32 mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_x.get(), root, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(m_x.get());
    }
    void forget()
    {
        while (next()) {
        }
    }
    /// Until a window without a frame is shown.
    void awaitPopup()
    {
        QElapsedTimer passed;
        passed.start();
        while (passed.elapsed() < 5000) {
            const auto event = next();
            const auto *shown = reinterpret_cast<const xcb_map_notify_event_t *>(event.get());
            if (event && (event->response_type & 0x7f) == XCB_MAP_NOTIFY && shown->override_redirect != 0)
                return;
        }
        fail(u"no menu was shown"_s);
    }
    void awaitKey()
    {
        QElapsedTimer passed;
        passed.start();
        while (passed.elapsed() < 5000) {
            const std::unique_ptr<xcb_query_keymap_reply_t, decltype(&std::free)> keys(
                xcb_query_keymap_reply(m_x.get(), xcb_query_keymap(m_x.get()), nullptr), &std::free);
            if (keys && (keys->keys[keyX / 8] >> (keyX % 8) & 1) != 0)
                return;
        }
        fail(u"the hot key was not pressed"_s);
    }

private:
    std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> next()
    {
        return {xcb_poll_for_event(m_x.get()), &std::free};
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_x;
};

/// The menu of the program that runs.
class MenuOf
{
public:
    explicit MenuOf(qint64 pid) : m_item(u"org.kde.StatusNotifierItem-%1-1"_s.arg(pid)) {}

    double clickMilliseconds()
    {
        m_screen.forget();
        QElapsedTimer passed;
        passed.start();
        click();
        m_screen.awaitPopup();
        return since(passed);
    }
    double hotKeyMilliseconds()
    {
        m_screen.forget();
        QProcess keys;
        keys.start(u"xdotool"_s, {u"key"_s, u"super+alt+x"_s});
        m_screen.awaitKey();
        QElapsedTimer passed;
        passed.start();
        m_screen.awaitPopup();
        const double result = since(passed);
        keys.waitForFinished();
        return result;
    }
    void close() const
    {
        sleepInLoop(150);
        run(u"xdotool"_s, {u"key"_s, u"Escape"_s});
        sleepInLoop(450); // a press just after the closing opens nothing
    }
    void click() const
    {
        QDBusMessage call = QDBusMessage::createMethodCall(m_item, u"/StatusNotifierItem"_s,
                                                           u"org.kde.StatusNotifierItem"_s, u"Activate"_s);
        call << 600 << 300;
        QDBusConnection::sessionBus().send(call);
    }

private:
    static double since(const QElapsedTimer &timer) { return static_cast<double>(timer.nsecsElapsed()) / 1e6; }

    QString m_item;
    Screen m_screen;
};

Activity::Thread activityDuring(qint64 pid, int milliseconds)
{
    const Activity before = activityOf(pid);
    sleepInLoop(milliseconds);
    return between(before, activityOf(pid));
}

double percentOf(qint64 nanoseconds, int milliseconds)
{
    return static_cast<double>(nanoseconds) / 1e4 / milliseconds;
}

/// Noise, which no compression makes smaller.
void writePicture(const QString &path, unsigned number)
{
    QFile file(path);
    QByteArray pixels(qsizetype(pictureSide) * pictureSide * 3, Qt::Uninitialized);
    std::mt19937_64 random(number);
    for (qsizetype i = 0; i + 8 <= pixels.size(); i += 8) {
        const quint64 noise = random();
        std::memcpy(pixels.data() + i, &noise, 8);
    }
    const QByteArray head = "P6 " + QByteArray::number(pictureSide) + ' ' + QByteArray::number(pictureSide) + " 255\n";
    const bool isWritten =
        file.open(QFile::WriteOnly) && file.write(head) == head.size() && file.write(pixels) == pixels.size();
    if (!isWritten)
        fail(u"the pictures cannot be written"_s);
}

void copyPictures(const QString &orvelle)
{
    QTemporaryDir folder;
    const QDir cache(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/orvelle-clipboard"_s);
    for (int i = 0; i < pictures; ++i) {
        const QString raw = folder.filePath(u"picture.ppm"_s);
        const QString png = folder.filePath(u"picture.png"_s);
        writePicture(raw, unsigned(i));
        run(u"convert"_s, {raw, u"-quality"_s, u"00"_s, png});
        QProcess owner;
        owner.start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s, u"image/png"_s, u"-i"_s, png});
        for (int tries = 0; cache.entryList(QDir::Files).size() <= i; ++tries) {
            if (tries > 60)
                fail(u"a picture was not taken into the history"_s);
            run(orvelle, {u"menu"_s, u"--json"_s}); // looks at the clipboard
            sleepInLoop(500);
        }
        sleepInLoop(1500); // its thumbnail
        owner.kill();
        owner.waitForFinished();
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption orvelle(u"orvelle"_s, u"The program."_s, u"path"_s);
    const QCommandLineOption runs(u"runs"_s, u"Openings of the menu."_s, u"n"_s, u"30"_s);
    const QCommandLineOption out(u"out"_s, u"Where the JSON goes."_s, u"file"_s);
    parser.addOptions({orvelle, runs, out});
    parser.process(application);
    const QString program = parser.value(orvelle);

    Series wakeUps{u"shut/wakeups"_s, u"a second"_s, {}};
    Series shut{u"shut/cpu"_s, u"%"_s, {}};
    Series open{u"open/cpu"_s, u"%"_s, {}};
    Series click{u"click"_s, u"ms"_s, {}};
    Series hotKey{u"hotkey"_s, u"ms"_s, {}};
    Series before{u"images/before"_s, u"MiB"_s, {}};
    Series after{u"images/after"_s, u"MiB"_s, {}};

    turnEverythingOn(program);
    Watcher watcher;
    const Subject subject(watcher, program);
    sleepInLoop(10000);
    const Activity::Thread rest = activityDuring(subject.pid(), restSeconds * 1000);
    shut.values += percentOf(rest.nanoseconds, restSeconds * 1000);
    wakeUps.values += static_cast<double>(rest.switches) / restSeconds;

    MenuOf menu(subject.pid());
    for (int i = -1; i < parser.value(runs).toInt(); ++i) {
        const double clicked = menu.clickMilliseconds();
        menu.close();
        const double pressed = menu.hotKeyMilliseconds();
        menu.close();
        if (i < 0) // the first one draws for the first time
            continue;
        click.values += clicked;
        hotKey.values += pressed;
    }
    menu.click();
    sleepInLoop(3000);
    for (int second = 0; second < 10; ++second)
        open.values += percentOf(activityDuring(subject.pid(), 1000).nanoseconds, 1000);
    menu.close();

    before.values += pssMiB(subject.pid());
    copyPictures(program);
    sleepInLoop(5000);
    after.values += pssMiB(subject.pid());
    return writeJson(parser.value(out), {wakeUps, shut, open, click, hotKey, before, after}) ? 0 : 1;
}
