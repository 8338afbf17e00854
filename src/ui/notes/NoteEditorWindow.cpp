#include "ui/notes/NoteEditorWindow.h"

#include "ui/common/Icons.h"
#include "ui/notes/NotePlaces.h"
#include "ui/notes/QuickNoteEditorView.h"

#include <QCloseEvent>
#include <QShortcut>
#include <QVBoxLayout>

namespace orvelle {

class NoteEditorWindow::Private
{
public:
    Private(NoteEditorWindow *window, const NoteEditorServices &s, const LinkItem &note)
        : places(s), view(new QuickNoteEditorView(s, note, window))
    {
    }

    NotePlaces places;
    QuickNoteEditorView *view;
};

NoteEditorWindow::NoteEditorWindow(const NoteEditorServices &services, const LinkItem &note, QWidget *parent)
    : QWidget(parent, Qt::Window), m_p(std::make_unique<Private>(this, services, note))
{
    setObjectName(QStringLiteral("NoteEditor"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(symbolIcon(note.sfSymbolName()));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_p->view);

    const auto showName = [this] { setWindowTitle(m_p->view->document().note().name); };
    connect(&m_p->view->document(), &NoteDocument::noteChanged, this, showName);
    showName();
    auto *close = new QShortcut(QKeySequence::Close, this);
    connect(close, &QShortcut::activated, this, &QWidget::close);

    resize(440, 380);
    setMinimumSize(280, 200);
    if (const auto geometry = m_p->places.find(note.stableId))
        restoreGeometry(*geometry);
    m_p->view->setFocus();
}

NoteEditorWindow::~NoteEditorWindow() = default;

void NoteEditorWindow::finish()
{
    m_p->view->finish();
}

void NoteEditorWindow::closeEvent(QCloseEvent *event)
{
    finish();
    m_p->places.remember(m_p->view->document().note().stableId, saveGeometry());
    QWidget::closeEvent(event);
}

} // namespace orvelle
