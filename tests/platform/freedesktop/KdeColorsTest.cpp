#include "platform/freedesktop/kde/KdeColors.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray colors(const char *window)
{
    return QByteArray("[Colors:Window]\nBackgroundNormal=") + window +
           "\nForegroundNormal=10,20,30\n[Colors:Button]\nBackgroundNormal=200,201,202\n"
           "[Colors:View]\nBackgroundNormal=#fefefe\nForegroundNormal=0,0,0\n";
}

void write(const QString &path, const QByteArray &text)
{
    QDir().mkpath(path.section(u'/', 0, -2));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
}

TEST(KdeColors, AreTheUsersOrThoseOfTheSchemeThatIsNamed)
{
    const struct {
        const char *what;
        QByteArray users, defaults;
        QColor window; ///< invalid: no palette
    } cases[]{
        {"a new account", {}, {}, QColor(239, 240, 241)},
        {"the user's colours", colors("1,2,3"), "[General]\nColorScheme=Night\n", QColor(1, 2, 3)},
        {"a scheme in the defaults", "[Icons]\nTheme=x\n", "[General]\nColorScheme=Night\n", QColor(42, 46, 50)},
        {"the user's scheme first", "[General]\nColorScheme=Night\n", colors("1,2,3"), QColor(1, 2, 3)},
        {"a scheme that is not there", "[General]\nColorScheme=Gone\n", {}, {}},
        {"a way out of the folder", "[General]\nColorScheme=../outside\n", {}, {}},
        {"no colour", colors("what") + "[General]\nColorScheme=Night\n", {}, QColor(42, 46, 50)},
    };
    for (const auto &each : cases) {
        const QTemporaryDir root;
        const QString user = root.filePath(u"user"_s), defaults = root.filePath(u"defaults"_s);
        const QString data = root.filePath(u"data"_s);
        write(data + u"/color-schemes/BreezeLight.colors"_s, colors("239,240,241"));
        write(data + u"/color-schemes/Night.colors"_s, colors("42,46,50"));
        write(data + u"/outside.colors"_s, colors("9,9,9"));
        write(user + u"/kdeglobals"_s, each.users);
        write(defaults + u"/kdeglobals"_s, each.defaults);
        const auto palette = kdePalette({user, defaults}, {root.filePath(u"none"_s), data});
        ASSERT_EQ(palette.has_value(), each.window.isValid()) << each.what;
        if (!palette)
            continue;
        EXPECT_EQ(palette->color(QPalette::Window).name(), each.window.name()) << each.what;
        EXPECT_EQ(palette->color(QPalette::WindowText), QColor(10, 20, 30)) << each.what;
        EXPECT_EQ(palette->color(QPalette::Base), QColor(254, 254, 254)) << each.what;
        EXPECT_EQ(palette->color(QPalette::Disabled, QPalette::Text), QColor(127, 127, 127)) << each.what;
    }
}

TEST(KdeColors, OfThePanelWhereItsThemeHasItsOwn)
{
    const QTemporaryDir root;
    const QString user = root.filePath(u"user"_s), defaults = root.filePath(u"defaults"_s);
    const QString data = root.filePath(u"data"_s);
    const auto panel = [&] { return kdePanelColor({user, defaults}, {data}); };
    write(data + u"/plasma/desktoptheme/night/colors"_s, colors("42,46,50"));
    EXPECT_FALSE(panel());
    write(defaults + u"/plasmarc"_s, "[Theme]\nname=night\n");
    EXPECT_EQ(panel(), QColor(42, 46, 50));
    write(user + u"/plasmarc"_s, "[Theme]\nname=default\n");
    EXPECT_FALSE(panel()) << "follows the windows";
}

} // namespace
} // namespace orvelle::test
