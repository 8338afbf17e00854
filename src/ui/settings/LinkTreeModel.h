#pragma once

#include "ui/settings/LinkRows.h"

#include <QAbstractItemModel>

namespace orvelle {

class LinkPathChecker;
class LinkStore;

/// The tree of links for a list view: name, and kind. Follows the store's
/// tree: rows that stay keep their selection and open groups, also when they
/// move to another group. Under a search only what it asks for has a row.
class LinkTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, KindColumn, ColumnCount };
    enum Role { IdRole = Qt::UserRole };

    /// Both outlive the model.
    LinkTreeModel(LinkStore &links, const LinkPathChecker &paths, QObject *parent = nullptr);

    /// Shows what matches, and all when `search` is empty.
    void setSearch(const QString &search);
    const LinkSearch &search() const { return m_search; }
    /// Whether something below the row is what the search asks for.
    bool holdsMatch(const QModelIndex &index) const { return row(index).holdsMatch; }

    /// Null for the invalid index. Valid until the model changes.
    const LinkItem *item(const QModelIndex &index) const { return row(index).item; }
    bool isBroken(const LinkItem &item) const;
    /// Invalid for an item without a row.
    QModelIndex indexOf(const QUuid &id) const;
    /// Groups above the row.
    int levelOf(const QModelIndex &index) const;
    /// Every row of a group, a group before the groups in it.
    QModelIndexList groups() const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const LinkRows::Row &row(const QModelIndex &index) const;
    QModelIndex indexAt(int number, int column = 0) const;
    void followStore();
    void show(const LinkRows &rows);
    void announceChangedRows(const LinkRows &before);
    QString describe(const LinkItem &item) const;
    QString toolTipOf(const LinkItem &item) const;

    LinkStore &m_store;
    const LinkPathChecker &m_paths;
    LinkRows m_all;
    LinkRows m_shown;
    LinkSearch m_search;
    QStringList m_folded; ///< of m_all; empty until somebody searches
};

} // namespace orvelle
