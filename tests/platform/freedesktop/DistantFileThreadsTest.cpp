#include "platform/freedesktop/DistantFileThreads.h"

#include "platform/FileBookmarks.h"
#include "support/SpinUntil.h"

#include <QSemaphore>
#include <QStringList>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

/// Looks that wait for the test.
class DistantFileThreadsTest : public testing::Test
{
protected:
    void look(const QString &volume, const QString &name, bool hangs = false)
    {
        files->look(volume, receiver.get(), [=, this, gate = gate](FileBookmarks &bookmarks) -> DistantFiles::Delivery {
            if (hangs)
                gate->acquire();
            const bool reads = bookmarks.create(u"/"_s).hasValue();
            return [=, this] { delivered += reads ? name : u"no bookmark"_s; };
        });
    }

    std::shared_ptr<QSemaphore> gate = std::make_shared<QSemaphore>();
    std::unique_ptr<QObject> receiver = std::make_unique<QObject>();
    std::unique_ptr<DistantFileThreads> files = std::make_unique<DistantFileThreads>();
    QStringList delivered;
};

TEST_F(DistantFileThreadsTest, ADeadVolumeHoldsUpOnlyWhatIsAskedOfIt)
{
    for (int i = 0; i < 100; ++i)
        look(u"/dead"_s, u"dead"_s, i == 0);
    look(u"/nas"_s, u"a"_s);
    look(u"/nas"_s, u"b"_s);
    look(u"/other"_s, u"c"_s);
    ASSERT_TRUE(spinUntil([this] { return delivered.size() == 3; }));
    EXPECT_LT(delivered.indexOf(u"a"_s), delivered.indexOf(u"b"_s)) << "in turn";
    EXPECT_FALSE(delivered.contains(u"dead"_s));
    gate->release();
    EXPECT_TRUE(spinUntil([this] { return delivered.size() == 103; }));
}

TEST_F(DistantFileThreadsTest, WhoIsGoneGetsNothing)
{
    look(u"/dead"_s, u"a"_s, true);
    receiver = std::make_unique<QObject>();
    look(u"/dead"_s, u"b"_s);
    gate->release();
    ASSERT_TRUE(spinUntil([this] { return !delivered.isEmpty(); }));
    EXPECT_EQ(delivered, QStringList{u"b"_s});
}

TEST_F(DistantFileThreadsTest, LeavesToItselfWhatHangsAtTheEnd)
{
    look(u"/dead"_s, u"a"_s, true);
    look(u"/dead"_s, u"b"_s);
    QElapsedTimer end;
    end.start();
    files.reset();
    EXPECT_LT(end.elapsed(), 10'000);
    gate->release();
    QCoreApplication::processEvents();
    EXPECT_TRUE(delivered.isEmpty());
}

} // namespace
} // namespace orvelle::test
