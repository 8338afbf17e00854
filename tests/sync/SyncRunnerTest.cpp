#include "sync/SyncRunner.h"

#include "support/CloudContainerContract.h"

#include <QThread>

#include <gtest/gtest.h>

namespace orvelle::test {

TEST(SyncRunner, workIsDoneElsewhereInItsOrderAndAnsweredHere)
{
    const auto runner = makeThreadSyncRunner();
    QList<int> order;
    QThread *worker = nullptr;
    QObject context;
    auto gone = std::make_unique<QObject>();
    for (int i = 0; i < 50; ++i) {
        runner->run([&worker] { worker = QThread::currentThread(); }, i % 2 ? &context : gone.get(),
                    [&order, i] {
                        EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
                        order += i;
                    });
    }
    EXPECT_TRUE(order.isEmpty());
    gone.reset();
    EXPECT_TRUE(spinUntil([&] { return order.size() == 25; }));
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_FALSE(order.contains(0)) << "whoever is gone is not answered";
    EXPECT_NE(worker, QThread::currentThread());
}

TEST(SyncRunner, whatWasBegunIsWaitedForAtTheEnd)
{
    QObject context;
    bool finished = false;
    bool answered = false;
    auto runner = makeThreadSyncRunner();
    runner->run([&finished] { finished = true; }, &context, [&answered] { answered = true; });
    runner.reset();
    EXPECT_TRUE(finished);
    QCoreApplication::processEvents();
    EXPECT_FALSE(answered);
}

} // namespace orvelle::test
