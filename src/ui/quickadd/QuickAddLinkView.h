#pragma once

#include "links/LinkItem.h"
#include "ui/quickadd/QuickAddPanel.h"

#include <QWidget>

#include <functional>

class QAction;
class QFormLayout;
class QLabel;
class QLineEdit;
class QMimeData;
class QPushButton;

namespace orvelle {

class DropArea;
class GroupPicker;

/// One address or path, a name, a group, and the button that adds the link.
class QuickAddLinkView : public QWidget
{
    Q_OBJECT

public:
    QuickAddLinkView(const QuickAddServices &services, const std::optional<QUuid> &initialGroupId,
                     std::function<void()> onDismiss, QWidget *parent = nullptr);

    LinkType detectedType() const;
    /// The symbol shown beside the address.
    QString iconName() const;
    bool canAdd() const;

    /// Takes the clipboard's file or text when it is something to add.
    void pasteFromClipboard();
    /// Takes the first file of what was dropped, else an address. False when
    /// there is neither.
    bool handleDrop(const QMimeData &dropped);
    /// Adds the link and dismisses the view. Nothing happens unless canAdd().
    void add();

    void selectGroup(const std::optional<QUuid> &groupId);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void buildFields();
    QWidget *makeAddressRow();
    QWidget *makeButtonRow();
    void refresh();

    QuickAddServices m_services;
    std::function<void()> m_onDismiss;
    QLineEdit *m_url;
    QAction *m_icon;
    QLineEdit *m_name;
    GroupPicker *m_group;
    DropArea *m_dropArea;
    QLabel *m_hint;
    QPushButton *m_add;
};

} // namespace orvelle
