#include "app/SyncPlaces.h"
#include "platform/freedesktop/PrivateMounts.h"
#include "support/Keyring.h"

#include <algorithm>
#include <array>
#include <random>

// Two running programs, and what goes wrong in the world around them.
namespace orvelle::test {
namespace {

constexpr qint64 patience = 120'000;

class SyncRounds : public testing::Test
{
protected:
    static QByteArray disk(bool mayMount) { return mayMount ? "size=96m" : QByteArray(); }

    void play(MeetingPlace &place)
    {
        for (Machine &machine : machines)
            machine.startProgram();
        ASSERT_TRUE(place.configure(machines[0], {}));
        ASSERT_TRUE(place.configure(machines[1], u" --use-existing"_s));
        place.endTrouble();
        const int rounds = std::max(5, qEnvironmentVariableIntValue("ORVELLE_TEST_ROUNDS"));
        constexpr int betweenLooks = 25;
        for (int round = 0; round < rounds && !HasFailure(); ++round) {
            playRound(place, round);
            if (round % betweenLooks == betweenLooks - 1 || round == rounds - 1)
                judge(place, round);
        }
        EXPECT_GE(edits, rounds);
        printf("%d rounds, %d edits, %d kills, %d full disks\n", rounds, edits, kills, fullDisks);
    }

    /// Both edit and synchronise at once, and something happens meanwhile.
    void playRound(MeetingPlace &place, int round)
    {
        for (std::size_t i = 0; i < machines.size(); ++i)
            edit(i, round);
        // Each trouble has its turn.
        const unsigned trouble = static_cast<unsigned>(round) % (place.troubles() + 1);
        if (round % 2 == 0)
            place.beginTrouble(trouble);
        std::array<QProcess, 2> commands;
        for (std::size_t i = 0; i < machines.size(); ++i)
            machines[i].begin(commands[i], u"sync now"_s);
        QThread::msleep(random() % place.milliseconds());
        if (round % 2 == 1)
            place.beginTrouble(trouble);
        const std::size_t unlucky = random() % 2;
        Machine &victim = machines[unlucky];
        const unsigned misfortune = random() % 4;
        const QString ballast = victim.home() + u"/ballast"_s;
        if (misfortune == 0 && mayMount) {
            fillDisk(ballast);
            ++fullDisks;
            edit(unlucky, round);
        }
        if (misfortune < 2) {
            victim.kill();
            ++kills;
        }
        QFile::remove(ballast);
        if (misfortune < 2)
            victim.startProgram();
        for (QProcess &command : commands)
            EXPECT_TRUE(command.waitForFinished(60'000)) << "a command hangs in round " << round;
        place.endTrouble();
    }

    /// Adds an item, and renames one that was added earlier.
    void edit(std::size_t which, int round)
    {
        Machine &machine = machines[which];
        const QString name = u"r%1m%2"_s.arg(round).arg(which);
        const QString path = u"https://"_s + name + u".invalid/"_s;
        const Answer added = machine.run(u"add %1 --name %2"_s.arg(path, name));
        const QString id = QString::fromUtf8(added.out).trimmed();
        if (added.code == 0) {
            told[id] = {name, path, {}};
            made[which] += id;
            ++edits;
        }
        if (made[which].size() < 2)
            return;
        const QString earlier = made[which][static_cast<qsizetype>(random()) % (made[which].size() - 1)];
        Told &older = told[earlier];
        const QString newName = name + u"-renamed"_s;
        if (machine.run(u"update %1 --name %2"_s.arg(earlier, newName)).code != 0) {
            older.perhaps += newName; // what was not stored at once may be so later
            return;
        }
        older = {newName, older.path, {}};
        ++edits;
    }

    void judge(MeetingPlace &place, int round)
    {
        const auto wrong = [&] {
            QString said;
            for (Machine &machine : machines)
                said += machine.run("sync now").code == 0 ? u""_s : u"not synchronised; "_s;
            const Outline a = outline(machines[0]);
            const Outline b = outline(machines[1]);
            return said + whatIsWrong(a, place) + (a == b ? u""_s : u"the machines differ"_s);
        };
        EXPECT_TRUE(Machine::becomes([&] { return wrong().isEmpty(); }, patience))
            << "round " << round << ": " << wrong().toStdString() << machines[0].run("links").out.toStdString() << "\n"
            << machines[1].run("links").out.toStdString() << machines[0].run("sync status").out.toStdString()
            << machines[1].run("sync status").out.toStdString() << "\n"
            << machines[0].log().toStdString() << "\n"
            << machines[1].log().toStdString();
        const auto document = decodeExchange(place.document());
        EXPECT_TRUE(document && document->links.size() == outline(machines[0]).size());
        for (Machine &machine : machines)
            EXPECT_FALSE(machine.status()[u"needsUser"].toBool()) << machine.run("sync status").out.toStdString();
    }

    /// Name and path by identity; an identity that is there twice is told.
    static Outline outline(Machine &machine)
    {
        Outline items;
        for (const QByteArray &line : machine.run("links").out.split('\n')) {
            if (line.isEmpty())
                continue;
            QString &item = items[QString::fromUtf8(line.left(36))];
            item = item.isEmpty() ? QString::fromUtf8(line.mid(38)) : u"there twice"_s;
        }
        return items;
    }

    QString whatIsWrong(const Outline &items, MeetingPlace &place) const
    {
        QString said;
        const auto check = [&](const QString &id, const QStringList &names, const QString &path) {
            const bool right = std::any_of(names.begin(), names.end(),
                                           [&](const QString &name) { return items[id] == name + u"  "_s + path; });
            if (!right)
                said += u"%1 should be %2 and is \"%3\"; "_s.arg(id, names.join(u'/'), items[id]);
        };
        for (auto it = told.begin(); it != told.end(); ++it)
            check(it.key(), QStringList(it->name) + it->perhaps, it->path);
        const Outline others = place.fromElsewhere();
        for (auto it = others.begin(); it != others.end(); ++it) {
            if (items[it.key()] != *it)
                said += u"%1 should be \"%2\" and is \"%3\"; "_s.arg(it.key(), *it, items[it.key()]);
        }
        return said;
    }

    /// What a program said it has stored.
    struct Told {
        QString name;
        QString path;
        QStringList perhaps; ///< names that it said it could not store
    };

    bool mayMount = havePrivateMounts();
    std::array<Machine, 2> machines{Machine(disk(mayMount)), Machine(disk(mayMount))};
    std::mt19937 random{20'261'121};
    QHash<QString, Told> told; ///< by identity
    std::array<QStringList, 2> made;
    int edits = 0;
    int kills = 0;
    int fullDisks = 0;
};

TEST_F(SyncRounds, InAFolderLoseNothing)
{
    SharedFolderPlace place(mayMount);
    play(place);
}

TEST_F(SyncRounds, OverAServerLoseNothing)
{
    if (!ApacheServer::isInstalled() || !Keyring::isInstalled())
        GTEST_SKIP() << "the package apache2 or gnome-keyring is not installed";
    Keyring keyrings[] = {Keyring(machines[0].busAddress()), Keyring(machines[1].busAddress())};
    for (Keyring &keyring : keyrings)
        ASSERT_TRUE(keyring.start());
    ServerPlace place(mayMount);
    play(place);
    EXPECT_GT(place.accidents(), 0);
    printf("%d uploads met an accident\n", place.accidents());
}

} // namespace
} // namespace orvelle::test
