#pragma once

#include <QStyledItemDelegate>

namespace orvelle {

class LinkTreeModel;

/// Draws the rows of the list: the item's icon with its badge, the name with
/// what the search found in it, and the kind in a quieter tone. An editor in
/// place keeps what is being typed when the item changes elsewhere.
class LinkRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit LinkRowDelegate(const LinkTreeModel &model, QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;

    /// The width that the widest kind label needs.
    int kindWidth(const QWidget &view) const;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    void paintName(QPainter &painter, const QStyleOptionViewItem &option, const QRect &place) const;

    const LinkTreeModel &m_model;
};

} // namespace orvelle
