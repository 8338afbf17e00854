#include "base/Text.h"
#include "links/LinkColors.h"
#include "links/LinkIcons.h"
#include "links/LinkStore.h"
#include "ui/common/LinkIconView.h"
#include "ui/settings/LinkActions.h"
#include "ui/settings/LinkColorMenu.h"
#include "ui/settings/LinkCommands.h"
#include "ui/settings/LinkEditor.h"
#include "ui/settings/LinkField.h"
#include "ui/settings/LinkPathChecker.h"
#include "ui/settings/PageScroll.h"
#include "ui/settings/Sections.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStyleOptionToolButton>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace orvelle {

namespace {

constexpr int iconSide = 32;
constexpr int leastHeight = 120;

/// A button that says by an arrow that it opens something.
class PopupButton : public QToolButton
{
public:
    explicit PopupButton(QWidget *parent) : QToolButton(parent)
    {
        setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        setFocusPolicy(Qt::StrongFocus);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

protected:
    void initStyleOption(QStyleOptionToolButton *option) const override
    {
        QToolButton::initStyleOption(option);
        option->features |= QStyleOptionToolButton::HasMenu;
    }
};

QString widest(const QStringList &texts, const QFontMetrics &metrics)
{
    return *std::max_element(texts.begin(), texts.end(), [&metrics](const QString &a, const QString &b) {
        return metrics.horizontalAdvance(a) < metrics.horizontalAdvance(b);
    });
}

QLabel *fieldLabel(const QString &title, QWidget *parent)
{
    auto *label = sectionSubtitle(title, parent);
    label->setWordWrap(false);
    return label;
}

QPushButton *commandButton(QAction *action, QWidget *parent)
{
    auto *button = new QPushButton(action->icon(), action->text(), parent);
    button->setObjectName(QStringLiteral("editor.") + action->objectName());
    button->setAutoDefault(false);
    QObject::connect(button, &QPushButton::clicked, action, &QAction::trigger);
    return button;
}

} // namespace

LinkEditor::LinkEditor(const SettingsServices &services, LinkCommands &commands, LinkActions &actions,
                       const LinkPathChecker &paths, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_commands(commands),
      m_actions(actions),
      m_paths(paths),
      m_nothing(sectionSubtitle(text("settings.nothingSelected"_text), this)),
      m_form(new QWidget(this))
{
    setObjectName(QStringLiteral("linkEditor"));
    setAccessibleName(text("settings.editor"_text));
    m_nothing->setAlignment(Qt::AlignCenter);

    auto *column = new QVBoxLayout(m_form);
    column->setContentsMargins(12, 4, 4, 4);
    column->setSpacing(4);
    column->addWidget(makeHeader());
    column->addSpacing(4);
    addFields(*column);
    addLooks(*column);
    addButtons(*column);

    auto *whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    m_scroll = new PageScroll(m_form, this);
    m_scroll->setMinimumHeight(leastHeight);
    whole->addWidget(m_scroll);
    whole->addWidget(m_nothing, 1);
    reserveWidth();

    connect(&m_services.links, &LinkStore::linksChanged, this, &LinkEditor::refresh);
    connect(&m_services.links, &LinkStore::faviconsChanged, this, &LinkEditor::refresh);
    connect(&m_paths, &LinkPathChecker::changed, this, &LinkEditor::refresh);
    showNothing();
}

/// As wide as the widest of what may ever stand here, so that the list beside
/// it does not move with the selection.
void LinkEditor::reserveWidth()
{
    QStringList colors{text("settings.defaultIcon"_text), text("settings.various"_text)};
    for (const ColorChoice &choice : allColors())
        colors += text(choice.label);
    QStringList icons = colors.mid(0, 2);
    for (const auto table : {groupIcons(), networkIcons(), noteIcons()}) {
        for (const IconChoice &choice : table)
            icons += text(choice.label);
    }
    m_colorButton->setIcon(colorSwatch(QStringLiteral("red"), palette()));
    m_colorButton->setText(widest(colors, fontMetrics()));
    m_iconButton->setIcon(m_colorButton->icon());
    m_iconButton->setText(widest(icons, fontMetrics()));
    setMinimumWidth(m_scroll->minimumSizeHint().width());
}

QWidget *LinkEditor::makeHeader()
{
    auto *header = new QWidget(m_form);
    m_icon = new LinkIconView(iconSide, header);
    m_kind = sectionTitle(QString(), header);
    m_kind->setObjectName(QStringLiteral("editor.kind"));
    m_detail = sectionSubtitle(QString(), header);
    m_detail->setObjectName(QStringLiteral("editor.detail"));
    auto *texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addStretch(1);
    texts->addWidget(m_kind);
    texts->addWidget(m_detail);
    texts->addStretch(1);
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins({});
    row->addWidget(m_icon);
    row->addLayout(texts, 1);
    return header;
}

void LinkEditor::addFields(QVBoxLayout &column)
{
    m_nameLabel = fieldLabel(text("settings.column.name"_text), m_form);
    m_name = new LinkField([this](const QString &typed) { return commitName(typed); }, m_form);
    m_name->setObjectName(QStringLiteral("editor.name"));
    m_name->setAccessibleName(m_nameLabel->text());
    m_pathLabel = fieldLabel(text("settings.address"_text), m_form);
    m_path = new LinkField([this](const QString &typed) { return commitPath(typed); }, m_form);
    m_path->setObjectName(QStringLiteral("editor.path"));
    m_choose = new QToolButton(m_form);
    m_choose->setObjectName(QStringLiteral("editor.choose"));
    m_choose->setText(text("settings.choose"_text));
    m_choose->setFocusPolicy(Qt::StrongFocus);
    m_problem = new QLabel(m_form);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    m_problem->setObjectName(QStringLiteral("editor.problem"));
    m_problem->hide();
    connect(m_choose, &QToolButton::clicked, this, &LinkEditor::choosePath);
    for (LinkField *field : {m_name, m_path})
        connect(field, &LinkField::settled, this, [this] { showProblem({}); });

    column.addWidget(m_nameLabel);
    column.addWidget(m_name);
    column.addSpacing(4);
    column.addWidget(m_pathLabel);
    auto *row = new QHBoxLayout;
    row->setSpacing(4);
    row->addWidget(m_path, 1);
    row->addWidget(m_choose);
    column.addLayout(row);
    column.addWidget(m_problem);
    column.addSpacing(4);
}

QToolButton *LinkEditor::makeMenuButton(const char *name)
{
    auto *button = new PopupButton(m_form);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

void LinkEditor::addLooks(QVBoxLayout &column)
{
    m_iconLabel = fieldLabel(text("settings.icon"_text), m_form);
    m_iconButton = makeMenuButton("editor.icon");
    connect(m_iconButton, &QToolButton::clicked, this, &LinkEditor::chooseIcon);
    m_colorLabel = fieldLabel(text("settings.color"_text), m_form);
    m_colorButton = makeMenuButton("editor.color");
    m_colors = new LinkColorMenu(m_colorButton);
    m_colorButton->setMenu(m_colors);
    m_colorButton->setPopupMode(QToolButton::InstantPopup);
    connect(m_colors, &ColorMenu::chosen, this,
            [this](const QString &key) { m_commands.recolor(key.isEmpty() ? std::nullopt : std::optional(key)); });
    m_colored = new QCheckBox(text("settings.coloredInMenu"_text), m_form);
    m_colored->setObjectName(QStringLiteral("editor.colored"));
    connect(m_colored, &QCheckBox::clicked, this, &LinkEditor::takeColoredInMenu);

    auto *row = new QGridLayout;
    row->setHorizontalSpacing(8);
    row->setVerticalSpacing(4);
    row->addWidget(m_iconLabel, 0, 0);
    row->addWidget(m_iconButton, 1, 0);
    row->addWidget(m_colorLabel, 0, 1);
    row->addWidget(m_colorButton, 1, 1);
    column.addLayout(row);
    column.addSpacing(4);
    column.addWidget(m_colored);
}

void LinkEditor::addButtons(QVBoxLayout &column)
{
    m_sort = commandButton(m_actions.sort, m_form);
    m_open = commandButton(m_actions.open, m_form);
    m_reveal = commandButton(m_actions.reveal, m_form);
    m_move = new QPushButton(m_actions.moveMenu()->icon(), m_actions.moveMenu()->title(), m_form);
    m_move->setObjectName(QStringLiteral("editor.move"));
    m_move->setAutoDefault(false);
    m_move->setMenu(m_actions.moveMenu());
    m_remove = commandButton(m_actions.remove, m_form);
    column.addSpacing(8);
    for (QPushButton *button : {m_sort, m_open, m_reveal, m_move, m_remove})
        column.addWidget(button);
    column.addStretch(1);
}

} // namespace orvelle
