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
class QTimer;

namespace orvelle {

class ClipboardOffer;
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

    /// Fills the address in, whatever it is.
    void setAddress(const QString &address);
    /// Offers what the clipboard holds now, if it can be added and nothing is
    /// typed yet when its owner has answered. Enter or a click takes it; nothing
    /// is filled in unasked.
    void offerClipboard();
    /// Takes the clipboard's file or text when it is something to add, once its
    /// owner has answered and unless something is typed meanwhile.
    void pasteFromClipboard();
    /// Takes the first file of what was dropped, else an address. False when
    /// there is neither.
    bool handleDrop(const QMimeData &dropped);
    /// Adds the link and dismisses the view. While nothing is typed, takes what
    /// the clipboard offers instead; nothing else happens unless canAdd().
    void add();

    void selectGroup(const std::optional<QUuid> &groupId);

    QSize sizeHint() const override;
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void buildFields();
    QWidget *makeAddressRow();
    QWidget *makeButtonRow();
    void addressChanged();
    void refresh();
    void takeOffer();
    void showHint();
    QString hint() const;
    QString placeHint() const;

    QuickAddServices m_services;
    std::function<void()> m_onDismiss;
    // In the order of the Tab key.
    QLineEdit *m_url;
    QAction *m_icon;
    QPushButton *m_paste;
    ClipboardOffer *m_offer;
    QLineEdit *m_name;
    GroupPicker *m_group;
    DropArea *m_dropArea;
    QLabel *m_hint;
    QPushButton *m_cancel;
    QPushButton *m_add;
    QTimer *m_typing; ///< runs while it is too early to find fault
};

} // namespace orvelle
