#include "ui/exchange/BackgroundWork.h"

#include "base/PatientThreads.h"
#include "base/Text.h"

#include <QDeadlineTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvelle {

namespace {

constexpr int progressWidth = 340;

} // namespace

ProgressDialog::ProgressDialog(const QString &what, QWidget *parent) : QDialog(parent), m_bar(new QProgressBar(this))
{
    setObjectName(QStringLiteral("ProgressDialog"));
    setWindowTitle(QStringLiteral("Orvelle"));
    setWindowModality(parent ? Qt::WindowModal : Qt::ApplicationModal);
    auto *label = new QLabel(what, this);
    label->setTextFormat(Qt::PlainText);
    m_bar->setRange(0, 1000);
    m_bar->setTextVisible(false);
    m_bar->setMinimumWidth(progressWidth);
    m_bar->setAccessibleName(what);
    auto *cancel = new QPushButton(text("sheet.cancel"_text), this);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 20, 20, 16);
    column->setSpacing(12);
    column->addWidget(label);
    column->addWidget(m_bar);
    column->addWidget(cancel, 0, Qt::AlignTrailing);
    column->setSizeConstraint(QLayout::SetFixedSize);
}

void ProgressDialog::setPermille(int permille)
{
    m_bar->setValue(permille);
}

void BackgroundWork::start(QObject *owner, QWidget *window, Clock &clock, const QString &what, const Work &work)
{
    new BackgroundWork(owner, window, clock, what, work);
}

BackgroundWork::BackgroundWork(QObject *owner, QWidget *window, Clock &clock, const QString &what, const Work &work)
    : QObject(owner),
      m_window(window),
      m_clock(clock),
      m_what(what),
      m_thread(QThread::create([shared = m_shared, work] { shared->finish = work(shared->progress); })),
      m_timer(clock.singleShot(patience, [this] { showProgress(); }))
{
    connect(m_thread.get(), &QThread::finished, this, &BackgroundWork::finish);
    m_thread->setStackSize(PatientThreads::stackSize);
    m_thread->start();
}

BackgroundWork::~BackgroundWork()
{
    m_shared->progress.cancelled = true;
    if (m_thread->wait(QDeadlineTimer(lastWait)))
        return;
    QThread *left = m_thread.release();
    disconnect(left, nullptr, this, nullptr);
    connect(left, &QThread::finished, left, &QObject::deleteLater);
}

void BackgroundWork::showProgress()
{
    m_dialog = std::make_unique<ProgressDialog>(m_what, m_window);
    connect(m_dialog.get(), &QDialog::rejected, this, [this] { cancel(); });
    m_dialog->show();
    // Not from inside the timer that this replaces.
    m_clock.after(std::chrono::milliseconds(0), this, [this] {
        if (!m_dialog)
            return;
        m_timer = m_clock.repeating(redrawEvery, [this] { m_dialog->setPermille(m_shared->progress.permille); });
    });
}

/// From inside the dialog, which two quick keys reject twice.
void BackgroundWork::cancel()
{
    if (!m_dialog)
        return;
    m_shared->progress.cancelled = true;
    m_timer.reset();
    m_dialog.release()->deleteLater();
}

void BackgroundWork::finish()
{
    m_timer.reset();
    m_dialog.reset();
    m_thread->wait();
    if (m_shared->finish && !m_shared->progress.cancelled)
        m_shared->finish();
    deleteLater();
}

} // namespace orvelle
