#include "ui/common/ApplicationIcons.h"

#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

/// Icons where programs put them, each in a colour of its own.
class ApplicationIconsTest : public testing::Test
{
protected:
    ApplicationIconsTest()
    {
        QStandardPaths::setTestModeEnabled(false); // which has data folders of its own
        qputenv("XDG_DATA_HOME", data.filePath(u"own"_s).toUtf8());
        qputenv("XDG_DATA_DIRS", data.filePath(u"system"_s).toUtf8());
        QIcon::setThemeSearchPaths({data.filePath(u"system/icons"_s)});
        QIcon::setThemeName(u"probe"_s);
        write(u"system/icons/probe/index.theme"_s, "[Icon Theme]\nName=Probe\nDirectories=16x16/apps\n"
                                                   "[16x16/apps]\nSize=16\nType=Fixed\n");
        write(u"system/icons/hicolor/index.theme"_s,
              "[Icon Theme]\nName=Hicolor\nDirectories=scalable/apps\n"
              "[scalable/apps]\nSize=16\nMinSize=8\nMaxSize=512\nType=Scalable\n");
        paint(u"system/icons/probe/16x16/apps/themed.png"_s, "#ff0000");
        draw(u"system/icons/hicolor/scalable/apps/everywhere.svg"_s, "#00ff00");
        paint(u"own/pixmaps/mine.png"_s, "#0000ff");
        draw(u"system/pixmaps/drawn.svg"_s, "#ffff00");
        paint(u"system/pixmaps/mine.png"_s, "#000000");
        paint(u"system/icons/loose.xpm"_s, "#00ffff");
        paint(u"elsewhere/secret.png"_s, "#ff00ff");
        write(u"system/pixmaps/broken.png"_s, "no picture");
    }
    ~ApplicationIconsTest() override
    {
        dataHome.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", dataHome);
        dataDirs.isNull() ? qunsetenv("XDG_DATA_DIRS") : qputenv("XDG_DATA_DIRS", dataDirs);
        QStandardPaths::setTestModeEnabled(true);
        QIcon::setThemeSearchPaths(searchPaths);
        QIcon::setThemeName(theme);
    }

    QString made(const QString &name) const
    {
        const QString path = data.filePath(name);
        QDir().mkpath(path.section(u'/', 0, -2));
        return path;
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(made(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    }
    void paint(const QString &name, const char *color) const
    {
        QImage image(16, 16, QImage::Format_RGB32);
        image.fill(QColor(QLatin1StringView(color)));
        EXPECT_TRUE(image.save(made(name)));
    }
    void draw(const QString &name, const char *color) const
    {
        write(name, QByteArray(R"(<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16">)") +
                        R"(<rect width="16" height="16" fill=")" + color + R"("/></svg>)");
    }
    static QString colorOf(const QIcon &icon)
    {
        return icon.pixmap(QSize(16, 16), 1).toImage().pixelColor(8, 8).name();
    }

    QTemporaryDir data;
    QByteArray dataHome = qgetenv("XDG_DATA_HOME");
    QByteArray dataDirs = qgetenv("XDG_DATA_DIRS");
    QStringList searchPaths = QIcon::themeSearchPaths();
    QString theme = QIcon::themeName();
};

TEST_F(ApplicationIconsTest, AreFoundWhereverProgramsPutThem)
{
    const QString missing = colorOf(applicationIcon(u"no such icon"_s, Qt::gray));
    const struct {
        QString icon;
        QString expected;
    } cases[] = {
        {u"themed"_s, u"#ff0000"_s},
        {u"themed.png"_s, u"#ff0000"_s},
        {u"everywhere"_s, u"#00ff00"_s},
        {u"everywhere.svg"_s, u"#00ff00"_s},
        {u"mine"_s, u"#0000ff"_s},
        {u"drawn"_s, u"#ffff00"_s},
        {u"drawn.xpm"_s, u"#ffff00"_s},
        {u"loose"_s, u"#00ffff"_s},
        {data.filePath(u"elsewhere/secret.png"_s), u"#ff00ff"_s},
        {data.filePath(u"system/pixmaps/drawn.svg"_s), u"#ffff00"_s},
        {data.filePath(u"elsewhere/gone.png"_s), missing},
        {data.filePath(u"elsewhere"_s), missing},
        {u"../../elsewhere/secret"_s, missing},
        {u"broken"_s, missing},
        {{}, missing},
    };
    for (const auto &each : cases)
        EXPECT_EQ(colorOf(applicationIcon(each.icon, Qt::gray)), each.expected) << each.icon.toStdString();
}

} // namespace
} // namespace orvelle::test
