#include "ui/settings/SyncTab.h"

#include "base/Text.h"
#include "links/LinkStore.h"
#include "ui/common/ExchangeDialogs.h"
#include "ui/common/Icons.h"
#include "ui/settings/Sections.h"
#include "ui/settings/SnapshotSection.h"
#include "ui/settings/SyncSection.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <array>

namespace orvelle {

namespace {

using Dialog = void (ExchangeDialogs::*)(QWidget *);

/// A button; those of one row stand for one kind of document.
struct Command {
    int row;
    int columns; ///< of the two
    const char *name;
    const char *symbol;
    TextKey title;
    Dialog run;
};

const std::array<Command, 5> commands{{
    {0, 1, "export", "square.and.arrow.up", "sync.export"_text, &ExchangeDialogs::exportDocument},
    {0, 1, "import", "square.and.arrow.down", "sync.import"_text, &ExchangeDialogs::importDocument},
    {1, 1, "exportBookmarks", "square.and.arrow.up", "sync.exportBookmarks"_text, &ExchangeDialogs::exportBookmarks},
    {1, 1, "importBookmarks", "square.and.arrow.down", "sync.importBookmarks"_text, &ExchangeDialogs::importBookmarks},
    {2, 2, "importLinkFolder", "folder", "sync.importLinkFolder"_text, &ExchangeDialogs::importLinkFolder},
}};

/// Of both columns of buttons, so that they look alike.
constexpr int buttonWidth = 110;

struct Kind {
    TextKey title;
    TextKey explanation;
};

const std::array<Kind, 3> kinds{{
    {"sync.backup"_text, "sync.backupHint"_text},
    {"sync.bookmarks"_text, "sync.bookmarksHint"_text},
    {"sync.linkFolder"_text, "sync.linkFolderHint"_text},
}};

} // namespace

SyncTab::SyncTab(const SettingsServices &services, QWidget *parent) : QWidget(parent), m_services(services)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(tabMargins());
    column->setSpacing(18);
    if (services.sync)
        column->addWidget(new SyncSection(services, this));
    column->addWidget(makeExchangeSection());
    column->addWidget(new SnapshotSection(services, this), 1);

    const auto bind = [this](QKeySequence::StandardKey keys, bool (LinkStore::*run)()) {
        auto *shortcut = new QShortcut(keys, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, &m_services.links, run);
    };
    bind(QKeySequence::Undo, &LinkStore::undo);
    bind(QKeySequence::Redo, &LinkStore::redo);
}

QWidget *SyncTab::makeExchangeSection()
{
    auto *section = new QWidget(this);
    auto *grid = new QGridLayout(section);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(14);
    grid->setColumnStretch(0, 1);
    grid->setColumnMinimumWidth(1, buttonWidth);
    grid->setColumnMinimumWidth(2, buttonWidth);
    int row = 0;
    for (const Kind &kind : kinds) {
        auto *texts = new QVBoxLayout;
        texts->setSpacing(2);
        texts->addWidget(sectionTitle(text(kind.title), section));
        texts->addWidget(sectionSubtitle(text(kind.explanation), section));
        grid->addLayout(texts, row++, 0);
    }
    std::array<int, kinds.size()> used{};
    for (const Command &command : commands) {
        const auto kind = static_cast<std::size_t>(command.row);
        auto *button = new QPushButton(symbolIcon(QString::fromLatin1(command.symbol)), text(command.title), section);
        button->setObjectName(QString::fromLatin1(command.name));
        button->setAccessibleName(spokenLabel(text(command.title)) + QStringLiteral(": ") + text(kinds.at(kind).title));
        connect(button, &QPushButton::clicked, this,
                [this, run = command.run] { (m_services.exchange.*run)(window()); });
        grid->addWidget(button, command.row, 1 + used.at(kind)++, 1, command.columns);
    }
    return section;
}

} // namespace orvelle
