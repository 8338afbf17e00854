#include "DatedOutline.h"
#include "links/LinkEditing.h"
#include "sync/LinkMerge.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

struct Case {
    const char *situation;
    const char *local;
    const char *remote;
    const char *merged;
    double exportDate = 10;
    double now = 12;
};

void PrintTo(const Case &one, std::ostream *out)
{
    *out << one.situation;
}

class DatesThatCount : public testing::TestWithParam<Case>
{
};

TEST_P(DatesThatCount, Situation)
{
    const Case &one = GetParam();
    const LinkList local = dated(QString::fromLatin1(one.local));
    const LinkList remote = dated(QString::fromLatin1(one.remote));
    const MergeContext context{Timestamp{one.exportDate}, Timestamp{one.now}};
    const LinkList merged = autoMergeLinks(local, remote, context, {});
    EXPECT_EQ(outlineWithDates(merged).toStdString(), one.merged);
    EXPECT_EQ(autoMergeLinks(merged, remote, context, {}), merged) << "a second time";
}

const Case cases[] = {
    {"a wrong date there loses to an edit after the document", "a11", "a9000", "a11"},
    {"but wins over one before it", "a9", "a9000", "a9000"},
    {"a wrong date here counts the same", "a9000", "a9", "a9000"},
    {"of two wrong dates the later one is of who saw the other", "a9000", "a9001", "a9001"},
    {"the same, the other way round", "a9001", "a9000", "a9001"},
    {"a document that is ahead itself is believed", "a11", "a9000", "a9000", 9000},
    {"a document from the past is believed as long as we are later", "a2", "a9", "a9", 5},
    {"a clock here that is behind changes nothing", "a2", "a9", "a9", 10, 1},
    {"to the second, none is wrong", "a11", "a12", "a12"},
    {"an edit of what was edited in the same second is ahead, and not wrong", "a13", "a12", "a13"},
    {"moved there by a wrong clock, and here after the document", "f[a11] g[]", "f[] g[a9000]", "f[a11] g[]"},
    {"twice, by a wrong clock", "f[a11] a9000", "f[a]", "f[a11]"},
    {"a wrong date is no reason to keep what was deleted", "a9000 b", "b", "b"},
};

INSTANTIATE_TEST_SUITE_P(Tables, DatesThatCount, testing::ValuesIn(cases));

/// A machine with a clock of its own.
struct Machine {
    explicit Machine(double offset_) : offset(offset_) {}

    double offset;
    LinkList links = dated(u"a b"_s);

    Timestamp now(double time) const { return Timestamp{time + offset}; }

    void rename(const QString &to, double time)
    {
        changeEach(
            links, {idOf(u"a"_s)}, [&to](LinkItem &item) { item.name = to; }, now(time));
    }
    void receive(const Machine &other, double time)
    {
        links = autoMergeLinks(links, other.links, {other.now(time), now(time)}, {});
    }
};

TEST(WrongClocks, NoMachineWinsForEver)
{
    for (const double wrong : {1e9, -1e9}) {
        for (const bool isSetRight : {false, true}) {
            SCOPED_TRACE(testing::Message() << "off by " << wrong << (isSetRight ? ", then set right" : ""));
            Machine odd(wrong);
            Machine one(0);
            Machine two(3);
            double time = 2e9;
            for (int round = 0; round < 6; ++round) {
                Machine *all[] = {&odd, &one, &two};
                Machine &editor = *all[round % 3];
                const QString name = u"named in round %1"_s.arg(round);
                editor.rename(name, time += 60);
                if (isSetRight && round == 3)
                    odd.offset = 0;
                for (Machine *other : all)
                    other->receive(editor, time += 60);
                for (const Machine *each : all)
                    ASSERT_EQ(each->links.at(0).name, name);
                // Older documents come again, from anybody.
                for (Machine *reader : all) {
                    for (const Machine *writer : all)
                        reader->receive(*writer, time += 60);
                    ASSERT_EQ(reader->links.at(0).name, name);
                }
            }
        }
    }
}

TEST(WrongClocks, WhatWasNeverSharedIsNotDeletedThere)
{
    const LinkList local = dated(u"a b c20"_s);
    const LinkList remote = dated(u"c"_s);
    const QSet<QString> shared = {u"a"_s, u"c"_s};
    const MergeContext context{Timestamp{10}, Timestamp{30}, &shared};
    EXPECT_EQ(outlineOf(autoMergeLinks(local, remote, context, {})), u"b c");
    EXPECT_EQ(outlineOf(autoMergeLinks(local, remote, {Timestamp{10}, Timestamp{30}}, {})), u"c") << "not known";
}

TEST(WrongClocks, WhatWasMadeInTheFutureCanBeDeleted)
{
    LinkList local = dated(u"a b20"_s);
    local[0].createdAt = local[0].modifiedAt = Timestamp{9000};
    const LinkList remote = dated(u"b"_s);
    const QSet<QString> shared = {u"a"_s, u"b"_s};
    EXPECT_EQ(outlineOf(autoMergeLinks(local, remote, {Timestamp{10}, Timestamp{30}, &shared}, {})), u"b");
    EXPECT_EQ(outlineOf(autoMergeLinks(local, remote, {Timestamp{10}, Timestamp{30}}, {})), u"a b")
        << "it may be from here, and new";
}

} // namespace
} // namespace orvelle::test
