#pragma once

#include <QListWidget>

namespace orvelle {

class Applications;
class QuickLaunchManager;

/// The slots, one below the other. One that is dropped on another exchanges
/// places with it, as do Alt and an arrow key; desktop files of a file manager
/// can be dropped too.
class QuickLaunchSlotList : public QListWidget
{
    Q_OBJECT

public:
    QuickLaunchSlotList(QuickLaunchManager &manager, const Applications &applications, QWidget *parent = nullptr);

    void refresh();
    /// The selected slot moves by `step`, and stays selected.
    void moveSelected(int step);
    QSize sizeHint() const override;

signals:
    void fileDropped(int slot, const QString &path);
    void removeAsked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    bool accepts(const QDropEvent &event) const;

    QuickLaunchManager &m_manager;
    const Applications &m_applications;
};

} // namespace orvelle
