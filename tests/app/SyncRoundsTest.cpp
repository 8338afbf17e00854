#include "app/ProgramMachine.h"
#include "platform/freedesktop/PrivateMounts.h"

#include <array>
#include <random>

// Two running programs, and what goes wrong in the world around them.
namespace orvelle::test {
namespace {

constexpr qint64 patience = 120'000;

/// Where they meet.
class MeetingPlace
{
public:
    virtual ~MeetingPlace() = default;
    virtual bool configure(Machine &machine, const QString &more) = 0;
    /// The troubles are numbered from 1; of 0 and what it does not know it
    /// makes none. It lasts until it is ended.
    virtual void beginTrouble(unsigned number) = 0;
    virtual void endTrouble() = 0;
    virtual QByteArray document() const = 0;
};

class SharedFolderPlace : public MeetingPlace
{
public:
    SharedFolderPlace()
    {
        m_isSmall =
            havePrivateMounts() && ::mount("none", m_folder.path().toUtf8().constData(), "tmpfs", 0, "size=4m") == 0;
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
    void beginTrouble(unsigned number) override
    {
        m_trouble = number;
        if (number == 1 && m_isSmall)
            fill();
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
    void fill()
    {
        QFile ballast(m_folder.filePath(u"ballast"_s));
        EXPECT_TRUE(ballast.open(QFile::WriteOnly | QFile::Unbuffered));
        for (qint64 part = 1 << 20; part > 0; part /= 2) {
            while (ballast.write(QByteArray(part, 'b')) == part) {
            }
        }
    }

    QTemporaryDir m_folder;
    bool m_isSmall = false;
    unsigned m_trouble = 0;
    int m_copies = 0;
    QByteArray m_before;
};

class SyncRounds : public testing::Test
{
protected:
    void play(MeetingPlace &place)
    {
        for (Machine &machine : machines)
            machine.startProgram();
        ASSERT_TRUE(place.configure(machines[0], {}));
        ASSERT_TRUE(place.configure(machines[1], u" --use-existing"_s));
        place.endTrouble();
        const int rounds = std::max(5, qEnvironmentVariableIntValue("ORVELLE_TEST_ROUNDS"));
        for (int round = 0; round < rounds; ++round)
            playRound(place, round);
        judge(place);
        printf("%d rounds, %lld edits, %d kills\n", rounds, static_cast<long long>(acknowledged.size()), kills);
    }

    /// Both edit and synchronise at once, and something happens meanwhile.
    void playRound(MeetingPlace &place, int round)
    {
        std::array<QProcess, 2> commands;
        for (std::size_t i = 0; i < machines.size(); ++i) {
            const QString name = u"r%1m%2.invalid"_s.arg(round).arg(i);
            if (machines[i].run(u"add https://"_s + name + u"/"_s).code == 0)
                acknowledged += name;
        }
        const unsigned trouble = random() % 6;
        if (round % 2 == 0)
            place.beginTrouble(trouble);
        for (std::size_t i = 0; i < machines.size(); ++i)
            machines[i].begin(commands[i], u"sync now"_s);
        QThread::msleep(random() % 150);
        if (round % 2 == 1)
            place.beginTrouble(trouble);
        if (trouble > 3) {
            Machine &victim = machines[trouble % 2];
            victim.kill();
            victim.startProgram();
            ++kills;
        }
        for (QProcess &command : commands)
            EXPECT_TRUE(command.waitForFinished(60'000)) << "a command hangs in round " << round;
        place.endTrouble();
    }

    void judge(MeetingPlace &place)
    {
        EXPECT_GT(acknowledged.size(), 0);
        EXPECT_TRUE(Machine::becomes(
            [&] {
                for (Machine &machine : machines)
                    machine.run("sync now");
                return missing(machines[0].run("links --json").out).isEmpty() &&
                       missing(machines[1].run("links --json").out).isEmpty();
            },
            patience))
            << missing(machines[0].run("links --json").out).join(u' ').toStdString() << " / "
            << missing(machines[1].run("links --json").out).join(u' ').toStdString() << " / "
            << machines[0].run("sync status").out.toStdString() << machines[1].run("sync status").out.toStdString();
        EXPECT_TRUE(missing(place.document()).isEmpty());
        for (Machine &machine : machines)
            EXPECT_FALSE(machine.status()[u"needsUser"].toBool()) << machine.run("sync status").out.toStdString();
    }

    /// What is not there exactly once.
    QStringList missing(const QByteArray &json) const
    {
        QStringList names;
        for (const QString &name : acknowledged) {
            if (json.count("https:\\/\\/" + name.toUtf8()) + json.count("https://" + name.toUtf8() + "/\"") != 1)
                names += name;
        }
        return names;
    }

    std::array<Machine, 2> machines;
    std::mt19937 random{20'261'121};
    QStringList acknowledged;
    int kills = 0;
};

TEST_F(SyncRounds, InAFolderLoseNothing)
{
    SharedFolderPlace place;
    play(place);
}

} // namespace
} // namespace orvelle::test
