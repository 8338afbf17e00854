#include "ui/notes/NoteTitleBarView.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "links/LinkColors.h"
#include "links/LinkStore.h"
#include "links/NewNote.h"
#include "platform/Clock.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/ColorMenu.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QToolButton>

namespace orvelle {

NoteTitleBarView::NoteTitleBarView(const NoteEditorServices &services, const LinkItem &note, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_note(note),
      m_icon(new QLabel(this)),
      m_name(new QLineEdit(this)),
      m_colorButton(new QToolButton(this)),
      m_colors(new ColorMenu(this))
{
    buildRow();
    connect(m_name, &QLineEdit::editingFinished, this, &NoteTitleBarView::commitName);
    connect(m_colors, &ColorMenu::chosen, this, [this](const QString &key) { applyChanges(m_name->text(), key); });
    m_colors->addSeparator();
    QAction *forNew = m_colors->addAction(text("note.colorForNew"_text));
    connect(forNew, &QAction::triggered, this, [this] { setNewNoteColor(m_services.defaults, colorKey()); });
    connect(m_colors, &QMenu::aboutToShow, this, [this, forNew] {
        m_colors->setCurrent(colorKey());
        forNew->setEnabled(newNoteColor(m_services.defaults) != colorKey());
    });
    setNote(note);
}

void NoteTitleBarView::buildRow()
{
    m_name->setObjectName(QStringLiteral("noteName"));
    m_name->setFrame(false);
    countAllAsTyped(m_name);
    storeWhatIsWrittenUnfocused(m_name, [this] { commitName(); });
    m_name->setAccessibleName(text("note.name"_text));
    m_name->setPlaceholderText(text("note.name"_text));
    QFont font = m_name->font();
    font.setBold(true);
    m_name->setFont(font);

    m_colorButton->setObjectName(QStringLiteral("noteColor"));
    m_colorButton->setAutoRaise(true);
    m_colorButton->setFocusPolicy(Qt::StrongFocus);
    m_colorButton->setPopupMode(QToolButton::InstantPopup);
    m_colorButton->setMenu(m_colors);
    m_colorButton->setToolTip(text("note.color"_text));
    m_colorButton->setAccessibleName(text("note.color"_text));

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 8, 6);
    row->setSpacing(8);
    row->addWidget(m_icon);
    row->addWidget(m_name, 1);
    row->addWidget(m_colorButton);
}

void NoteTitleBarView::setNote(const LinkItem &note)
{
    m_note = note;
    if (!m_name->isModified())
        showName();
    updateColors();
}

void NoteTitleBarView::setEditable(bool editable)
{
    m_name->setReadOnly(!editable);
    m_colorButton->setEnabled(editable);
}

QString NoteTitleBarView::colorKey() const
{
    return m_note.customIconColor.value_or(QStringLiteral("yellow"));
}

void NoteTitleBarView::commitName()
{
    if (!m_name->isModified())
        return;
    const QString name = m_name->text();
    m_name->setModified(false);
    applyChanges(name, colorKey());
    showName();
}

void NoteTitleBarView::showName()
{
    m_name->setText(m_note.name);
    m_name->setModified(false);
}

void NoteTitleBarView::applyChanges(const QString &name, const QString &colorKey)
{
    m_name->setModified(false);
    const QString newName = name.trimmed().isEmpty() ? m_note.name : name.trimmed();
    auto current = m_services.links.findByText(m_note.stableId);
    if (!current || (current->name == newName && this->colorKey() == colorKey)) {
        showName();
        return;
    }
    current->name = newName;
    if (this->colorKey() != colorKey || current->customIconColor)
        current->customIconColor = colorKey;
    if (!m_services.links.updateLink(*current))
        return;
    setNote(*current);
    emit m_services.notifications.noteColorChanged(current->id);
}

void NoteTitleBarView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        updateColors();
}

void NoteTitleBarView::updateColors()
{
    const QPalette surroundings = parentWidget() ? parentWidget()->palette() : palette();
    const LinkColor color = nsColor(m_note.customIconColor).value_or(displayColor(m_note));
    const QColor tintColor = toQColor(color, surroundings);
    const Tint tint = softTint(tintColor, surroundings.color(QPalette::Window),
                               surroundings.color(QPalette::WindowText), textContrast(surroundings));
    m_ground = tint.ground;

    QPalette namePalette = surroundings;
    namePalette.setColor(QPalette::Base, Qt::transparent);
    namePalette.setColor(QPalette::Text, tint.text);
    m_name->setPalette(namePalette);
    m_icon->setPixmap(symbolPixmap(m_note.sfSymbolName(), 16, tint.text, devicePixelRatioF()));
    m_colorButton->setIcon(colorSwatch(colorKey(), surroundings));
    update();
}

void NoteTitleBarView::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), m_ground);
}

} // namespace orvelle
