#include "SyncTest.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle::test {

namespace {

class CloudSyncAnewTest : public SyncTest
{
protected:
    using Answer = std::optional<Result<SyncResult, CloudSyncError>>;

    void beginAnew(SyncMachine &machine)
    {
        answer.reset();
        machine.sync().beginAnew([this](const auto &result) { answer.emplace(result); });
    }
    static void rename(SyncMachine &machine, const QString &name, const QString &to)
    {
        machine.links().updateLinks({idOf(name)}, [&to](LinkItem &item) { item.name = to; });
    }
    /// Everything that the snapshots hold.
    static QStringList kept(SyncMachine &machine)
    {
        QStringList outlines;
        for (const SnapshotInfo &info : machine.snapshots().list(false)) {
            const auto links = machine.snapshots().load(info.name, false);
            outlines += links ? outlineOf(*links) : u"(unreadable)"_s;
        }
        return outlines;
    }

    /// Each machine has its own order.
    static QStringList sorted(const QString &outline)
    {
        QStringList names = outline.split(u' ');
        names.sort();
        return names;
    }

    Answer answer;
};

} // namespace

TEST_F(CloudSyncAnewTest, whatWasThereIsASnapshotAndGoneElsewhereToo)
{
    SyncMachine b(clock, place, u"B"_s);
    clock.advance(16s);
    for (const char *name : {"one", "two", "three"})
        add(b, QString::fromLatin1(name));
    settle();
    SyncMachine a(clock, place, u"A"_s, false);
    add(a, u"mine"_s);
    beginAnew(a);
    clock.advance(1s);
    ASSERT_TRUE(answer && *answer);
    EXPECT_EQ(inFile(), u"mine"_s);
    EXPECT_EQ(here(a), u"mine"_s) << "at no time anything else";
    EXPECT_EQ(kept(a), QStringList(u"one two three"_s));
    a.sync().setAutoSyncEnabled(true);
    settle();
    EXPECT_EQ(here(b), u"mine"_s) << "they were known to be there, and are not any more";
    EXPECT_TRUE(kept(b).contains(u"one two three"_s));
    EXPECT_EQ(here(a), u"mine"_s);
}

TEST_F(CloudSyncAnewTest, whatOthersHaveNewerAndNobodyHasSeenComesBack)
{
    SyncMachine a(clock, place, u"A"_s);
    SyncMachine b(clock, place, u"B"_s);
    clock.advance(16s);
    for (const char *name : {"one", "two"})
        add(a, QString::fromLatin1(name));
    settle();
    a.sync().setAutoSyncEnabled(false);
    rename(b, u"one"_s, u"uno"_s); // in the document
    settle();
    b.container.setOnline(false);
    rename(b, u"two"_s, u"due"_s); // only there
    add(b, u"new"_s);
    settle();

    beginAnew(a);
    clock.advance(1s);
    ASSERT_TRUE(answer && *answer);
    EXPECT_EQ(inFile(), u"one two"_s);
    EXPECT_EQ(kept(a).first(), u"uno two"_s);
    a.sync().setAutoSyncEnabled(true);
    b.container.setOnline(true);
    settle();
    EXPECT_EQ(here(a), here(b));
    EXPECT_EQ(here(b), u"uno due new"_s) << "an edit is newer than what it was made on, wherever that came from";
}

TEST_F(CloudSyncAnewTest, anEditMadeMeanwhileAndAMachineThatWasFasterLoseNothing)
{
    place.latency = 50ms;
    SyncMachine b(clock, place, u"B"_s);
    clock.advance(16s);
    add(b, u"theirs"_s);
    settle();
    SyncMachine a(clock, place, u"A"_s, false);
    add(a, u"mine"_s);
    for (auto moment = 0ms; moment < 300ms; moment += 25ms) {
        SCOPED_TRACE(moment.count());
        beginAnew(a);
        clock.advance(moment);
        const QString name = u"at%1"_s.arg(moment.count());
        add(a, name);
        otherWrites(u"other"_s + name);
        clock.advance(5s);
        ASSERT_TRUE(answer && *answer);
        EXPECT_TRUE(here(a).endsWith(name));
        const QString theirs = u"other"_s + name;
        const QStringList everywhere = kept(a) + QStringList{inFile(), here(b)};
        EXPECT_FALSE(everywhere.filter(theirs).isEmpty()) << everywhere.join(u'|').toStdString();
    }
    a.sync().setAutoSyncEnabled(true);
    settle();
    settle();
    EXPECT_EQ(sorted(here(a)), sorted(here(b)));
    for (auto moment = 0ms; moment < 300ms; moment += 25ms)
        EXPECT_TRUE(here(b).split(u' ').contains(u"at%1"_s.arg(moment.count())));
}

TEST_F(CloudSyncAnewTest, whatCannotBeReadOrKeptIsNotReplaced)
{
    SyncMachine a(clock, place, u"A"_s, false);
    add(a, u"mine"_s);
    struct Case {
        const char *what;
        std::function<void()> arrange;
    };
    const Case cases[] = {
        {"damaged", [&] { place.otherMachineWrites(file, "{"); }},
        {"no answer",
         [&] {
             otherWrites(u"theirs"_s);
             a.container.failReads(CloudError{CloudError::Kind::TimedOut});
         }},
        {"no snapshot",
         [&] {
             a.container.failReads({});
             QFile blocked(a.snapshotFolder());
             ASSERT_TRUE(blocked.open(QFile::WriteOnly));
         }},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        c.arrange();
        const QByteArray before = place.bytes(file);
        beginAnew(a);
        clock.advance(60s);
        ASSERT_TRUE(answer);
        EXPECT_FALSE(*answer);
        EXPECT_FALSE(answer->hasValue() || answer->error().description.isEmpty());
        EXPECT_EQ(place.bytes(file), before);
        EXPECT_EQ(here(a), u"mine"_s);
    }
}

} // namespace orvelle::test
