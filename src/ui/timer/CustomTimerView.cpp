#include "ui/timer/CustomTimerView.h"

#include "base/Text.h"
#include "ui/common/Icons.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

#include <utility>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int pictureSide = 40;
constexpr int firstMinutes = 15; ///< what is proposed

} // namespace

CustomTimerView::CustomTimerView(std::function<void(qint64)> onStart, std::function<void()> onCancel, QWidget *parent)
    : QWidget(parent, Qt::Dialog), m_onStart(std::move(onStart)), m_onCancel(std::move(onCancel))
{
    setObjectName(u"CustomTimer"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(text("timer.customTitle"_text));
    setWindowIcon(symbolIcon(u"timer"_s));
    auto *picture = new QLabel(this);
    picture->setPixmap(symbolIcon(u"timer"_s).pixmap(QSize(pictureSide, pictureSide), devicePixelRatioF()));
    auto *title = new QLabel(text("timer.customTitle"_text), this);
    QFont bold = title->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    title->setFont(bold);
    auto *subtitle = new QLabel(text("timer.customSubtitle"_text), this);

    m_hours = makeField("hours", mostHours, text("timer.unitHours"_text));
    m_minutes = makeField("minutes", 59, text("timer.unitMinutes"_text));
    m_minutes->setValue(firstMinutes);
    const auto follow = [this] { m_start->setEnabled(total() > 0); };
    connect(m_hours, &QSpinBox::valueChanged, this, follow);
    connect(m_minutes, &QSpinBox::valueChanged, this, follow);
    auto *fields = new QHBoxLayout;
    fields->setSpacing(8);
    for (QSpinBox *field : {m_hours, m_minutes}) {
        auto *unit = new QLabel(field->accessibleName(), this);
        unit->setBuddy(field);
        fields->addWidget(field);
        fields->addWidget(unit);
        fields->addSpacing(8);
    }
    fields->addStretch(1);

    m_start = new QPushButton(text("timer.startButton"_text), this);
    m_start->setObjectName(u"start"_s);
    m_start->setDefault(true);
    auto *cancel = new QPushButton(text("timer.cancel"_text), this);
    cancel->setObjectName(u"cancel"_s);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(m_start);

    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(20, 18, 20, 16);
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(6);
    grid->addWidget(picture, 0, 0, 2, 1, Qt::AlignTop);
    grid->addWidget(title, 0, 1);
    grid->addWidget(subtitle, 1, 1);
    grid->setRowMinimumHeight(2, 8);
    grid->addLayout(fields, 3, 1);
    grid->setRowMinimumHeight(4, 12);
    grid->addLayout(buttons, 5, 0, 1, 2);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    connect(m_start, &QPushButton::clicked, this, &CustomTimerView::start);
    connect(cancel, &QPushButton::clicked, this, &QWidget::close);
    m_minutes->setFocus();
    m_minutes->selectAll();
}

QSpinBox *CustomTimerView::makeField(const char *objectName, int most, const QString &unit)
{
    auto *field = new QSpinBox(this);
    field->setObjectName(QString::fromLatin1(objectName));
    field->setRange(0, most);
    field->setAlignment(Qt::AlignTrailing);
    field->setAccessibleName(unit);
    field->setMinimumWidth(field->fontMetrics().averageCharWidth() * 10);
    return field;
}

qint64 CustomTimerView::total() const
{
    return qint64(m_hours->value()) * 3600 + qint64(m_minutes->value()) * 60;
}

void CustomTimerView::start()
{
    if (total() <= 0)
        return;
    m_onCancel = nullptr;
    if (const auto onStart = std::exchange(m_onStart, nullptr))
        onStart(total());
    close();
}

void CustomTimerView::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        close();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (auto *focused = qobject_cast<QPushButton *>(focusWidget()))
            focused->click();
        else
            start();
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void CustomTimerView::closeEvent(QCloseEvent *event)
{
    if (const auto onCancel = std::exchange(m_onCancel, nullptr))
        onCancel();
    QWidget::closeEvent(event);
}

} // namespace orvelle
