#include "base/Text.h"
#include "support/Outline.h"
#include "ui/common/SyncPreviewModel.h"
#include "ui/common/SyncPreviewView.h"
#include "ui/common/SyncSummary.h"

#include <QElapsedTimer>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeView>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

SyncChange change(SyncCategory category, const char *name, const QStringList &details = {})
{
    SyncChange made;
    made.category = category;
    made.details = details;
    if (category != SyncCategory::Added)
        made.localLink = namedLink(QString::fromLatin1(name));
    if (category != SyncCategory::Removed)
        made.importedLink = namedLink(QString::fromLatin1(name));
    return made;
}

DuplicateGroup twins(const char *name)
{
    DuplicateGroup group;
    group.instances = {namedLink(QString::fromLatin1(name)), namedLink(QString::fromLatin1(name))};
    return group;
}

SyncAnalysis everything()
{
    SyncAnalysis analysis;
    analysis.changes = {change(SyncCategory::Identical, "same"),
                        change(SyncCategory::UpdatedRemote, "theirs", {u"sync.details.pathChanged"_s}),
                        change(SyncCategory::Added, "new"),
                        change(SyncCategory::UpdatedLocal, "ours"),
                        change(SyncCategory::Removed, "gone"),
                        change(SyncCategory::Removed, "too")};
    analysis.duplicateGroups = {twins("twice")};
    return analysis;
}

/// Title and detail of every row, one level a bracket.
QString outlineOf(const QAbstractItemModel &model, const QModelIndex &parent = {})
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        EXPECT_EQ(index.parent(), parent);
        QString line = index.data().toString() + u'/' + index.siblingAtColumn(1).data().toString();
        if (model.rowCount(index) > 0)
            line += u'[' + outlineOf(model, index) + u']';
        rows += line.replace(QChar(QChar::Nbsp), u' ');
    }
    return rows.join(u", ");
}

TEST(SyncSummary, HasALineForEachKindThatThereIs)
{
    SyncAnalysis onlyDuplicates;
    onlyDuplicates.duplicateGroups = {twins("a"), twins("b")};
    SyncAnalysis onlyIdentical;
    onlyIdentical.changes = {change(SyncCategory::Identical, "a")};
    const std::pair<SyncAnalysis, QString> summaries[] = {
        {everything(), u"Updated items: 2\nNew items: 1\nItems to remove: 2\nGroups of duplicates: 1"_s},
        {onlyDuplicates, u"Groups of duplicates: 2"_s},
        {onlyIdentical, text("sync.summary.noChanges"_text)}};
    for (const auto &[analysis, expected] : summaries)
        EXPECT_EQ(buildSyncSummary(analysis), expected);

    const std::tuple<SyncResult, QString, QString> results[] = {
        {{1, 2, 3, 4},
         u"Updated: 1\nAdded: 2\nRemoved: 3\nDuplicates resolved: 4"_s,
         u"Removed: 3 · Duplicates resolved: 4"_s},
        {{0, 0, 0, 1}, u"Duplicates resolved: 1"_s, u"Duplicates resolved: 1"_s},
        {{}, u"Nothing changed."_s, u""_s}};
    for (const auto &[result, lines, losses] : results) {
        EXPECT_EQ(syncResultAlert(result).informativeText, lines);
        EXPECT_EQ(syncLossLine(result).replace(QChar(QChar::Nbsp), u' '), losses);
    }
}

TEST(SyncPreview, ListsChangesInSectionsAndLeavesOutWhatIsTheSame)
{
    const SyncPreviewModel model(everything(), true);
    EXPECT_EQ(outlineOf(model), u"Updated/2[theirs/Address, ours/Name or content · newer here], New/1[new/], "
                                "Removed/2[gone/, too/], Duplicates/1[twice/Copies: 2[twice/Kept, twice/Dropped]]"_s);
}

TEST(SyncPreview, WhatIsUntickedGoesBackIntoTheAnalysis)
{
    SyncPreviewModel model(everything(), true);
    const QModelIndex removed = model.index(2, 0);
    const auto state = [](const QModelIndex &index) { return index.data(Qt::CheckStateRole).toInt(); };
    EXPECT_EQ(state(removed), Qt::Checked);
    EXPECT_TRUE(model.setData(model.index(0, 0, removed), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_EQ(state(removed), Qt::PartiallyChecked);
    EXPECT_FALSE(model.analysis().changes.at(4).isSelected);
    EXPECT_TRUE(model.analysis().changes.at(5).isSelected);
    EXPECT_TRUE(model.setData(removed, Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(model.analysis().changes.at(4).isSelected);

    const QModelIndex group = model.index(0, 0, model.index(3, 0));
    EXPECT_FALSE(model.setData(model.index(0, 0, group), Qt::Unchecked, Qt::CheckStateRole)) << "one has to stay";
    EXPECT_TRUE(model.setData(model.index(1, 0, group), Qt::Checked, Qt::CheckStateRole));
    EXPECT_EQ(model.analysis().duplicateGroups.at(0).keepIndex, 1);
    EXPECT_EQ(state(model.index(0, 0, group)), Qt::Unchecked);

    SyncAnalysis noTwins = everything();
    noTwins.duplicateGroups.clear();
    SyncPreviewView view(noTwins, SyncPreviewView::Purpose::Apply);
    auto *tree = view.findChild<QTreeView *>(u"syncChanges"_s);
    auto *apply = view.findChild<QPushButton *>(u"syncApply"_s);
    for (int section = 0; section < 3; ++section) {
        EXPECT_TRUE(apply->isEnabled());
        tree->model()->setData(tree->model()->index(section, 0), Qt::Unchecked, Qt::CheckStateRole);
    }
    EXPECT_FALSE(apply->isEnabled()) << "nothing is left to do";

    SyncPreviewModel whole(everything(), false);
    EXPECT_FALSE(whole.index(2, 0).data(Qt::CheckStateRole).isValid());
    EXPECT_FALSE(whole.setData(whole.index(2, 0), Qt::Unchecked, Qt::CheckStateRole));
}

TEST(SyncPreview, TenThousandChangesOpenAndScrollAtOnce)
{
    SyncAnalysis analysis;
    for (int i = 0; i < 10'000; ++i)
        analysis.changes += change(SyncCategory::Added, "new");
    QElapsedTimer timer;
    timer.start();
    SyncPreviewView view(analysis, SyncPreviewView::Purpose::Apply);
    view.show();
    auto *tree = view.findChild<QTreeView *>(u"syncChanges"_s);
    const qint64 opened = timer.restart();
    for (int step = 0; step <= 20; ++step) {
        tree->verticalScrollBar()->setValue(tree->verticalScrollBar()->maximum() * step / 20);
        tree->viewport()->grab();
    }
    // Laid out row by row each of these would take seconds.
    EXPECT_LT(opened, 1000);
    EXPECT_LT(timer.elapsed(), 2000);
    EXPECT_GT(tree->verticalScrollBar()->maximum(), 9000);
}

} // namespace
} // namespace orvelle::test
