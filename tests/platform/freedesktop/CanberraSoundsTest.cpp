#include "platform/freedesktop/CanberraSounds.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>

namespace orvelle::test {
namespace {

int bells(int alarms)
{
    std::atomic<int> bells = 0;
    CanberraSounds sounds([&] { ++bells; });
    for (int i = 0; i < alarms; ++i)
        sounds.playAlarm();
    sounds.waitUntilHandedOver();
    return bells;
}

TEST(CanberraSoundsDeathTest, RingsTheBellOnlyWhenNoSoundCanBePlayed)
{
    // In processes of their own, as the library looks for its driver once.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    qputenv("CANBERRA_DRIVER", "no-such-driver");
    EXPECT_EXIT(_exit(bells(2)), testing::ExitedWithCode(2), "");
    // A sound card that swallows everything.
    QTemporaryDir folder;
    QFile alsa(folder.filePath(QStringLiteral("asound.conf")));
    ASSERT_TRUE(alsa.open(QIODevice::WriteOnly));
    alsa.write("pcm.!default { type null }\nctl.!default { type null }\n");
    alsa.close();
    qputenv("ALSA_CONFIG_PATH", QFile::encodeName(alsa.fileName()));
    qputenv("CANBERRA_DRIVER", "alsa");
    EXPECT_EXIT(_exit(bells(2)), testing::ExitedWithCode(0), "");
    qunsetenv("CANBERRA_DRIVER");
    qunsetenv("ALSA_CONFIG_PATH");
}

} // namespace
} // namespace orvelle::test
