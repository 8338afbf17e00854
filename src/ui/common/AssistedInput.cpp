#include "ui/common/AssistedInput.h"

#include "base/Text.h"

#include <QAbstractItemView>
#include <QAction>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTimer>

namespace orvelle {

namespace {

/// Between the pieces of a text that is written in several, in milliseconds.
constexpr int longestPause = 500;

} // namespace

void countAllAsTyped(QLineEdit *field)
{
    QObject::connect(field, &QLineEdit::textChanged, field, [field] { field->setModified(true); });
}

void storeWhatIsWrittenUnfocused(QLineEdit *field, std::function<void()> store)
{
    auto *pause = new QTimer(field);
    pause->setSingleShot(true);
    pause->setInterval(longestPause);
    QObject::connect(field, &QLineEdit::textChanged, pause, [field, pause] {
        if (!field->hasFocus())
            pause->start();
    });
    QObject::connect(pause, &QTimer::timeout, field, [field, store = std::move(store)] {
        if (!field->hasFocus() && field->isModified())
            store();
    });
}

void addClearButton(QLineEdit *field)
{
    field->setClearButtonEnabled(true);
    // The toolkit makes the action without a text, but under this name.
    if (auto *clear = field->findChild<QAction *>(QStringLiteral("_q_qlineeditclearaction")))
        clear->setText(text("field.clear"_text));
}

void reachWhenChecked(QRadioButton *button)
{
    const auto follow = [button](bool checked) { button->setFocusPolicy(checked ? Qt::StrongFocus : Qt::ClickFocus); };
    follow(button->isChecked());
    QObject::connect(button, &QRadioButton::toggled, button, follow);
}

void followSelection(QAbstractItemView *view)
{
    QItemSelectionModel *selection = view->selectionModel();
    QObject::connect(selection, &QItemSelectionModel::selectionChanged, view, [selection] {
        const QModelIndexList rows = selection->selectedRows();
        if (rows.size() == 1 && !selection->isSelected(selection->currentIndex()))
            selection->setCurrentIndex(rows.constFirst(), QItemSelectionModel::NoUpdate);
    });
}

} // namespace orvelle
