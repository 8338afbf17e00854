#include "base/Text.h"
#include "base/Translations.h"
#include "ui/UiWorld.h"
#include "ui/common/MessageAlerts.h"
#include "ui/notes/NoteEditorWindow.h"
#include "ui/quickadd/QuickAddPanel.h"
#include "ui/settings/InfoView.h"
#include "ui/settings/SnapshotPreview.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLocale>
#include <QTabWidget>
#include <QToolButton>

#include <gtest/gtest.h>

namespace orvelle {

namespace {

QString describe(const QWidget *widget, const QString &text)
{
    return QStringLiteral("%1 \"%2\": has %3x%4, wants %5x%6")
        .arg(QString::fromLatin1(widget->metaObject()->className()), text)
        .arg(widget->width())
        .arg(widget->height())
        .arg(widget->sizeHint().width())
        .arg(widget->sizeHint().height());
}

bool fits(const QLabel *label)
{
    const QFontMetrics metrics = label->fontMetrics();
    if (!label->wordWrap())
        return label->width() >= label->sizeHint().width();
    return label->height() >= label->heightForWidth(label->width()) && label->height() >= metrics.height();
}

bool showsText(const QAbstractButton *button)
{
    const auto *tool = qobject_cast<const QToolButton *>(button);
    const bool isSymbol = tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly && !tool->icon().isNull();
    return button->isVisible() && !button->text().isEmpty() && !isSymbol;
}

/// Every visible text of `window` that has less room than it needs.
QStringList cutTexts(QWidget &window)
{
    QStringList cut;
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        if (label->isVisible() && !label->text().isEmpty() && !fits(label))
            cut += describe(label, label->text());
    }
    for (const QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        if (showsText(button) && button->width() < button->sizeHint().width())
            cut += describe(button, button->text());
    }
    return cut;
}

void expectFits(QWidget &window)
{
    window.show();
    // As small as it goes is where a text would be cut.
    window.resize(window.minimumSizeHint());
    QApplication::processEvents();
    EXPECT_EQ(cutTexts(window).join(u'\n').toStdString(), "");
}

} // namespace

class TextFit : public testing::TestWithParam<QLocale::Language>
{
protected:
    void SetUp() override { installTranslations(*qApp, QLocale(GetParam())); }
    void TearDown() override { installTranslations(*qApp, QLocale()); }

    test::UiWorld world;
};

TEST_P(TextFit, SettingsTabs)
{
    ASSERT_TRUE(world.defaults.write(QStringLiteral("HasLaunchedBefore"), true));
    world.addNote("A note", "");
    SettingsWindow window(world.settings());
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    auto *tabs = window.findChild<QTabWidget *>();
    world.debugMode.toggle(); // with its notice
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        expectFits(window);
    }
}

TEST_P(TextFit, Welcome)
{
    InfoView view(world.settings());
    view.setAttribute(Qt::WA_DeleteOnClose, false);
    expectFits(view);
}

TEST_P(TextFit, InsideASnapshot)
{
    LinkItem changed = world.make("b", LinkType::Url, "https://example.org");
    const LinkItem group = world.make("g", LinkType::Group);
    const LinkList current{changed, group, world.make("only here", LinkType::Url)};
    changed.name = QStringLiteral("B");
    SnapshotPreview preview({{}, world.clock.now(), QStringLiteral("replace"), 1234},
                            {group, changed, world.make("only there", LinkType::Url)}, current, world.clock.now());
    preview.setAttribute(Qt::WA_DeleteOnClose, false);
    expectFits(preview);
}

TEST_P(TextFit, AlertsWithLongTexts)
{
    MessageAlerts alerts;
    alerts.show({Alert::Style::Warning,
                 text("repair.alertTitle"_text),
                 text("quit.confirmMessage"_text),
                 {text("import.replaceAll"_text), text("import.merge"_text), text("import.sync"_text),
                  text("sheet.cancel"_text), text("quit.closeWindow"_text)}});
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == QStringLiteral("Alert"))
            expectFits(*window);
    }
}

TEST_P(TextFit, QuickAdd)
{
    QuickAddPanel panel(world.quickAdd(), std::nullopt);
    panel.setAttribute(Qt::WA_DeleteOnClose, false);
    expectFits(panel);
}

TEST_P(TextFit, NoteThatWasRemoved)
{
    NoteEditors editors(world.notes());
    const LinkItem note = world.addNote("A note", "text");
    NoteEditorWindow *window = editors.open(note.id);
    world.links.removeLink(note.id);
    expectFits(*window);
}

INSTANTIATE_TEST_SUITE_P(Languages, TextFit, testing::Values(QLocale::English, QLocale::French),
                         [](const auto &languageInfo) {
                             return QLocale::languageToString(languageInfo.param).toStdString();
                         });

} // namespace orvelle
