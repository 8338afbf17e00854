#include "ui/settings/LinkIconChooser.h"

#include "base/Text.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/Icons.h"
#include "ui/settings/LinkSearch.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace orvelle {

namespace {

constexpr int pictureSide = 22;
constexpr int columns = 4;
constexpr int rows = 5;

} // namespace

LinkIconChooser::LinkIconChooser(QWidget *parent)
    : QFrame(parent, Qt::Popup),
      m_search(new QLineEdit(this)),
      m_grid(new QListWidget(this)),
      m_nothing(new QLabel(this))
{
    setObjectName(QStringLiteral("iconChooser"));
    setFrameShape(QFrame::StyledPanel);
    setAccessibleName(text("settings.icon"_text));
    m_search->setPlaceholderText(text("settings.iconSearch"_text));
    m_search->setAccessibleName(text("settings.iconSearch"_text));
    addClearButton(m_search);
    m_search->installEventFilter(this);
    m_nothing->setText(text("settings.iconNone"_text));
    m_nothing->setAlignment(Qt::AlignCenter);
    m_nothing->hide();

    followSelection(m_grid);
    m_grid->setAccessibleName(text("settings.icon"_text));
    m_grid->setViewMode(QListView::IconMode);
    m_grid->setMovement(QListView::Static);
    m_grid->setResizeMode(QListView::Adjust);
    m_grid->setUniformItemSizes(true);
    m_grid->setWordWrap(false);
    m_grid->setTextElideMode(Qt::ElideRight);
    m_grid->setIconSize({pictureSide, pictureSide});
    m_grid->setFrameShape(QFrame::NoFrame);
    const QSize cell(std::max(72, fontMetrics().averageCharWidth() * 12), pictureSide + fontMetrics().height() + 20);
    m_grid->setGridSize(cell);
    m_grid->setFixedSize(columns * cell.width() + 24, rows * cell.height() + 4);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(8, 8, 8, 8);
    column->addWidget(m_search);
    column->addWidget(m_grid);
    column->addWidget(m_nothing);
    setFocusProxy(m_search);
    connect(m_search, &QLineEdit::textChanged, this, &LinkIconChooser::filter);
    connect(m_search, &QLineEdit::returnPressed, this, &LinkIconChooser::take);
    connect(m_grid, &QListWidget::itemClicked, this, &LinkIconChooser::take);
    connect(m_grid, &QListWidget::itemActivated, this, &LinkIconChooser::take);
}

void LinkIconChooser::add(const QString &label, const QString &symbol, const QString &value, const QColor &color)
{
    auto *item = new QListWidgetItem(symbolIcon(symbol, color), label, m_grid);
    item->setData(Qt::UserRole, value);
    item->setToolTip(label);
    item->setSizeHint(m_grid->gridSize() - QSize(4, 4));
}

void LinkIconChooser::setChoices(std::span<const IconChoice> choices, const QString &ownSymbol,
                                 const std::optional<QString> &current, const QColor &color)
{
    m_search->clear();
    m_grid->clear();
    add(text("settings.defaultIcon"_text), ownSymbol, QString(), color);
    for (const IconChoice &choice : choices) {
        const QString symbol = QString::fromLatin1(choice.symbol);
        add(text(choice.label), symbol, symbol, color);
    }
    for (int row = 0; row < m_grid->count(); ++row) {
        if (m_grid->item(row)->data(Qt::UserRole).toString() == current.value_or(QString()))
            m_grid->setCurrentRow(row);
    }
}

void LinkIconChooser::popupAt(const QWidget &button)
{
    adjustSize();
    QPoint place = button.mapToGlobal(QPoint(0, button.height() + 2));
    if (const QScreen *on = button.screen()) {
        const QRect room = on->availableGeometry();
        if (place.y() + height() > room.bottom())
            place.setY(button.mapToGlobal(QPoint()).y() - height() - 2);
        place.setX(std::clamp(place.x(), room.left(), std::max(room.left(), room.right() - width())));
        place.setY(std::max(place.y(), room.top()));
    }
    move(place);
    show();
    m_search->setFocus();
    m_grid->scrollToItem(m_grid->currentItem());
}

void LinkIconChooser::filter(const QString &typed)
{
    const LinkSearch search(typed);
    QListWidgetItem *first = nullptr;
    for (int row = 0; row < m_grid->count(); ++row) {
        QListWidgetItem *item = m_grid->item(row);
        item->setHidden(!search.matches(folded(item->text())));
        if (!item->isHidden() && !first)
            first = item;
    }
    if (!m_grid->currentItem() || m_grid->currentItem()->isHidden())
        m_grid->setCurrentItem(first);
    m_grid->setVisible(first);
    m_nothing->setFixedSize(m_grid->size());
    m_nothing->setVisible(!first);
}

void LinkIconChooser::take()
{
    const QListWidgetItem *item = m_grid->currentItem();
    if (!item || item->isHidden())
        return;
    const QString symbol = item->data(Qt::UserRole).toString();
    close();
    emit chosen(symbol);
}

/// The arrows move in the grid while the search field is typed in.
bool LinkIconChooser::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QFrame::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const bool sideways = (key == Qt::Key_Left || key == Qt::Key_Right) && m_search->text().isEmpty();
    if (key != Qt::Key_Down && key != Qt::Key_Up && !sideways)
        return QFrame::eventFilter(watched, event);
    m_grid->setFocus();
    QCoreApplication::sendEvent(m_grid, event);
    return true;
}

} // namespace orvelle
