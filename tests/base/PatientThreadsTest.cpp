#include "base/PatientThreads.h"

#include <QElapsedTimer>
#include <QSemaphore>

#include <gtest/gtest.h>

#include <atomic>

namespace orvelle::test {
namespace {

using namespace std::chrono_literals;

TEST(PatientThreads, EndsWhenItsWorkIsDone)
{
    std::atomic<int> done = 0;
    {
        PatientThreads threads(2, 1min);
        for (int i = 0; i < 20; ++i)
            threads.run([&done] { ++done; });
    }
    EXPECT_EQ(done, 20) << "also what had to wait for its turn";
}

TEST(PatientThreads, LeavesWorkThatHangsToItself)
{
    struct Hung {
        QSemaphore mayGoOn;
        QSemaphore wentOn;
    };
    const auto hung = std::make_shared<Hung>();
    QElapsedTimer timer;
    {
        PatientThreads threads(1, 50ms);
        threads.run([hung] { hung->wentOn.release(hung->mayGoOn.tryAcquire(1, 60'000) ? 1 : 0); });
        timer.start();
    }
    EXPECT_LT(timer.elapsed(), 30'000);
    hung->mayGoOn.release();
    EXPECT_TRUE(hung->wentOn.tryAcquire(1, 30'000));
}

} // namespace
} // namespace orvelle::test
