#include "ui/notes/NoteEditorWindow.h"

#include "platform/UserDefaults.h"
#include "ui/common/Icons.h"
#include "ui/notes/QuickNoteEditorView.h"

#include <QCloseEvent>
#include <QShortcut>
#include <QVBoxLayout>

namespace orvelle {

namespace {

/// The place and size of the window closed last; the next note opens so.
QString geometryKey()
{
    return QStringLiteral("NoteEditorGeometry");
}

} // namespace

class NoteEditorWindow::Private
{
public:
    Private(NoteEditorWindow *window, const NoteEditorServices &s, const LinkItem &note)
        : services(s), view(new QuickNoteEditorView(s, note, window))
    {
    }

    NoteEditorServices services;
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

    resize(420, 360);
    setMinimumSize(280, 180);
    if (const auto geometry = services.defaults.get<QByteArray>(geometryKey()))
        restoreGeometry(*geometry);
    m_p->view->setFocus();
}

NoteEditorWindow::~NoteEditorWindow() = default;

void NoteEditorWindow::saveNow()
{
    m_p->view->saveNow();
}

void NoteEditorWindow::closeEvent(QCloseEvent *event)
{
    m_p->view->finish();
    const QByteArray geometry = saveGeometry();
    if (m_p->services.defaults.get<QByteArray>(geometryKey()) != geometry) {
        // A place that could not be kept is no reason to trouble anybody.
        static_cast<void>(m_p->services.defaults.write(geometryKey(), geometry));
    }
    QWidget::closeEvent(event);
}

} // namespace orvelle
