#include "ui/common/SyncPreviewView.h"

#include "base/Text.h"
#include "ui/common/Colors.h"
#include "ui/common/EmptyState.h"
#include "ui/common/Icons.h"
#include "ui/common/SyncPreviewModel.h"
#include "ui/common/SyncSummary.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTreeView>
#include <QVBoxLayout>

namespace orvelle {

namespace {

constexpr QSize firstSize{580, 540};
constexpr int leastWidth = 420;
constexpr int headSide = 32;
constexpr int iconSide = 16;
/// Short lists show all they hold at once.
constexpr int openedAtOnce = 200;

QLabel *plainLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    return label;
}

/// Opens the sections, except long ones that would push the next out of sight.
void openSections(QTreeView *tree)
{
    const QAbstractItemModel *model = tree->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex section = model->index(row, 0);
        const bool last = row + 1 == model->rowCount();
        const bool isShort = model->rowCount(section) <= openedAtOnce;
        tree->setExpanded(section, last || isShort);
        // Of duplicates the copies are what is decided about.
        for (int child = 0; isShort && child < model->rowCount(section); ++child)
            tree->expand(model->index(child, 0, section));
    }
}

} // namespace

SyncPreviewView::SyncPreviewView(const SyncAnalysis &analysis, Purpose purpose, QWidget *parent)
    : QDialog(parent), m_model(new SyncPreviewModel(analysis, purpose == Purpose::Apply, this)), m_purpose(purpose)
{
    setObjectName(QStringLiteral("SyncPreviewView"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(text("sync.preview.title"_text));
    setWindowModality(parent ? Qt::WindowModal : Qt::ApplicationModal);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 16);
    column->setSpacing(12);
    addHead(column);
    addChanges(column);
    addButtons(column);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &SyncPreviewView::refresh);
    refresh();
    // A window's own minimum size does not reckon with wrapped lines.
    setMinimumSize(leastWidth, column->totalMinimumHeightForWidth(leastWidth));
    resize(firstSize.boundedTo(screen()->availableSize() * 0.9));
}

const SyncAnalysis &SyncPreviewView::analysis() const
{
    return m_model->analysis();
}

void SyncPreviewView::addHead(QBoxLayout *column)
{
    auto *picture = new QLabel(this);
    picture->setPixmap(symbolIcon(QStringLiteral("arrow.triangle.2.circlepath")).pixmap(headSide, headSide));
    auto *title = plainLabel(text("sync.preview.title"_text), this);
    QFont font = title->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.25);
    title->setFont(font);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(title);
    auto *summary = plainLabel(buildSyncSummary(m_model->analysis()).replace(u'\n', QStringLiteral(" · ")), this);
    summary->setObjectName(QStringLiteral("syncSummary"));
    texts->addWidget(summary);
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(picture, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
    column->addLayout(row);
}

void SyncPreviewView::addChanges(QBoxLayout *column)
{
    if (m_model->isEmpty()) {
        column->addWidget(new EmptyState(QStringLiteral("checkmark.circle.fill"), text("sync.result.noChanges"_text),
                                         text("sync.preview.noChangesDetail"_text), this),
                          1);
        return;
    }
    auto *tree = new QTreeView(this);
    tree->setObjectName(QStringLiteral("syncChanges"));
    tree->setAccessibleName(text("sync.preview.title"_text));
    tree->setModel(m_model);
    tree->setHeaderHidden(true);
    // What makes long lists quick to scroll and to open.
    tree->setUniformRowHeights(true);
    tree->setIconSize({iconSide, iconSide});
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(SyncPreviewModel::ItemColumn, QHeaderView::Stretch);
    tree->header()->setSectionResizeMode(SyncPreviewModel::DetailColumn, QHeaderView::ResizeToContents);
    openSections(tree);
    column->addWidget(tree, 1);
    if (!m_model->analysis().duplicateGroups.isEmpty())
        column->addWidget(plainLabel(text("sync.preview.duplicatesDetail"_text), this));
}

void SyncPreviewView::addButtons(QBoxLayout *column)
{
    auto *row = new QHBoxLayout;
    const auto add = [this, row](const char *name, TextKey title) {
        auto *button = new QPushButton(text(title), this);
        button->setObjectName(QString::fromLatin1(name));
        button->setAutoDefault(false);
        row->addWidget(button);
        return button;
    };
    const bool decide = m_purpose == Purpose::Decide;
    if (decide) {
        connect(add("keepHere", "cloudSync.heldBack.keep"_text), &QPushButton::clicked, this, [this] {
            emit keepHere();
            reject();
        });
    }
    row->addStretch(1);
    QPushButton *cancel = add("syncCancel", "sheet.cancel"_text);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    m_apply = add("syncApply", decide ? "cloudSync.heldBack.accept"_text : "sync.preview.apply"_text);
    connect(m_apply, &QPushButton::clicked, this, &QDialog::accept);
    // What takes much away is not done by pressing Enter.
    (decide ? cancel : m_apply)->setDefault(true);
    column->addLayout(row);
}

void SyncPreviewView::refresh()
{
    m_apply->setEnabled(m_purpose == Purpose::Decide || m_model->isAnySelected());
}

} // namespace orvelle
