#include "ui/settings/WidgetSection.h"

#include "ui/UiWorld.h"
#include "ui/settings/PageScroll.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QScrollBar>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace orvelle {

class WidgetSectionTest : public testing::Test
{
protected:
    template<typename T>
    T *child(const char *name)
    {
        return section.findChild<T *>(QString::fromLatin1(name));
    }
    SettingAccess<bool> access(bool &value)
    {
        return {[&value] { return value; },
                [this, &value](bool wanted) {
                    if (storable)
                        value = wanted;
                }};
    }

    bool storable = true;
    WidgetSection section{WidgetType::Network};
};

TEST_F(WidgetSectionTest, RowsAreUsableWhileTheWidgetIsOn)
{
    bool enabled = false;
    bool menuBarOnly = true;
    section.addEnableSwitch(access(enabled));
    section.addMenuBarOnly(access(menuBarOnly));
    auto *only = child<QCheckBox>("menuBarOnly");
    EXPECT_TRUE(only->isChecked());
    EXPECT_FALSE(only->isEnabled());
    child<QCheckBox>("enabled")->click();
    EXPECT_TRUE(enabled);
    EXPECT_TRUE(only->isEnabled());

    enabled = false; // by an import, say
    section.refresh();
    EXPECT_FALSE(child<QCheckBox>("enabled")->isChecked());
    EXPECT_TRUE(child<QCheckBox>("enabled")->isEnabled());
    EXPECT_FALSE(only->isEnabled());
}

TEST_F(WidgetSectionTest, AValueThatCannotBeStoredFallsBack)
{
    bool enabled = false;
    section.addEnableSwitch(access(enabled));
    storable = false;
    child<QCheckBox>("enabled")->click();
    EXPECT_FALSE(child<QCheckBox>("enabled")->isChecked());
}

TEST_F(WidgetSectionTest, TheModeSaysWhetherTheWidgetIsOn)
{
    int mode = 0;
    int writes = 0;
    section.addModeChoice(0, {{QStringLiteral("Graph"), 1}, {QStringLiteral("Discreet"), 2}},
                          {[&] { return mode; },
                           [&](int wanted) {
                               mode = wanted;
                               ++writes;
                           }});
    int style = 7;
    section.addComboBox(QStringLiteral("style"), QStringLiteral("Style:"),
                        {{QStringLiteral("Six"), 6}, {QStringLiteral("Seven"), 7}},
                        {[&] { return style; }, [&](int wanted) { style = wanted; }});
    auto *box = child<QComboBox>("style");
    EXPECT_EQ(box->currentText(), QStringLiteral("Seven"));
    EXPECT_EQ(box->accessibleName(), QStringLiteral("Style"));
    EXPECT_TRUE(child<QAbstractButton>("mode.0")->isChecked());
    EXPECT_FALSE(box->isEnabled());
    child<QAbstractButton>("mode.2")->click();
    child<QAbstractButton>("mode.2")->click();
    EXPECT_EQ(mode, 2);
    EXPECT_EQ(writes, 1);
    EXPECT_TRUE(box->isEnabled());
    section.show();
    QTest::keyClick(box, Qt::Key_Up);
    EXPECT_EQ(style, 6);
}

TEST(WidgetsTabTest, ASectionIsMadeWhenItIsFirstLookedAt)
{
    test::UiWorld world;
    ASSERT_TRUE(world.defaults.write(QStringLiteral("HasLaunchedBefore"), true));
    SettingsServices services = world.settings();
    int made = 0;
    services.widgetSections.insert(WidgetType::Timer, [&made](QWidget *parent) {
        ++made;
        return new WidgetSection(WidgetType::Timer, parent);
    });
    SettingsWindow window(services);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    auto *list = window.findChild<QListWidget *>(QStringLiteral("widgetOrder"));
    EXPECT_EQ(made, 0);
    list->setCurrentRow(6);
    list->setCurrentRow(0);
    list->setCurrentRow(6);
    EXPECT_EQ(made, 1);
    world.widgetOrder.moveUp(WidgetType::Timer);
    EXPECT_EQ(made, 1);
}

TEST(PageScrollTest, TheWheelScrollsPastWhatHasNotTheFocus)
{
    auto *page = new QWidget;
    auto *column = new QVBoxLayout(page);
    auto *choice = new QComboBox;
    choice->addItems({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    auto *number = new QSpinBox;
    for (QWidget *widget : {static_cast<QWidget *>(choice), static_cast<QWidget *>(number), new QWidget})
        column->addWidget(widget);
    column->itemAt(2)->widget()->setMinimumHeight(2000);
    PageScroll scroll(page);
    scroll.resize(200, 200);
    scroll.show();
    scroll.activateWindow();
    QApplication::processEvents();
    const auto turnOver = [&scroll](QWidget *field) {
        scroll.verticalScrollBar()->setValue(100);
        const QPointF at(field->rect().center());
        QWheelEvent wheel(at, field->mapToGlobal(at), {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&wheel); // only such a one goes on to the widget around
        qApp->notify(field, &wheel);
        return scroll.verticalScrollBar()->value() != 100;
    };
    for (QWidget *field : {static_cast<QWidget *>(choice), static_cast<QWidget *>(number)}) {
        page->setFocus();
        choice->setCurrentIndex(1);
        number->setValue(7);
        EXPECT_TRUE(turnOver(field));
        EXPECT_EQ(choice->currentIndex(), 1);
        EXPECT_EQ(number->value(), 7);
        EXPECT_NE(field->focusPolicy(), Qt::WheelFocus) << "the wheel would give it the focus";
        field->setFocus();
        EXPECT_FALSE(turnOver(field));
        EXPECT_TRUE(choice->currentIndex() != 1 || number->value() != 7);
    }
}

} // namespace orvelle
