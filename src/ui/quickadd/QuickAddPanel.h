#pragma once

#include <QDialog>
#include <QUuid>

#include <optional>

namespace orvelle {

class Clock;
class LinkStore;
class Pasteboard;
class QuickAddLinkView;
class Volumes;

/// What quick add works on. All of it outlives the panel.
struct QuickAddServices {
    LinkStore &links;
    Volumes &volumes;
    Clock &clock;
    Pasteboard &pasteboard;
};

/// The small window in which one link is added. Deletes itself when closed;
/// open it with show().
class QuickAddPanel : public QDialog
{
    Q_OBJECT

public:
    /// `initialGroupId` is the group preselected to receive the link; absent
    /// or unknown means the top level.
    QuickAddPanel(const QuickAddServices &services, const std::optional<QUuid> &initialGroupId,
                  QWidget *parent = nullptr);

    /// Selects another receiving group in a panel that is open already.
    void selectGroup(const std::optional<QUuid> &groupId);
    /// Fills an address in, replacing what is there.
    void setAddress(const QString &address);
    QuickAddLinkView &view() const { return *m_view; }

    void setVisible(bool visible) override;

protected:
    void changeEvent(QEvent *event) override;

private:
    QuickAddLinkView *m_view;
};

} // namespace orvelle
