#pragma once

#include "app/ProgramMachine.h"
#include "app/ServerRoad.h"
#include "links/exchange/ExchangeDocument.h"
#include "platform/freedesktop/ApacheServer.h"
#include "platform/freedesktop/SystemClock.h"
#include "sync/SyncBase.h"

#include <QSaveFile>

#include <sys/mount.h>

#include <mutex>

namespace orvelle::test {

/// What others made of the document: the names and paths of items by identity.
using Outline = QMap<QString, QString>;

/// Fills the disk that this file comes to lie on.
inline void fillDisk(const QString &path)
{
    QFile ballast(path);
    EXPECT_TRUE(ballast.open(QFile::WriteOnly | QFile::Unbuffered));
    for (qint64 part = 1 << 20; part > 0; part /= 2) {
        while (ballast.write(QByteArray(part, 'b')) == part) {
        }
    }
}

/// Where machines meet, and what goes wrong there.
class MeetingPlace
{
public:
    virtual ~MeetingPlace() = default;
    virtual bool configure(Machine &machine, const QString &more) = 0;
    virtual unsigned troubles() const = 0;
    /// From 1 to troubles(); others are none. It lasts until it is ended.
    virtual void beginTrouble(unsigned number) = 0;
    virtual void endTrouble() = 0;
    /// As long as a synchronisation takes there.
    virtual unsigned milliseconds() const = 0;
    virtual QByteArray document() const = 0;
    /// Items that nobody here made.
    virtual Outline fromElsewhere() { return {}; }
};

class SharedFolderPlace : public MeetingPlace
{
public:
    explicit SharedFolderPlace(bool mayMount)
    {
        m_isSmall = mayMount && ::mount("none", m_folder.path().toUtf8().constData(), "tmpfs", 0, "size=4m") == 0;
    }
    ~SharedFolderPlace() override
    {
        if (m_isSmall)
            ::umount(m_folder.path().toUtf8().constData());
    }

    bool configure(Machine &machine, const QString &more) override
    {
        return machine.run(u"sync configure --folder "_s + m_folder.path() + more).code == 0;
    }
    unsigned troubles() const override { return 3; }
    unsigned milliseconds() const override { return 150; }
    void beginTrouble(unsigned number) override
    {
        m_trouble = number;
        if (number == 1 && m_isSmall)
            fillDisk(m_folder.filePath(u"ballast"_s));
        if (number == 2) { // a sync client that copies without care
            m_before = document();
            put(u"orvelle-sync.ovexport"_s, m_before.first(m_before.size() / 2));
        }
        if (number == 3) // and one that keeps both
            put(u"orvelle-sync (conflicted copy %1).ovexport"_s.arg(++m_copies), m_before);
    }
    void endTrouble() override
    {
        QFile::remove(m_folder.filePath(u"ballast"_s));
        if (m_trouble == 2)
            put(u"orvelle-sync.ovexport"_s, m_before);
        m_trouble = 0;
        m_before = document();
    }
    QByteArray document() const override
    {
        QFile file(m_folder.filePath(u"orvelle-sync.ovexport"_s));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    void put(const QString &name, const QByteArray &bytes) const
    {
        QFile file(m_folder.filePath(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    }

    QTemporaryDir m_folder;
    bool m_isSmall = false;
    unsigned m_trouble = 0;
    int m_copies = 0;
    QByteArray m_before;
};

/// A server with a small disk, a bad line to it, and somebody else who writes
/// the document.
class ServerPlace : public MeetingPlace
{
public:
    explicit ServerPlace(bool mayMount) : m_isSmall(mayMount), m_server(mayMount ? "size=4m" : "")
    {
        m_road.overtake = [this] { writeFromElsewhere(); };
    }

    bool configure(Machine &machine, const QString &more) override
    {
        const Answer answer = machine.run(
            u"sync configure --user ann --password - --webdav "_s + m_road.url().toString() + more, "geheim\n");
        EXPECT_EQ(answer.code, 0) << answer.err.toStdString() << m_server.errors().toStdString();
        return answer.code == 0;
    }
    unsigned troubles() const override { return 5; }
    unsigned milliseconds() const override { return 2500; }
    void beginTrouble(unsigned number) override
    {
        constexpr ServerRoad::Accident accidents[] = {ServerRoad::UploadIsCut, ServerRoad::AnswerIsLost,
                                                      ServerRoad::Overtaken};
        if (number >= 1 && number <= 3)
            m_road.next(accidents[number - 1]);
        if (number == 4 && m_isSmall)
            fillDisk(m_server.path(u"ballast"_s));
        m_isStopped = number == 5;
        if (m_isStopped)
            m_server.stop();
    }
    void endTrouble() override
    {
        m_road.next(ServerRoad::None);
        QFile::remove(m_server.path(u"ballast"_s));
        if (!std::exchange(m_isStopped, false))
            return;
        EXPECT_TRUE(m_server.start()) << m_server.errors().toStdString();
    }
    QByteArray document() const override
    {
        QFile file(m_server.path(u"orvelle-sync.ovexport"_s));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    Outline fromElsewhere() override
    {
        const std::lock_guard lock(m_mutex);
        return m_fromElsewhere;
    }
    int accidents() const { return m_road.accidents(); }

private:
    /// As another machine would, but without asking the server.
    void writeFromElsewhere()
    {
        const std::lock_guard lock(m_mutex);
        const QByteArray before = document();
        const auto decoded = decodeExchange(before);
        if (!decoded)
            return;
        ExportData changed = *decoded;
        const Timestamp now = SystemClock().now();
        const QString name = u"elsewhere%1"_s.arg(m_fromElsewhere.size());
        const auto item = LinkItem::make(name, u"https://%1.invalid/"_s.arg(name), LinkType::Url, now);
        changed.links.append(item);
        changed.exportDate = now;
        changed.lastModifiedByMachineId = u"elsewhere"_s;
        changed.syncHistory = syncVersionId(before) + changed.syncHistory.value_or(QString());
        const QByteArray after = encodeExchange(changed);
        QSaveFile file(m_server.path(u"orvelle-sync.ovexport"_s));
        if (file.open(QFile::WriteOnly) && file.write(after) == after.size() &&
            file.setPermissions(QFile::Permissions(0x6666)) && file.commit())
            m_fromElsewhere[item.stableId] = item.name + u"  "_s + item.path;
    }

    bool m_isSmall;
    ApacheServer m_server;
    ServerRoad m_road{m_server.folder()};
    bool m_isStopped = false;
    std::mutex m_mutex;
    Outline m_fromElsewhere;
};

} // namespace orvelle::test
