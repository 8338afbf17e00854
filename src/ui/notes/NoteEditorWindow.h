#pragma once

#include "links/LinkItem.h"
#include "ui/notes/NoteEditors.h"

#include <QWidget>

#include <memory>

namespace orvelle {

/// The window of one note: title bar, text, and a line that says when
/// something happened to the note elsewhere. Deletes itself when closed.
/// Made by NoteEditors.
class NoteEditorWindow : public QWidget
{
    Q_OBJECT

public:
    NoteEditorWindow(const NoteEditorServices &services, const LinkItem &note, QWidget *parent = nullptr);
    ~NoteEditorWindow() override;

    /// Stores what has been typed and not yet saved, for the last time.
    void finish();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> m_p;
};

} // namespace orvelle
