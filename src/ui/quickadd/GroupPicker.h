#pragma once

#include "links/LinkItem.h"

#include <QComboBox>

#include <optional>

namespace orvelle {

class LinkStore;

/// The choice of the group that receives a link: the top level and every
/// group, indented by depth, each with its symbol.
class GroupPicker : public QComboBox
{
    Q_OBJECT

public:
    explicit GroupPicker(LinkStore &links, QWidget *parent = nullptr);

    /// Absent for the top level.
    std::optional<QUuid> selectedGroupId() const;
    /// The top level for an id that is no group.
    void select(const std::optional<QUuid> &groupId);

protected:
    void changeEvent(QEvent *event) override;

private:
    void refresh();
    void addGroups(const LinkList &links, int depth);
    QIcon groupPickerIcon(const LinkItem &group) const;

    LinkStore &m_links;
};

} // namespace orvelle
