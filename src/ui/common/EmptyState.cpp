#include "ui/common/EmptyState.h"

#include "ui/common/Colors.h"
#include "ui/common/Icons.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvelle {

namespace {

constexpr int pictureSide = 48;
constexpr int leastWidth = 240;

QLabel *centredLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}

} // namespace

EmptyState::EmptyState(const QString &symbol, const QString &title, const QString &message, QWidget *parent)
    : QFrame(parent), m_symbol(symbol), m_picture(centredLabel({}, this)), m_column(new QVBoxLayout(this))
{
    setFrameShape(QFrame::StyledPanel);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);

    QLabel *titleLabel = centredLabel(title, this);
    QFont font = titleLabel->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.2);
    titleLabel->setFont(font);
    QLabel *messageLabel = centredLabel(message, this);
    messageLabel->setMaximumWidth(420);

    m_column->setSpacing(8);
    m_column->addStretch(1);
    m_column->addWidget(m_picture);
    m_column->addWidget(titleLabel);
    auto *centred = new QHBoxLayout;
    centred->addStretch(1);
    centred->addWidget(messageLabel, 8);
    centred->addStretch(1);
    m_column->addLayout(centred);
    m_column->addSpacing(8);
    m_column->addStretch(1);
}

void EmptyState::addButton(QPushButton *button)
{
    m_column->insertWidget(m_column->count() - 1, button, 0, Qt::AlignHCenter);
}

/// Wrapped lines need more height than a layout by itself asks for, and a
/// splitter around would not tell it. One of several pages takes no room while
/// another is shown.
QSize EmptyState::minimumSizeHint() const
{
    if (isHidden())
        return {0, 0};
    const int width = qMax(QFrame::minimumSizeHint().width(), leastWidth);
    return {width, layout()->totalMinimumHeightForWidth(width)};
}

void EmptyState::updatePicture()
{
    QColor color = palette().color(QPalette::Text);
    if (!isHighContrast(palette()))
        color.setAlphaF(0.35F);
    m_picture->setPixmap(symbolPixmap(m_symbol, pictureSide, color, devicePixelRatioF()));
}

void EmptyState::changeEvent(QEvent *event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        updatePicture();
}

void EmptyState::showEvent(QShowEvent *event)
{
    QFrame::showEvent(event);
    updatePicture();
}

} // namespace orvelle
