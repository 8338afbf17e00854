#pragma once

#include "sync/SyncAnalysis.h"

#include <QAbstractItemModel>
#include <QColor>

namespace orvelle {

/// An analysis as a tree: a row for each section that has changes, below it a
/// row for each change, and below a group of duplicates its copies. What the
/// user unticks goes back into the analysis. Rows cost nothing before they are
/// looked at.
class SyncPreviewModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { ItemColumn, DetailColumn, ColumnCount };

    /// Without `selectable` there are no boxes to tick.
    SyncPreviewModel(SyncAnalysis analysis, bool selectable, QObject *parent = nullptr);

    const SyncAnalysis &analysis() const { return m_analysis; }
    bool isEmpty() const { return m_sections.isEmpty(); }
    /// Something is left to be done.
    bool isAnySelected() const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

private:
    struct Section {
        int kind = 0;            ///< row of the table of sections
        QList<qsizetype> places; ///< in the changes, or in the duplicate groups
    };
    enum class Level { Section, Change, Copy };

    Level levelOf(const QModelIndex &index) const;
    const Section &sectionOf(const QModelIndex &index) const;
    bool isOfDuplicates(const Section &section) const;
    const DuplicateGroup &groupOf(const QModelIndex &index) const;
    const LinkItem *itemOf(const QModelIndex &index) const;
    QString title(const QModelIndex &index) const;
    QString detail(const QModelIndex &index) const;
    QVariant decoration(const QModelIndex &index) const;
    bool isCheckable(const QModelIndex &index) const;
    Qt::CheckState checkState(const QModelIndex &index) const;
    void select(const Section &section, bool selected);
    void announce(const QModelIndex &top);

    SyncAnalysis m_analysis;
    QList<Section> m_sections;
    bool m_selectable;
};

} // namespace orvelle
