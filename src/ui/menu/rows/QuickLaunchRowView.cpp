#include "ui/menu/rows/QuickLaunchRowView.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "platform/Applications.h"
#include "ui/common/ApplicationIcons.h"
#include "ui/common/Colors.h"

#include <QPainter>
#include <QToolTip>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int chooseGap = 12;
constexpr int extraHeight = 4; ///< beyond a line, for the capsule
constexpr QColor nightTop(0x17, 0x19, 0x26);
constexpr QColor nightBottom(0x0b, 0x0c, 0x14);

} // namespace

QuickLaunchRowView::QuickLaunchRowView(const QuickLaunchManager &manager, const Applications &applications,
                                       const Notifications &notifications, Actions actions, QWidget *parent)
    : WidgetRowView(parent),
      m_manager(manager),
      m_applications(applications),
      m_actions(std::move(actions)),
      m_choose(new MenuRowButton(this))
{
    m_choose->setObjectName(u"choose"_s);
    m_choose->setText(text("quicklaunch.choose"_text));
    connect(m_choose, &QAbstractButton::clicked, this, [this] { m_actions.openSettings(); });
    connect(&notifications, &Notifications::quickLaunchChanged, this, &QuickLaunchRowView::refresh);
    refresh();
}

void QuickLaunchRowView::refresh()
{
    const bool hadFocus = hasFocusInside();
    qDeleteAll(m_buttons);
    m_buttons.clear();
    m_style = m_manager.displayStyle();
    const QuickLaunchSlots &apps = m_manager.apps();
    for (int slot = 0; slot < apps.size(); ++slot) {
        const auto &app = apps[slot];
        if (!app)
            continue;
        const auto found = m_applications.find(app->path, app->bundleIdentifier.value_or(QString()));
        auto *button = new QuickLaunchButton(this);
        button->setObjectName(u"slot.%1"_s.arg(slot));
        const QColor ink = m_style == QuickLaunchDisplayStyle::Neon ? QColor(Qt::white) : textColor();
        button->setContent(
            {slot, found ? found->name : app->name, applicationIcon(found ? found->icon : QString(), ink), !found},
            m_style, static_cast<int>(m_buttons.size()));
        connect(button, &QAbstractButton::clicked, this, [this, button] { pressed(*button); });
        m_buttons += button;
        button->show();
    }
    m_choose->setVisible(m_buttons.isEmpty());
    describe(text("quicklaunch.title"_text), m_buttons.isEmpty() ? text("quicklaunch.noApps"_text) : QString());
    placeButtons();
    if (hadFocus)
        focusButton();
    updateGeometry();
    update();
}

void QuickLaunchRowView::pressed(const QuickLaunchButton &button)
{
    if (button.content().isGone)
        QToolTip::showText(button.mapToGlobal(button.rect().center()), button.toolTip(), this);
    else
        m_actions.launch(button.content().slot);
}

QSize QuickLaunchRowView::sizeHint() const
{
    if (m_buttons.isEmpty()) {
        const int before = MenuLook::margin + MenuLook::iconSide + MenuLook::iconGap;
        const int title = QFontMetrics(font()).horizontalAdvance(text("quicklaunch.title"_text));
        return {before + title + chooseGap + m_choose->sizeHint().width() + MenuLook::margin,
                lineHeight() + extraHeight};
    }
    const QSize button = m_buttons.first()->sizeHint();
    return {2 * MenuLook::margin + static_cast<int>(m_buttons.size()) * button.width(), button.height()};
}

void QuickLaunchRowView::placeButtons()
{
    const QSize size = m_choose->sizeHint();
    m_choose->setGeometry(mirrored(
        {width() - MenuLook::margin - size.width(), (height() - size.height()) / 2, size.width(), size.height()}));
    const int count = static_cast<int>(m_buttons.size());
    const int room = width() - 2 * MenuLook::margin;
    for (int i = 0; i < count; ++i) {
        const int left = room * i / count;
        const int right = room * (i + 1) / count;
        m_buttons[i]->setGeometry(mirrored({MenuLook::margin + left, 0, right - left, height()}));
    }
}

void QuickLaunchRowView::resizeEvent(QResizeEvent *event)
{
    WidgetRowView::resizeEvent(event);
    placeButtons();
}

void QuickLaunchRowView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintFocus(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF inner = QRectF(rect()).adjusted(6, 1, -6, -1);
    if (m_buttons.isEmpty()) {
        QRect icon = iconRect();
        icon.moveTop((height() - icon.height()) / 2);
        paintSymbol(painter, u"bolt.fill"_s, icon, textColor());
        painter.setPen(textColor());
        painter.drawText(mirrored(contentRect()), Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine,
                         text("quicklaunch.title"_text));
    } else if (m_style == QuickLaunchDisplayStyle::Dock) {
        // The shelf on which the icons stand.
        const QRectF shelf(inner.x(), height() - 30, inner.width(), 27);
        QLinearGradient glass(shelf.topLeft(), shelf.bottomLeft());
        glass.setColorAt(0, faint(textColor(), 0.05));
        glass.setColorAt(1, faint(textColor(), 0.16));
        painter.setPen(QPen(faint(textColor(), 0.18), 1));
        painter.setBrush(glass);
        painter.drawRoundedRect(shelf.adjusted(0.5, 0.5, -0.5, -0.5), 9, 9);
    } else if (m_style == QuickLaunchDisplayStyle::Neon) {
        QLinearGradient night(inner.topLeft(), inner.bottomLeft());
        night.setColorAt(0, nightTop);
        night.setColorAt(1, nightBottom);
        painter.setPen(isDark(palette()) ? QPen(faint(Qt::white, 0.12), 1) : QPen(Qt::NoPen));
        painter.setBrush(night);
        painter.drawRoundedRect(inner, 12, 12);
    }
}

} // namespace orvelle
