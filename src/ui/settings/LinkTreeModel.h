#pragma once

#include "links/LinkItem.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QList>
#include <QPalette>

namespace orvelle {

class LinkStore;

/// The tree of links for a list view: name with picture, and kind. Shows one
/// state of the store's tree and resets when that changes.
class LinkTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, KindColumn, ColumnCount };
    enum Role { IdRole = Qt::UserRole };

    explicit LinkTreeModel(LinkStore &links, QObject *parent = nullptr);

    /// Device pixels per pixel of the view, for crisp pictures.
    void setPixelRatio(qreal ratio) { m_pixelRatio = ratio; }
    /// The palette that gives the pictures their colours.
    void setPalette(const QPalette &palette) { m_palette = palette; }

    /// Null for the invalid index. Valid until the model resets.
    const LinkItem *item(const QModelIndex &index) const;
    QModelIndex indexOf(const QUuid &id) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    /// A row. The pointers lead into m_links, which nothing changes in place.
    struct Node {
        const LinkItem *item = nullptr;
        int parent = 0;
        int row = 0;
        QList<int> children;
    };

    void reload();
    void addNodes(const LinkList &links, int parent);
    const Node &node(const QModelIndex &index) const;
    QVariant pictureOf(const LinkItem &item) const;
    QString toolTipOf(const LinkItem &item) const;

    LinkStore &m_store;
    LinkList m_links;
    QList<Node> m_nodes;         ///< the first is the invisible root
    QHash<QUuid, int> m_numbers; ///< where in m_nodes an item is
    qreal m_pixelRatio = 1;
    QPalette m_palette;
};

} // namespace orvelle
