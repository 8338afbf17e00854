#pragma once

#include "ui/menu/rows/ClipboardEntryButton.h"

#include <functional>

namespace orvelle {

class ClipboardManager;
class Notifications;

/// The history of the clipboard: a title with pause and clear, and a line for
/// each entry. Up and Down go through the lines, Delete forgets one.
class ClipboardRowView : public WidgetRowView
{
    Q_OBJECT

public:
    /// `closeMenu` is called before an entry is restored.
    ClipboardRowView(ClipboardManager &manager, const Notifications &notifications, std::function<void()> closeMenu,
                     QWidget *parent);
    ~ClipboardRowView() override;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusWithin(bool fromBehind) override;

private:
    void refresh();
    QString emptyText() const;
    bool refreshEntries();
    ClipboardEntryButton *makeEntry(const ClipboardEntry &entry);
    void restore(const ClipboardEntry &entry, bool asPlainText);
    void place();
    void followFocus(const QWidget *now);
    int currentLine() const;
    bool moveTo(int line);
    bool moveInTitle(int step);
    QList<MenuRowButton *> titleButtons() const;

    ClipboardManager &m_manager;
    std::function<void()> m_closeMenu;
    MenuRowButton *m_pause;
    MenuRowButton *m_clear;
    QList<ClipboardEntryButton *> m_entries;
};

} // namespace orvelle
