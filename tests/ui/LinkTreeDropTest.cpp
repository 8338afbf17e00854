#include "ui/GeneralTabWorld.h"

#include <QDragMoveEvent>
#include <QUrl>

namespace orvelle {

using namespace std::chrono_literals;

class LinkTreeDropTest : public test::GeneralTabWorld
{
protected:
    /// Drags over a row, `share` of its height from its top, and drops; false
    /// when the list does not take it.
    bool drop(const QMimeData &data, const char *onto, double share = 0.5)
    {
        for (QModelIndex above = row(onto).parent(); above.isValid(); above = above.parent())
            tree()->expand(above);
        const QRect place = tree()->visualRect(row(onto));
        return dropAt(data, QPoint(place.center().x(), place.top() + static_cast<int>(share * place.height())));
    }
    bool dropAt(const QMimeData &data, const QPoint &at)
    {
        QWidget *onto = tree()->viewport();
        const Qt::DropActions actions = Qt::MoveAction | Qt::CopyAction;
        QDragEnterEvent enter(at, actions, &data, Qt::LeftButton, {});
        QApplication::sendEvent(onto, &enter);
        if (!enter.isAccepted())
            return false;
        QDragMoveEvent move(at, actions, &data, Qt::LeftButton, {});
        QApplication::sendEvent(onto, &move);
        QDropEvent drop(at, actions, &data, Qt::LeftButton, {});
        QApplication::sendEvent(onto, &drop);
        world.clock.advance(1ms);
        QApplication::processEvents();
        return drop.isAccepted();
    }
    /// A drag of these rows as the list itself makes it.
    std::unique_ptr<QMimeData> rows(const QList<const char *> &names)
    {
        QList<QUuid> ids;
        for (const char *one : names)
            ids += id(one);
        auto data = std::make_unique<QMimeData>();
        data->setData(QStringLiteral("application/x-orvelle-link-ids"), LinkDropDelegate::payload(ids));
        return data;
    }
};

TEST_F(LinkTreeDropTest, RowsMoveToWhereTheyAreDropped)
{
    open("a b f[c] g[] d");
    const struct {
        QList<const char *> dragged;
        const char *onto;
        double share;
        const char *after;
    } steps[] = {
        {{"d"}, "a", 0.2, "d a b f[c] g[]"},     {{"d"}, "c", 0.2, "a b f[d c] g[]"},
        {{"d"}, "c", 0.8, "a b f[c d] g[]"},     {{"d"}, "g", 0.5, "a b f[c] g[d]"},
        {{"a", "b"}, "d", 0.8, "f[c] g[d a b]"}, {{"f", "a"}, "g", 0.1, "f[c] a g[d b]"},
        {{"a"}, "a", 0.8, "f[c] a g[d b]"}, // on itself
    };
    for (const auto &step : steps) {
        EXPECT_TRUE(drop(*rows(step.dragged), step.onto, step.share));
        EXPECT_EQ(outline(), step.after);
        EXPECT_TRUE(status().isEmpty());
    }
    EXPECT_TRUE(dropAt(*rows({"d", "b"}), QPoint(40, tree()->viewport()->height() - 2)));
    EXPECT_EQ(outline(), "f[c] a g[] d b") << "below the last row";
    EXPECT_EQ(tree()->selectedIds(), (QList<QUuid>{id("d"), id("b")}));
    world.links.undo();
    EXPECT_EQ(outline(), "f[c] a g[d b]") << "several are one step";
}

TEST_F(LinkTreeDropTest, ARefusedMoveSaysWhy)
{
    open("f[g[h[x]]] a");
    const std::string before = outline();
    EXPECT_TRUE(drop(*rows({"a"}), "x"));
    EXPECT_TRUE(status().contains(QStringLiteral("third level"))) << status().toStdString();
    EXPECT_TRUE(drop(*rows({"f"}), "g"));
    EXPECT_TRUE(status().contains(QStringLiteral("into itself"))) << status().toStdString();
    EXPECT_EQ(outline(), before);
}

TEST_F(LinkTreeDropTest, FilesAndAddressesBecomeLinksWhereTheyFall)
{
    open("a f[b] c");
    world.exchange.takesDrops = false;
    QMimeData web;
    web.setUrls({QUrl(QStringLiteral("https://example.org/page"))});
    const auto titled = [&web](const QString &title) {
        const QString data = QStringLiteral("https://example.org/page\n") + title;
        web.setData(QStringLiteral("text/x-moz-url"),
                    QByteArray(reinterpret_cast<const char *>(data.utf16()), data.size() * 2));
    };
    titled(QString(100'000, u'x'));
    EXPECT_TRUE(drop(web, "c", 0.2));
    EXPECT_LE(world.links.links().at(2).name.size(), 500);
    world.links.undo();
    titled(QStringLiteral("The page"));
    EXPECT_TRUE(drop(web, "c", 0.2));
    EXPECT_EQ(outline(), "a f[b] The page c");

    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/one.txt")), QUrl::fromLocalFile(world.folder.path())});
    EXPECT_TRUE(drop(files, "f", 0.5));
    ASSERT_EQ(item("f").children->size(), 3);
    EXPECT_EQ(item("f").children->at(1).type, LinkType::File);
    EXPECT_EQ(item("f").children->at(2).type, LinkType::Folder);
    EXPECT_EQ(world.exchange.asked.size(), 1) << "it might have been a document";
    world.exchange.takesDrops = true;
    EXPECT_TRUE(drop(files, "f", 0.5));
    EXPECT_EQ(item("f").children->size(), 3) << "it was one";
    world.exchange.leaves = {QStringLiteral("/tmp/one.txt")};
    EXPECT_TRUE(drop(files, "f", 0.5));
    EXPECT_EQ(item("f").children->size(), 4) << "the other one was";

    QMimeData script;
    script.setText(QStringLiteral("javascript:alert(1)"));
    EXPECT_TRUE(drop(script, "a", 0.2));
    EXPECT_FALSE(status().isEmpty());
    QMimeData picture;
    picture.setImageData(QImage(1, 1, QImage::Format_RGB32));
    EXPECT_FALSE(drop(picture, "a", 0.2));
    EXPECT_EQ(world.links.links().size(), 4);
}

} // namespace orvelle
