#include "ui/settings/SnapshotPreview.h"

#include "base/DisplayTitle.h"
#include "base/Text.h"
#include "links/LinkTree.h"
#include "ui/common/Icons.h"
#include "ui/common/LinkIconView.h"
#include "ui/common/PlainToolTip.h"
#include "ui/settings/Sections.h"
#include "ui/settings/SnapshotTexts.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace orvelle {

namespace {

constexpr QSize firstSize{560, 520};
constexpr int leastWidth = 420;
constexpr int iconSide = 16;
/// Small snapshots show all they hold at once.
constexpr qint64 openedAtOnce = 60;

QString fateText(SnapshotDifference::Fate fate)
{
    using Fate = SnapshotDifference::Fate;
    switch (fate) {
    case Fate::ComesBack:
        return text("snapshot.fate.comesBack"_text);
    case Fate::Changes:
        return text("snapshot.fate.changes"_text);
    case Fate::Moves:
        return text("snapshot.fate.moves"_text);
    case Fate::Same:
        break;
    }
    return {};
}

/// "12 items come back", or nothing for none.
void addCount(QStringList &lines, qint64 count, TextKey one, TextKey several)
{
    if (count == 1)
        lines += text(one);
    else if (count > 1)
        lines += text(several, count);
}

/// One by one, so that each group is told to fill itself.
void openAll(QTreeWidgetItem *parent)
{
    for (int i = 0; i < parent->childCount(); ++i) {
        parent->child(i)->setExpanded(true);
        openAll(parent->child(i));
    }
}

} // namespace

SnapshotPreview::SnapshotPreview(const SnapshotInfo &info, const LinkList &links, const LinkList &current,
                                 Timestamp now, QWidget *parent)
    : QDialog(parent), m_difference(snapshotDifference(current, links))
{
    setObjectName(QStringLiteral("SnapshotPreview"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(text("snapshot.previewTitle"_text));

    auto *buttons = new QDialogButtonBox(this);
    auto *restore = buttons->addButton(text("snapshot.restore"_text), QDialogButtonBox::AcceptRole);
    restore->setObjectName(QStringLiteral("restore"));
    restore->setIcon(symbolIcon(QStringLiteral("arrow.uturn.backward")));
    restore->setEnabled(!m_difference.isEmpty());
    buttons->addButton(text("snapshot.close"_text), QDialogButtonBox::RejectRole)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 16);
    column->setSpacing(12);
    column->addWidget(makeHead(info, now));
    column->addWidget(makeTree(links), 1);
    column->addWidget(buttons);
    // A window's own minimum size does not reckon with wrapped lines.
    setMinimumSize(leastWidth, column->totalMinimumHeightForWidth(leastWidth));
    resize(firstSize.boundedTo(screen()->availableSize() * 0.9));
}

QStringList SnapshotPreview::changes() const
{
    QStringList lines;
    addCount(lines, m_difference.comeBack, "snapshot.oneComesBack"_text, "snapshot.comeBack %lld"_text);
    addCount(lines, m_difference.go, "snapshot.oneGoes"_text, "snapshot.go %lld"_text);
    addCount(lines, m_difference.change, "snapshot.oneChanges"_text, "snapshot.change %lld"_text);
    addCount(lines, m_difference.move, "snapshot.oneMoves"_text, "snapshot.move %lld"_text);
    if (m_difference.reorders)
        lines += text("snapshot.reorders"_text);
    return lines.isEmpty() ? QStringList{text("snapshot.noChange"_text)} : lines;
}

QWidget *SnapshotPreview::makeHead(const SnapshotInfo &info, Timestamp now)
{
    auto *head = new QWidget(this);
    auto *column = new QVBoxLayout(head);
    column->setContentsMargins({});
    column->setSpacing(4);
    column->addWidget(pageTitle(momentText(info.takenAt, now), head));
    column->addWidget(sectionSubtitle(text("snapshot.takenBefore %@"_text, snapshotReasonText(info)) +
                                          QStringLiteral(" · ") + itemCountText(info.itemCount),
                                      head));
    column->addSpacing(6);
    column->addWidget(sectionTitle(text("snapshot.changesTitle"_text), head));
    auto *list = new QLabel(QStringLiteral("• ") + changes().join(QStringLiteral("\n• ")), head);
    list->setObjectName(QStringLiteral("changes"));
    list->setTextFormat(Qt::PlainText);
    list->setWordWrap(true);
    column->addWidget(list);
    return head;
}

QTreeWidget *SnapshotPreview::makeTree(const LinkList &links)
{
    auto *tree = new QTreeWidget(this);
    tree->setObjectName(QStringLiteral("snapshotTree"));
    tree->setAccessibleName(text("snapshot.previewTitle"_text));
    tree->setColumnCount(2);
    tree->setHeaderHidden(true);
    tree->setUniformRowHeights(true);
    tree->setIconSize({iconSide, iconSide});
    tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    tree->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    connect(tree, &QTreeWidget::itemExpanded, this, &SnapshotPreview::fill);
    addItems(links, tree->invisibleRootItem());
    if (countAll(links) <= openedAtOnce)
        openAll(tree->invisibleRootItem());
    return tree;
}

void SnapshotPreview::addItems(const LinkList &links, QTreeWidgetItem *parent)
{
    const QWidget &view = *this;
    QList<QTreeWidgetItem *> rows;
    rows.reserve(links.size());
    for (const LinkItem &item : links) {
        const QString fate = fateText(m_difference.fates.value(item.stableId));
        auto *row = new QTreeWidgetItem({displayTitle(item.name), fate});
        row->setIcon(0, linkRowPixmap(item, iconSide, view.palette(), view.devicePixelRatioF()));
        row->setToolTip(0, plainToolTip(item.path.isEmpty() ? item.name : item.path));
        if (item.children && !item.children->isEmpty()) {
            row->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
            m_unfilled.insert(row, *item.children);
        }
        rows += row;
    }
    parent->addChildren(rows);
}

void SnapshotPreview::fill(QTreeWidgetItem *group)
{
    addItems(m_unfilled.take(group), group);
}

} // namespace orvelle
