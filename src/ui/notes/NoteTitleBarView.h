#pragma once

#include "links/LinkItem.h"
#include "ui/notes/NoteEditors.h"

#include <QColor>
#include <QWidget>

class QLineEdit;
class QToolButton;
class QLabel;

namespace orvelle {

class ColorMenu;

/// The coloured bar on top of a note: its icon, its name to edit in place, its
/// colour to choose.
class NoteTitleBarView : public QWidget
{
    Q_OBJECT

public:
    NoteTitleBarView(const NoteEditorServices &services, const LinkItem &note, QWidget *parent = nullptr);

    /// Shows what the store says now. A name being typed stays.
    void setNote(const LinkItem &note);
    /// While the note is not in the tree there is nothing to rename.
    void setEditable(bool editable);

    /// Renames the note and changes its colour, as one undo step, and posts
    /// noteColorChanged. Nothing happens when both are as they were or the
    /// name is empty.
    void applyChanges(const QString &name, const QString &colorKey);
    /// Applies a name that is still being typed.
    void commitName();

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void showName();
    void buildRow();
    void updateColors();
    QString colorKey() const;

    NoteEditorServices m_services;
    LinkItem m_note;
    QLabel *m_icon;
    QLineEdit *m_name;
    QToolButton *m_colorButton;
    ColorMenu *m_colors;
    QColor m_ground;
};

} // namespace orvelle
