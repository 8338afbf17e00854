#include "ui/notes/NoteFormatBar.h"

#include "base/Text.h"
#include "ui/common/Icons.h"
#include "ui/notes/NoteFormatting.h"
#include "ui/notes/RichTextEdit.h"

#include <QActionGroup>
#include <QMenu>
#include <QToolButton>

#include <algorithm>

namespace orvelle {

enum class NoteFormatBar::Command { Bold, Italic, Underline, Strike, Bullets, Numbers, Checks, Link };

struct NoteFormatBar::Entry {
    Command command;
    TextKey title;
    const char *symbol;
    QKeyCombination keys;
};

namespace {

struct Size {
    TextSize size;
    TextKey title;
};

constexpr Size sizes[] = {
    {TextSize::Small, "note.size.small"_text}, {TextSize::Normal, "note.size.normal"_text},
    {TextSize::Large, "note.size.large"_text}, {TextSize::Larger, "note.size.larger"_text},
    {TextSize::Huge, "note.size.huge"_text},
};

bool RichStyle::*flagOf(int command)
{
    static constexpr bool RichStyle::*flags[] = {&RichStyle::bold, &RichStyle::italic, &RichStyle::underline,
                                                 &RichStyle::strike};
    return flags[command];
}

QString withKeys(const QString &title, const QKeySequence &keys)
{
    return QStringLiteral("%1 (%2)").arg(title, keys.toString(QKeySequence::NativeText));
}

} // namespace

NoteFormatBar::NoteFormatBar(RichTextEdit &editor, QWidget *parent)
    : QToolBar(parent), m_editor(editor), m_sizes(new QActionGroup(this))
{
    static constexpr auto ctrl = Qt::ControlModifier;
    static constexpr auto ctrlShift = Qt::ControlModifier | Qt::ShiftModifier;
    static const Entry styles[] = {
        {Command::Bold, "note.bold"_text, "bold", ctrl | Qt::Key_B},
        {Command::Italic, "note.italic"_text, "italic", ctrl | Qt::Key_I},
        {Command::Underline, "note.underline"_text, "underline", ctrl | Qt::Key_U},
        {Command::Strike, "note.strike"_text, "strikethrough", ctrlShift | Qt::Key_X},
    };
    static const Entry structure[] = {
        {Command::Bullets, "note.bullets"_text, "list.bullet", ctrlShift | Qt::Key_8},
        {Command::Numbers, "note.numbers"_text, "list.number", ctrlShift | Qt::Key_7},
        {Command::Checks, "note.checks"_text, "checklist.bold", ctrlShift | Qt::Key_9},
        {Command::Link, "note.link"_text, "link.bold", ctrl | Qt::Key_K},
    };
    setObjectName(QStringLiteral("noteFormat"));
    setAccessibleName(text("note.format"_text));
    setIconSize(QSize(16, 16));
    setMovable(false);
    for (const Entry &entry : styles)
        addEntry(entry);
    addSizes();
    addSeparator();
    for (const Entry &entry : structure)
        addEntry(entry);
    addSeparator();
    addHistory();
    for (QToolButton *button : findChildren<QToolButton *>())
        button->setFocusPolicy(Qt::TabFocus);
    connect(&editor, &QTextEdit::currentCharFormatChanged, this, &NoteFormatBar::updateState);
    connect(&editor, &QTextEdit::cursorPositionChanged, this, &NoteFormatBar::updateState);
    connect(&editor, &QTextEdit::textChanged, this, &NoteFormatBar::updateState);
    updateState();
}

void NoteFormatBar::addEntry(const Entry &entry)
{
    const QString title = text(entry.title);
    QAction *action = addAction(symbolIcon(QLatin1StringView(entry.symbol)), title);
    action->setObjectName(QLatin1StringView(entry.symbol));
    action->setShortcut(entry.keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(withKeys(title, entry.keys));
    action->setCheckable(entry.command != Command::Link);
    parentWidget()->addAction(action);
    connect(action, &QAction::triggered, this, [this, command = entry.command] { run(command); });
    m_actions.insert(entry.command, action);
}

void NoteFormatBar::addSizes()
{
    auto *menu = new QMenu(this);
    for (const Size &size : sizes) {
        QAction *action = menu->addAction(text(size.title));
        action->setCheckable(true);
        action->setData(static_cast<int>(size.size));
        m_sizes->addAction(action);
        connect(action, &QAction::triggered, this,
                [this, chosen = size.size] { m_editor.changeStyle([chosen](RichStyle &s) { s.size = chosen; }); });
    }
    auto *button = new QToolButton(this);
    button->setObjectName(QStringLiteral("noteSize"));
    button->setIcon(symbolIcon(QStringLiteral("textformat.size")));
    button->setToolTip(text("note.size"_text));
    button->setAccessibleName(text("note.size"_text));
    button->setPopupMode(QToolButton::InstantPopup);
    button->setMenu(menu);
    addWidget(button);

    const std::pair<QList<QKeySequence>, int> steps[] = {
        {{QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)}, 1},
        {{QKeySequence(Qt::CTRL | Qt::Key_Minus)}, -1},
    };
    for (const auto &[keys, by] : steps) {
        auto *action = new QAction(this);
        action->setShortcuts(keys);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        parentWidget()->addAction(action);
        connect(action, &QAction::triggered, this, [this, step = by] { changeSize(step); });
    }
}

void NoteFormatBar::addHistory()
{
    const auto add = [this](const char *symbol, TextKey title, QKeySequence::StandardKey keys) {
        QAction *action = addAction(symbolIcon(QLatin1StringView(symbol)), text(title));
        action->setToolTip(withKeys(text(title), QKeySequence(keys)));
        action->setEnabled(false);
        return action;
    };
    // Their keys are the editor's own.
    QAction *undo = add("arrow.uturn.backward", "note.undo"_text, QKeySequence::Undo);
    QAction *redo = add("arrow.uturn.forward", "note.redo"_text, QKeySequence::Redo);
    connect(undo, &QAction::triggered, &m_editor, &QTextEdit::undo);
    connect(redo, &QAction::triggered, &m_editor, &QTextEdit::redo);
    connect(&m_editor, &QTextEdit::undoAvailable, undo, &QAction::setEnabled);
    connect(&m_editor, &QTextEdit::redoAvailable, redo, &QAction::setEnabled);
}

void NoteFormatBar::run(Command command)
{
    switch (command) {
    case Command::Bold:
    case Command::Italic:
    case Command::Underline:
    case Command::Strike: {
        const auto flag = flagOf(static_cast<int>(command));
        const bool on = !(m_editor.currentStyle().*flag);
        m_editor.changeStyle([flag, on](RichStyle &style) { style.*flag = on; });
        break;
    }
    case Command::Bullets:
        toggleList(m_editor.textCursor(), ListKind::Bullet);
        break;
    case Command::Numbers:
        toggleList(m_editor.textCursor(), ListKind::Numbered);
        break;
    case Command::Checks:
        toggleList(m_editor.textCursor(), ListKind::Check);
        break;
    case Command::Link:
        emit linkRequested();
        break;
    }
    updateState();
}

void NoteFormatBar::changeSize(int by)
{
    m_editor.changeStyle([by](RichStyle &style) {
        const int size = static_cast<int>(style.size) + by;
        style.size = static_cast<TextSize>(
            std::clamp(size, static_cast<int>(TextSize::Small), static_cast<int>(TextSize::Huge)));
    });
}

bool NoteFormatBar::isOn(Command command) const
{
    const ListKind list = BlockList::of(m_editor.textCursor().block()).kind;
    switch (command) {
    case Command::Bold:
    case Command::Italic:
    case Command::Underline:
    case Command::Strike:
        return m_editor.currentStyle().*flagOf(static_cast<int>(command));
    case Command::Bullets:
        return list == ListKind::Bullet;
    case Command::Numbers:
        return list == ListKind::Numbered;
    case Command::Checks:
        return list == ListKind::Check;
    case Command::Link:
        break;
    }
    return false;
}

void NoteFormatBar::updateState()
{
    for (auto it = m_actions.cbegin(); it != m_actions.cend(); ++it) {
        if (it.value()->isCheckable())
            it.value()->setChecked(isOn(it.key()));
    }
    const int size = static_cast<int>(m_editor.currentStyle().size);
    for (QAction *action : m_sizes->actions())
        action->setChecked(action->data().toInt() == size);
}

} // namespace orvelle
