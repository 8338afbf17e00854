#include "ui/settings/WidgetSection.h"

#include "ui/UiWorld.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QTest>

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

} // namespace orvelle
