#pragma once

#include "links/exchange/LinkExchange.h"
#include "platform/Clock.h"

#include <QDialog>
#include <QPointer>
#include <QThread>

#include <chrono>
#include <functional>
#include <memory>

class QProgressBar;

namespace orvelle {

/// How far work has come, with a button that ends it.
class ProgressDialog : public QDialog
{
    Q_OBJECT

public:
    ProgressDialog(const QString &what, QWidget *parent);

    void setPermille(int permille);

private:
    QProgressBar *m_bar;
};

/// Work outside of the main thread. It shows itself when it takes longer than
/// a second, and can be cancelled then; what it was to change is not changed.
/// Work on a disk that does not answer may never end; so cancelling does not
/// wait for it. Deletes itself at the end. Main thread.
class BackgroundWork : public QObject
{
    Q_OBJECT

public:
    /// What is done with the outcome, on the main thread.
    using Finish = std::function<void()>;
    /// Runs in a thread of its own, and possibly for ever: may use only what it
    /// holds, and what lives as long as the program. Must look at `cancelled`
    /// often enough.
    using Work = std::function<Finish(WorkProgress &)>;

    static constexpr std::chrono::milliseconds patience{1000};
    static constexpr std::chrono::milliseconds redrawEvery{100};
    /// How long the end of cancelled work is waited for, lest a program that
    /// quits leaves half a file behind.
    static constexpr std::chrono::milliseconds lastWait{1000};

    /// `what` says what is being done. When `owner` goes, the work is cancelled;
    /// what hangs longer than `lastWait` is left to itself.
    static void start(QObject *owner, QWidget *window, Clock &clock, const QString &what, const Work &work);
    ~BackgroundWork() override;

private:
    BackgroundWork(QObject *owner, QWidget *window, Clock &clock, const QString &what, const Work &work);
    void showProgress();
    void cancel();
    void finish();

    struct Shared {
        WorkProgress progress;
        Finish finish; ///< written by the thread, read when it has ended
    };

    QPointer<QWidget> m_window;
    Clock &m_clock;
    QString m_what;
    std::shared_ptr<Shared> m_shared = std::make_shared<Shared>();
    std::unique_ptr<QThread> m_thread;
    std::unique_ptr<Timer> m_timer;
    std::unique_ptr<ProgressDialog> m_dialog;
};

} // namespace orvelle
