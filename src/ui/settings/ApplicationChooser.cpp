#include "ui/settings/ApplicationChooser.h"

#include "base/Text.h"
#include "ui/common/ApplicationIcons.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/PlainToolTip.h"

#include <QAction>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize wantedSize(420, 460);
constexpr int iconSide = 24;
constexpr int pathRole = Qt::UserRole;
constexpr int wordsRole = Qt::UserRole + 1; ///< what a search looks into

QString applicationsFolder()
{
    return u"/usr/share/applications"_s;
}

} // namespace

ApplicationChooser::ApplicationChooser(const Applications &applications, QWidget *parent)
    : QDialog(parent),
      m_installed(applications.installed()),
      m_search(new QLineEdit(this)),
      m_list(new QListWidget(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(text("quicklaunch.chooserTitle"_text));
    m_search->setPlaceholderText(text("quicklaunch.search"_text));
    m_search->setAccessibleName(text("quicklaunch.search"_text));
    addClearButton(m_search);
    m_search->installEventFilter(this);
    followSelection(m_list);
    m_list->setAccessibleName(text("quicklaunch.slots"_text));
    m_list->setIconSize({iconSide, iconSide});
    m_list->setUniformItemSizes(true);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_take = buttons->addButton(text("quicklaunch.choose"_text), QDialogButtonBox::AcceptRole);
    m_take->setDefault(true);
    QPushButton *file = buttons->addButton(text("quicklaunch.fromFile"_text), QDialogButtonBox::ActionRole);
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_search);
    column->addWidget(m_list, 1);
    column->addWidget(buttons);
    resize(wantedSize);

    const auto take = [this] {
        if (const QListWidgetItem *item = m_list->currentItem())
            choose(item->data(pathRole).toString());
    };
    connect(m_search, &QLineEdit::textChanged, this, &ApplicationChooser::search);
    connect(m_list, &QListWidget::itemActivated, this, take);
    connect(buttons, &QDialogButtonBox::accepted, this, take);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(file, &QPushButton::clicked, this, &ApplicationChooser::chooseFile);
    fill();
    search({});
}

void ApplicationChooser::fill()
{
    for (const DesktopApplication &each : std::as_const(m_installed)) {
        auto *item = new QListWidgetItem(applicationIcon(each.icon), each.name, m_list);
        item->setData(pathRole, each.path);
        item->setData(wordsRole,
                      QStringList{each.name, each.description, each.id, each.keywords.join(u' ')}.join(u'\n'));
        item->setToolTip(plainToolTip(each.description.isEmpty() ? each.path : each.description));
    }
}

/// Every word somewhere; those first whose name begins with what was typed
/// become the current one.
void ApplicationChooser::search(const QString &wanted)
{
    const QStringList words = wanted.split(u' ', Qt::SkipEmptyParts);
    QListWidgetItem *best = nullptr;
    for (int row = 0; row < m_list->count(); ++row) {
        QListWidgetItem *item = m_list->item(row);
        const QString known = item->data(wordsRole).toString();
        const bool fits = std::ranges::all_of(
            words, [&known](const QString &word) { return known.contains(word, Qt::CaseInsensitive); });
        item->setHidden(!fits);
        if (!fits)
            continue;
        const bool begins = item->text().startsWith(wanted.trimmed(), Qt::CaseInsensitive);
        if (!best || (begins && !best->text().startsWith(wanted.trimmed(), Qt::CaseInsensitive)))
            best = item;
    }
    m_list->setCurrentItem(best);
    m_take->setEnabled(best != nullptr);
}

/// The arrows move in the list while one types.
bool ApplicationChooser::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_search && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown)
            return QCoreApplication::sendEvent(m_list, event);
    }
    return QDialog::eventFilter(watched, event);
}

void ApplicationChooser::chooseFile()
{
    auto *dialog = new QFileDialog(this, text("quicklaunch.chooserTitle"_text), applicationsFolder(),
                                   text("quicklaunch.fileFilter"_text));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &ApplicationChooser::choose);
    dialog->open();
}

void ApplicationChooser::choose(const QString &desktopFile)
{
    emit chosen(desktopFile);
    accept();
}

} // namespace orvelle
