#include "ui/settings/LinkColorMenu.h"

#include "base/Text.h"

#include <QAction>

namespace orvelle {

LinkColorMenu::LinkColorMenu(QWidget *parent) : ColorMenu(parent)
{
    QAction *first = actions().constFirst();
    auto *own = new QAction(text("settings.defaultColor"_text), this);
    connect(own, &QAction::triggered, this, [this] { emit chosen(QString()); });
    insertAction(first, own);
    insertSeparator(first);
}

} // namespace orvelle
