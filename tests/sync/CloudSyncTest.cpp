#include "support/LogCapture.h"
#include "support/Outline.h"
#include "support/SyncMachine.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle::test {

namespace {

const QString file = u"orvelle-sync.ovexport"_s;

class CloudSyncTest : public testing::Test
{
protected:
    void edit(SyncMachine &machine, const QString &outline) { machine.links().addLink(namedLink(outline)); }
    /// Until nothing is left to do, polls aside.
    void settle() { clock.advance(61s); }

    FakeClock clock;
    FakeCloudPlace place{clock};
};

} // namespace

TEST_F(CloudSyncTest, anEditReachesTheOtherMachine)
{
    SyncMachine a(clock, place, u"A"_s);
    SyncMachine b(clock, place, u"B"_s);
    clock.advance(15s);
    a.links().addLink(namedLink(u"one"_s));
    settle();
    EXPECT_EQ(outlineOf(b.links().links()), u"one"_s);
    b.links().addLink(namedLink(u"two"_s));
    settle();
    EXPECT_EQ(outlineOf(a.links().links()), u"one two"_s);
    EXPECT_EQ(place.writeCount(), 2);
}

} // namespace orvelle::test
