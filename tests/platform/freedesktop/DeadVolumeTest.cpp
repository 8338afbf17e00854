#include "platform/freedesktop/DeadVolume.h"

#include "platform/freedesktop/GioApplications.h"
#include "platform/freedesktop/PrivateMounts.h"
#include "platform/freedesktop/calendars/IcsCalendars.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

// What the main thread looked at here would not come back.
TEST(DeadVolume, IsLeftToOtherThreads)
{
    if (!havePrivateMounts())
        GTEST_SKIP() << "nothing may be mounted here";
    QTemporaryDir folder;
    const DeadVolume dead(QFile::encodeName(folder.path()));
    if (!dead.isMounted())
        GTEST_SKIP() << "no mounts of programs here";
    const QString entry = folder.filePath(u"org.example.Editor.desktop"_s);
    const auto application = GioApplications().find(entry);
    ASSERT_TRUE(application);
    EXPECT_EQ(application->path, entry);
    EXPECT_EQ(application->name, u"org.example.Editor");
    EXPECT_FALSE(GioApplications().find(folder.filePath(u"letter.txt"_s)));

    IcsCalendars calendars({folder.filePath(u"calendars"_s)});
    calendars.setWatching(true);
    EXPECT_TRUE(calendars.isAvailable());
}

} // namespace
} // namespace orvelle::test
