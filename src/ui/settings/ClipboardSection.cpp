#include "ui/settings/ClipboardSection.h"

#include "base/Notifications.h"
#include "links/LinkColors.h"
#include "ui/common/ColorMenu.h"
#include "widgets/clipboard/ClipboardManager.h"

#include <QComboBox>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

ClipboardSection::ClipboardSection(ClipboardManager &manager, const Notifications &notifications, QWidget *parent)
    : WidgetSection(WidgetType::Clipboard, parent)
{
    addEnableSwitch({[&manager] { return manager.isEnabled(); }, [&manager](bool on) { manager.setEnabled(on); }});
    addHint(manager.isForbidden() ? text("clipboard.forbiddenHint"_text) : text("clipboard.privacyHint"_text));
    addMenuBarOnly(
        {[&manager] { return manager.menuBarOnly(); }, [&manager](bool only) { manager.setMenuBarOnly(only); }});
    addColors(manager);
    connect(&notifications, &Notifications::clipboardChanged, this, &WidgetSection::refresh);
}

void ClipboardSection::addColors(ClipboardManager &manager)
{
    QList<Choice> choices;
    for (const ColorChoice &color : allColors())
        choices += {text(color.label), int(choices.size())};
    const auto read = [&manager] {
        const auto found = std::ranges::find_if(allColors(), [&manager](const ColorChoice &each) {
            return manager.iconColor() == QLatin1StringView(each.key);
        });
        return int(found - allColors().begin()); // none is marked for one that is not on offer
    };
    const auto write = [&manager](int number) {
        manager.setIconColor(QString::fromLatin1(allColors()[std::size_t(number)].key));
    };
    QComboBox *box = addComboBox(u"iconColor"_s, text("widget.iconColor"_text), choices, {read, write});
    for (int i = 0; i < box->count(); ++i)
        box->setItemIcon(i, colorSwatch(QString::fromLatin1(allColors()[std::size_t(i)].key), palette()));
}

} // namespace orvelle
