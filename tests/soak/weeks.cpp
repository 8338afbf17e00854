#include "soak/World.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>
#include <malloc.h>

#include <ctime>

namespace orvelle::test {
namespace {

constexpr int minutesOfDay = 24 * 60;
constexpr double logSpan = 60; ///< seconds in which a line may be repeated once

/// Hears every log line and remembers those that are repeated too often.
class LogWatch
{
public:
    explicit LogWatch(const FakeClock &clock)
    {
        s_clock = &clock;
        m_previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &message) {
            hear(QString::fromLatin1(context.category) + u": "_s + message);
        });
    }
    ~LogWatch()
    {
        qInstallMessageHandler(m_previous);
        s_said.clear();
        s_repeated.clear();
    }
    Q_DISABLE_COPY_MOVE(LogWatch)

    static QStringList repeated() { return s_repeated; }
    static qint64 lines() { return s_lines; }
    static void listen(bool listening) { s_listens = listening; }
    /// What is too old to count.
    static void forget()
    {
        s_said.removeIf([](const auto &said) { return s_clock->runningTime() - said.value().last() > logSpan; });
    }

private:
    static void hear(const QString &line)
    {
        ++s_lines;
        if (!s_listens)
            return;
        const double now = s_clock->runningTime();
        QList<double> &times = s_said[line];
        if (times.size() == 2 && now - times.constFirst() < logSpan && !s_repeated.contains(line))
            s_repeated += line;
        times = times.mid(times.size() - 1) + QList<double>{now};
    }

    static inline const FakeClock *s_clock = nullptr;
    static inline bool s_listens = true;
    static inline QHash<QString, QList<double>> s_said; ///< the last two times of each
    static inline QStringList s_repeated;
    static inline qint64 s_lines = 0;
    QtMessageHandler m_previous = nullptr;
};

qsizetype openFiles()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot).size();
}

/// A figure for each day.
struct Series {
    QJsonArray memory; ///< bytes in use
    QJsonArray files;
    QJsonArray timers;

    void measure(const SoakWorld &world)
    {
        memory.append(static_cast<qint64>(mallinfo2().uordblks));
        files.append(openFiles());
        timers.append(static_cast<qint64>(world.clock.pending()));
    }
};

void writeRaw(const QString &path, const Series &series, const SoakWorld &world)
{
    const QJsonObject done{
        {u"openings of the menu"_s, world.openings}, {u"edits"_s, world.edits}, {u"log lines"_s, LogWatch::lines()}};
    const QJsonObject root{{u"days"_s, series.memory.size()},
                           {u"memory"_s, series.memory},
                           {u"files"_s, series.files},
                           {u"timers"_s, series.timers},
                           {u"repeated"_s, QJsonArray::fromStringList(LogWatch::repeated())},
                           {u"done"_s, done}};
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(QJsonDocument(root).toJson()) > 0);
}

} // namespace

/// ORVELLE_SOAK_DAYS is how many days are lived through, and ORVELLE_SOAK_OUT a
/// file for what was measured on each. The clock changes in the fifth week.
TEST(Weeks, LeaveNothingBehind)
{
    qputenv("TZ", "Europe/Paris");
    tzset();
    const int days = std::max(2, qEnvironmentVariableIntValue("ORVELLE_SOAK_DAYS"));
    SoakWorld world;
    const LogWatch log(world.clock);
    Series series;
    for (int day = 0; day < days; ++day) {
        for (int minute = 0; minute < minutesOfDay; ++minute) {
            LogWatch::listen(!SoakWorld::isOtherOn(minute));
            world.liveThrough(minute);
            LogWatch::forget();
        }
        series.measure(world);
    }
    world.settle();
    if (qEnvironmentVariableIsSet("ORVELLE_SOAK_OUT"))
        writeRaw(qEnvironmentVariable("ORVELLE_SOAK_OUT"), series, world);
    EXPECT_TRUE(LogWatch::repeated().isEmpty()) << LogWatch::repeated().join(u'\n').toStdString();
    EXPECT_EQ(series.files.last(), series.files.first());
    EXPECT_EQ(series.timers.last(), series.timers.first());
    EXPECT_EQ(world.mine.links().links().size(), world.other.links().links().size());
    EXPECT_TRUE(world.place.has(u"orvelle-sync.ovexport"_s)) << world.place.names().join(u' ').toStdString();
    EXPECT_FALSE(world.mine.sync().status().needsUser());
}

} // namespace orvelle::test
