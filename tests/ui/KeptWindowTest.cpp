#include "ui/common/KeptWindow.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <functional>

namespace orvelle {

namespace {

QWidget *windowWith(QWidget *content)
{
    auto *made = new QWidget;
    made->setAttribute(Qt::WA_DeleteOnClose);
    (new QVBoxLayout(made))->addWidget(content);
    made->show();
    return made;
}

/// As a drag runs one; `meanwhile` is called from inside.
void loopWithin(const std::function<void()> &meanwhile)
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, meanwhile);
    QTimer::singleShot(20, &loop, &QEventLoop::quit);
    loop.exec();
}

void deleteWhatIsToGo()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

TEST(KeptWindow, StaysUntilTheLoopIsOverAndGoesThen)
{
    const struct {
        const char *what;
        std::function<void(QWidget &)> meanwhile;
        bool remains;
    } cases[] = {
        {"left open", [](QWidget &) {}, true},
        {"closed", [](QWidget &shown) { shown.close(); }, false},
        {"closed and opened again",
         [](QWidget &shown) {
             shown.close();
             shown.show();
         },
         true},
        {"minimised", [](QWidget &shown) { shown.showMinimized(); }, true},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.what);
        const QPointer<QWidget> inside(new QWidget);
        const QPointer<QWidget> shown(windowWith(inside));
        {
            const KeptWindow kept(*inside);
            loopWithin([&] { each.meanwhile(*shown); });
            ASSERT_TRUE(inside);
        }
        ASSERT_TRUE(inside) << "whoever began the drag still uses it";
        deleteWhatIsToGo();
        EXPECT_EQ(!shown.isNull(), each.remains);
        if (shown) {
            shown->close();
            deleteWhatIsToGo();
            EXPECT_TRUE(shown.isNull()) << "deletes itself as before";
        }
    }
}

TEST(KeptWindow, LeavesAloneWhatStaysOrGoesByItself)
{
    QWidget stays;
    stays.show();
    auto *goes = windowWith(new QWidget);
    {
        const KeptWindow keptOne(stays);
        const KeptWindow keptOther(*goes);
        stays.close();
        delete goes;
    }
    deleteWhatIsToGo();
    EXPECT_FALSE(stays.testAttribute(Qt::WA_DeleteOnClose));
}

} // namespace orvelle
