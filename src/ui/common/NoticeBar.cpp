#include "ui/common/NoticeBar.h"

#include "base/Text.h"
#include "links/LinkColors.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>

#include <algorithm>

namespace orvelle {

namespace {

constexpr int leastWidth = 240;

} // namespace

NoticeBar::NoticeBar(QWidget *parent)
    : QFrame(parent), m_label(new QLabel(this)), m_row(new QHBoxLayout(this)), m_buttons(new QHBoxLayout)
{
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    m_label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_buttons->setSpacing(6);

    m_row->setContentsMargins(12, 8, 8, 8);
    m_row->addWidget(m_label, 1);
    m_row->addLayout(m_buttons);
    updateColors();
    hide();
}

void NoticeBar::showNotice(const QString &message, const QList<Action> &actions, bool dismissable)
{
    const bool isSame = m_label->text() == message && m_isDismissable == dismissable &&
                        std::ranges::equal(m_actions, actions, {}, &Action::title, &Action::title);
    m_actions = actions;
    if (!isSame) {
        m_label->setText(message);
        setAccessibleName(message);
        makeButtons(dismissable);
    }
    show();
}

void NoticeBar::makeButtons(bool dismissable)
{
    clearButtons();
    m_isDismissable = dismissable;
    // Several buttons beside the text would leave it a narrow column.
    const bool stacked = m_actions.size() > 1;
    m_row->setDirection(stacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    m_row->setSpacing(stacked ? 8 : 12);
    m_buttons->setAlignment(Qt::AlignTrailing);
    for (qsizetype i = 0; i < m_actions.size(); ++i) {
        auto *button = new QPushButton(m_actions.at(i).title, this);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] {
            const auto run = m_actions.at(i).run; // which may show another notice
            run();
        });
        m_buttons->addWidget(button);
    }
    if (dismissable) {
        auto *close = new QToolButton(this);
        close->setAutoRaise(true);
        close->setIcon(symbolIcon(QStringLiteral("xmark")));
        close->setToolTip(text("notice.dismiss"_text));
        close->setAccessibleName(text("notice.dismiss"_text));
        connect(close, &QToolButton::clicked, this, [this] {
            hide();
            emit dismissed();
        });
        m_buttons->addWidget(close);
    }
    // New widgets stand behind all others.
    QWidget *before = this;
    for (int i = 0; i < m_buttons->count(); ++i) {
        QWidget *button = m_buttons->itemAt(i)->widget();
        setTabOrder(before, button);
        before = button;
    }
}

/// Wrapped lines need more height than a layout by itself asks for.
QSize NoticeBar::minimumSizeHint() const
{
    const int width = qMax(QFrame::minimumSizeHint().width(), leastWidth);
    return {width, m_row->totalMinimumHeightForWidth(width)};
}

void NoticeBar::clearButtons()
{
    while (QLayoutItem *item = m_buttons->takeAt(0)) {
        // The bar may be shown anew from inside one of its buttons.
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
}

void NoticeBar::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        updateColors();
}

void NoticeBar::updateColors()
{
    const QPalette surroundings = parentWidget() ? parentWidget()->palette() : palette();
    const auto amber = nsColor(QStringLiteral("yellow"));
    const Tint tint =
        softTint(amber ? toQColor(*amber, surroundings) : Qt::yellow, surroundings.color(QPalette::Window),
                 surroundings.color(QPalette::WindowText), textContrast(surroundings));
    m_ground = tint.ground;
    QPalette labelPalette = surroundings;
    labelPalette.setColor(QPalette::WindowText, tint.text);
    m_label->setPalette(labelPalette);
    update();
}

void NoticeBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_ground);
    const qreal radius = m_flush ? 0 : 6;
    painter.drawRoundedRect(rect(), radius, radius);
}

} // namespace orvelle
