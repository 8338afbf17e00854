#include "ui/common/AssistedInput.h"

#include "base/Text.h"

#include <QAbstractItemView>
#include <QAction>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QRadioButton>

namespace orvelle {

void countAllAsTyped(QLineEdit *field)
{
    QObject::connect(field, &QLineEdit::textChanged, field, [field] { field->setModified(true); });
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
