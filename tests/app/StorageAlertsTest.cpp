#include "app/StorageAlerts.h"

#include "menubar/MenuTestFakes.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(StorageAlerts, TellOncePerSpellOfFailures)
{
    Shell shell({item("x", LinkType::Url, "https://e")});
    StorageAlerts alerts(shell.defaults, shell.store, shell.clock, shell.alerts);
    const auto full = DefaultsError{DefaultsError::Kind::DiskFull, u"full"_s};
    const auto fail = [&shell] { return shell.defaults.write(u"Setting"_s, true).hasValue(); };
    const auto shown = [&shell] { return shell.alerts.shown.size(); };
    shell.defaults.failWrites(full);
    fail();
    for (int i = 0; i < 5; ++i) {
        shell.clock.advance(9min);
        fail();
    }
    EXPECT_EQ(shown(), 1) << "still the same";
    EXPECT_EQ(shell.alerts.shown.first().informativeText, u"error.saveDiskFull");

    shell.clock.advance(10min);
    fail();
    EXPECT_EQ(shown(), 2) << "of settings that are written rarely each failure is news";

    shell.defaults.failWrites({});
    shell.store.addLink(item("y", LinkType::Url, "https://f"));
    shell.defaults.failWrites(full);
    fail();
    EXPECT_EQ(shown(), 3) << "in between all was well";
}

} // namespace
} // namespace orvelle::test
