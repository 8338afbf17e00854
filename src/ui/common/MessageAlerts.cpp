#include "ui/common/MessageAlerts.h"

#include "base/DisplayTitle.h"
#include "platform/WindowSystem.h"
#include "ui/common/Icons.h"
#include "ui/common/LineText.h"

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLoggingCategory>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcAlerts, "Alerts", QtInfoMsg)

constexpr int textColumnWidth = 380;
/// More than any text of ours with the name of a file in it.
constexpr qsizetype longestText = 2000;
/// Buttons wider than this together stand below each other.
constexpr int buttonRowLimit = 620;

QStyle::StandardPixmap standardIcon(Alert::Style style)
{
    switch (style) {
    case Alert::Style::Information:
        return QStyle::SP_MessageBoxInformation;
    case Alert::Style::Warning:
        return QStyle::SP_MessageBoxWarning;
    case Alert::Style::Critical:
        return QStyle::SP_MessageBoxCritical;
    }
    return QStyle::SP_MessageBoxInformation;
}

QLabel *plainLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(breakable(text));
    label->setWordWrap(true);
    label->setMinimumWidth(textColumnWidth);
    label->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    // The message can be copied into a search or a bug report.
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel *titleLabel(const QString &text, QWidget *parent)
{
    QLabel *label = plainLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.1);
    label->setFont(font);
    return label;
}

/// The label itself, or a view that scrolls it where it would take more than
/// half of the screen's height.
QWidget *textWithinScreen(QLabel *label, QDialog *dialog)
{
    const int most = dialog->screen()->availableSize().height() / 2;
    if (label->heightForWidth(textColumnWidth) <= most)
        return label;
    auto *view = new QScrollArea(dialog);
    view->setFrameShape(QFrame::NoFrame);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setWidgetResizable(true);
    view->setWidget(label);
    view->viewport()->setAutoFillBackground(false);
    label->setAutoFillBackground(false);
    view->setMinimumWidth(textColumnWidth + view->verticalScrollBar()->sizeHint().width());
    view->setFixedHeight(most);
    return view;
}

/// The buttons in the order given. A button box would sort them by the
/// desktop's conventions, and which one a position means would be lost.
QBoxLayout *buttonRow(const QStringList &titles, int defaultButton, QDialog *dialog)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    int width = 0;
    for (int index = 0; index < titles.size(); ++index) {
        // "&" in a title is itself; nobody marks a mnemonic here.
        auto *button = new QPushButton(QString(titles[index]).replace(u'&', QStringLiteral("&&")), dialog);
        button->setObjectName(QStringLiteral("alertButton%1").arg(index));
        button->setAutoDefault(true);
        button->setDefault(index == defaultButton);
        button->setMinimumWidth(std::max(button->sizeHint().width(), button->fontMetrics().averageCharWidth() * 12));
        QObject::connect(button, &QPushButton::clicked, dialog, [dialog, index] { dialog->done(index); });
        if (index == defaultButton)
            button->setFocus();
        row->addWidget(button);
        width += button->sizeHint().width() + row->spacing();
    }
    if (width > buttonRowLimit)
        row->setDirection(QBoxLayout::TopToBottom);
    else
        row->insertStretch(0);
    return row;
}

/// Its result code is the position of the button chosen.
class AlertDialog : public QDialog
{
public:
    explicit AlertDialog(int escapeButton) : m_escapeButton(escapeButton) {}

    /// Escape and the window's close button.
    void reject() override { done(m_escapeButton); }

private:
    int m_escapeButton;
};

QDialog *makeDialog(const Alert &alert)
{
    const int last = static_cast<int>(alert.buttons.size()) - 1;
    auto *dialog = new AlertDialog(alert.escapeButton < 0 ? last : alert.escapeButton);
    dialog->setObjectName(QStringLiteral("Alert"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(QStringLiteral("Orvelle"));
    dialog->setWindowModality(Qt::ApplicationModal);
    // The question may come while another program has the focus.
    dialog->setWindowFlag(Qt::WindowStaysOnTopHint);
    // What comes from outside must not push the buttons off the screen.
    const QString message = displayTitle(alert.message);
    const QString informativeText = shortened(alert.informativeText, longestText);
    dialog->setAccessibleName(message);
    dialog->setAccessibleDescription(informativeText);

    auto *picture = new QLabel(dialog);
    const int size = dialog->style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, dialog);
    const QIcon icon =
        alert.symbol.isEmpty() ? dialog->style()->standardIcon(standardIcon(alert.style)) : symbolIcon(alert.symbol);
    picture->setPixmap(icon.pixmap(QSize(size, size), dialog->devicePixelRatioF()));

    auto *grid = new QGridLayout(dialog);
    grid->setContentsMargins(20, 20, 20, 16);
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(8);
    grid->addWidget(picture, 0, 0, 3, 1, Qt::AlignTop);
    grid->addWidget(titleLabel(message, dialog), 0, 1);
    if (!informativeText.isEmpty())
        grid->addWidget(textWithinScreen(plainLabel(informativeText, dialog), dialog), 1, 1);
    grid->setRowMinimumHeight(2, 8);
    grid->setRowStretch(2, 1);
    grid->addLayout(buttonRow(alert.buttons, alert.defaultButton, dialog), 3, 0, 1, 2);
    // A window's own minimum size does not reckon with wrapped lines.
    const int width = grid->totalMinimumSize().width();
    dialog->setFixedSize(width, grid->totalHeightForWidth(width));
    return dialog;
}

/// Wayland knows no windows that stay on top, and leaves the focus where it is
/// unless the new window belongs to the one that has it.
void putAboveActiveWindow(QWidget &dialog)
{
    const QWidget *active = QApplication::activeWindow();
    if (!active || !isOnWayland())
        return;
    dialog.winId();
    dialog.windowHandle()->setTransientParent(active->window()->windowHandle());
}

} // namespace

MessageAlerts::~MessageAlerts()
{
    if (m_dialog) {
        m_dialog->disconnect(this);
        delete m_dialog.data();
    }
}

void MessageAlerts::show(const Alert &alert, std::function<void(int)> chosen)
{
    Q_ASSERT(!alert.buttons.isEmpty());
    m_queue.push_back({alert, std::move(chosen)});
    if (!m_dialog)
        showNext();
}

void MessageAlerts::showNext()
{
    if (m_queue.empty())
        return;
    const Alert &alert = m_queue.front().alert;
    m_dialog = makeDialog(alert);
    QDialog *dialog = m_dialog;
    connect(dialog, &QDialog::finished, this, &MessageAlerts::finish);
    putAboveActiveWindow(*dialog);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    qCInfo(lcAlerts, "Alert shown, %lld buttons, %zu more waiting", static_cast<long long>(alert.buttons.size()),
           m_queue.size() - 1);
}

void MessageAlerts::finish(int button)
{
    m_dialog = nullptr;
    const Waiting answered = std::move(m_queue.front());
    m_queue.pop_front();
    if (answered.chosen)
        answered.chosen(button);
    // The answer may have asked the next question already.
    if (!m_dialog)
        showNext();
}

} // namespace orvelle
