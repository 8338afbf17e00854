#include "ReplicaModel.h"

#include "Replica.h"
#include "links/LinkTree.h"

#include <QDir>
#include <QFileInfo>

#include <random>

using namespace Qt::StringLiterals;

namespace orvelle::test {

namespace {

using Kind = ModelStep::Kind;
using namespace std::chrono_literals;

constexpr int machineCount = 5;
constexpr const char *kindNames[] = {
    "add",     "rename", "rewrite", "move",    "delete",  "reorder",          "undo",    "save",
    "offline", "online", "hold",    "deliver", "tell",    "old version",      "restart", "debug mode",
    "wake",    "wait",   "set",     "encrypt", "decrypt", "forget passphrase"};
// How often each happens, of 100.
constexpr int shares[] = {14, 12, 6, 13, 7, 2, 3, 4, 4, 6, 2, 4, 2, 2, 4, 2, 2, 4, 4, 1, 1, 1};
/// What one passphrase was and became; the user knows both.
constexpr const char *passphrases[] = {"first", "second"};

/// What all machines have of an item.
struct Known {
    QString content;
    QString group;
    double changed = -1e10; ///< whole seconds, as documents have them
    double textChanged = -1e10;
    friend bool operator==(const Known &, const Known &) = default;
};
using KnownById = QMap<QString, Known>;

double wholeSeconds(const std::optional<Timestamp> &date)
{
    return date ? std::floor(date->seconds) : Known().changed;
}

void learn(const LinkList &links, const QString &group, KnownById &known)
{
    for (const LinkItem &item : links) {
        known.insert(item.stableId, {item.name + u'|' + item.noteContent.value_or(QString()), group,
                                     wholeSeconds(item.modifiedAt), wholeSeconds(item.contentModifiedAt)});
        if (item.children)
            learn(*item.children, item.stableId, known);
    }
}

KnownById knownOf(const LinkList &links)
{
    KnownById known;
    learn(links, {}, known);
    return known;
}

class Model
{
public:
    explicit Model(quint32 seed)
        : m_random(seed),
          m_place(m_world, seed % 2 ? FakeCloudPlace::Kind::SyncedFolder : FakeCloudPlace::Kind::Server),
          m_withEncryption(seed % 8 == 3 || seed % 8 == 4) // deriving keys takes its time
    {
        m_place.latency = std::chrono::milliseconds(m_random() % 400);
        for (int i = 0; i < machineCount; ++i) {
            double offset = static_cast<double>(m_random() % 21) - 10;
            if (i == 0 && seed % 5 == 0)
                offset += seed % 2 ? 2e8 : -2e8;
            m_machines.push_back(
                std::make_unique<Replica>(m_world, m_place, m_folder.filePath(QString::number(i)), offset));
        }
    }

    QString run(const std::vector<ModelStep> &steps)
    {
        for (const ModelStep &step : steps) {
            m_random.seed(step.seed);
            perform(step, *m_machines[static_cast<std::size_t>(step.machine)]);
            pass(std::chrono::milliseconds(m_random() % 3 ? 1000 + m_random() % 6000 : m_random() % 45'000));
            if (!m_fault.isEmpty())
                return m_fault + u" after "_s + describe(step);
        }
        settle();
        judge();
        if (m_fault.isEmpty())
            judgeQuiet();
        return m_fault;
    }

private:
    void fail(const QString &what)
    {
        if (m_fault.isEmpty())
            m_fault = what;
    }

    void pass(std::chrono::milliseconds time)
    {
        m_world.advance(time);
        for (std::size_t i = 0; i < m_machines.size(); ++i) {
            if (knownOf(m_machines[i]->links()).size() != countAll(m_machines[i]->links()))
                fail(u"an identity is twice on machine %1"_s.arg(i));
            answer(*m_machines[i]);
        }
    }

    /// The user decides what was held back; in the end for it.
    void answer(Replica &machine)
    {
        if (!machine.sync().heldBack())
            return;
        if (m_isSettling || m_random() % 2)
            machine.sync().acceptHeldBack();
        else
            machine.sync().rejectHeldBack();
    }

    std::size_t below(qsizetype bound) { return m_random() % static_cast<quint32>(bound); }

    LinkItem any(const LinkList &links)
    {
        const LinkList all = flatten(links);
        return all.isEmpty() ? LinkItem() : all.at(static_cast<qsizetype>(below(all.size())));
    }

    QUuid anyGroup(const LinkList &links)
    {
        LinkList groups;
        walk(links, [&groups](const LinkItem &item) {
            if (item.isGroup())
                groups += item;
        });
        const std::size_t at = below(groups.size() + 1);
        return at == static_cast<std::size_t>(groups.size()) ? QUuid() : groups.at(static_cast<qsizetype>(at)).id;
    }

    void perform(const ModelStep &step, Replica &machine)
    {
        const KnownById before = knownOf(machine.links());
        edit(step.kind, machine);
        happen(step.kind, machine);
        protect(step.kind, machine);
        if (step.kind <= Kind::Undo && !machine.isInDebugMode())
            note(before, knownOf(machine.links()), step.kind == Kind::Undo);
    }

    void edit(Kind kind, Replica &machine)
    {
        LinkStore &store = machine.store();
        const LinkItem item = any(store.links());
        switch (kind) {
        case Kind::Add:
            return add(machine);
        case Kind::Rename:
            store.updateLinks({item.id}, [this](LinkItem &changed) { changed.name = fresh(u"name"_s); });
            return;
        case Kind::Rewrite:
            return rewrite(machine, item);
        case Kind::Move: {
            const QUuid group = anyGroup(store.links());
            store.moveLink(item.id, group.isNull() ? std::nullopt : std::optional(group), qsizetype(below(3)));
            return;
        }
        case Kind::Delete:
            store.removeLink(item.id);
            return;
        case Kind::Reorder:
            store.moveLinks({qsizetype(below(4))}, qsizetype(below(4)));
            return;
        case Kind::Undo:
            store.undo();
            return;
        default:
            return;
        }
    }

    void add(Replica &machine)
    {
        const quint32 what = m_random() % 4;
        const LinkType type = what == 0 ? LinkType::Group : what == 1 ? LinkType::Note : LinkType::Url;
        LinkItem item = LinkItem::make(fresh(u"made"_s), u"https://a.example"_s, type, machine.clock.now());
        if (type != LinkType::Url)
            item.path.clear();
        const QUuid group = anyGroup(machine.links());
        if (group.isNull() || !machine.store().addLinkToGroup(item, group))
            machine.store().addLink(item);
    }

    void rewrite(Replica &machine, const LinkItem &near)
    {
        LinkItem note = near;
        if (note.type != LinkType::Note) {
            walk(machine.links(), [&note](const LinkItem &item) {
                if (item.type == LinkType::Note)
                    note = item;
            });
        }
        if (note.type != LinkType::Note)
            return;
        note.noteContent = fresh(u"text"_s);
        note.contentModifiedAt =
            editDate(note.contentModifiedAt ? note.contentModifiedAt : note.modifiedAt, machine.clock.now());
        machine.store().updateLink(note);
    }

    void happen(Kind kind, Replica &machine)
    {
        switch (kind) {
        case Kind::SaveByHand:
            machine.sync().saveToCloud([](const auto &) {});
            return;
        case Kind::Offline:
        case Kind::Online:
            machine.container.setOnline(kind == Kind::Online);
            return;
        case Kind::Hold:
            machine.container.holdDeliveries(true);
            return;
        case Kind::Deliver:
            machine.container.holdDeliveries(false);
            machine.container.catchUp();
            return;
        case Kind::TellAgain:
            machine.container.tellsAgain();
            return;
        case Kind::OldVersion:
            return oldVersion();
        case Kind::Restart:
            machine.restart();
            return;
        case Kind::DebugMode:
            machine.toggleDebugMode();
            return;
        case Kind::Wake:
            machine.sync().handleSystemDidWake();
            return;
        case Kind::Wait:
            return pass(60s);
        default:
            return;
        }
    }

    void protect(Kind kind, Replica &machine)
    {
        if (kind == Kind::Set)
            return set(machine);
        if (!m_withEncryption)
            return;
        if (kind == Kind::Encrypt) {
            machine.sync().setPassphrase(QString::fromLatin1(passphrases[below(2)]), [](const auto &) {});
        } else if (kind == Kind::Decrypt) {
            machine.sync().removeEncryption([](const auto &) {});
        } else if (kind == Kind::ForgetPassphrase) {
            machine.secrets.secrets.clear();
            machine.restart();
        }
    }

    void set(Replica &machine)
    {
        machine.settings().setIcon(fresh(u"icon"_s));
        if (!machine.isInDebugMode())
            m_newestSetting = std::max(m_newestSetting, settingsDate(machine));
    }

    static double settingsDate(const Replica &machine)
    {
        return wholeSeconds(machine.defaults.get<Timestamp>(u"orvelle_settingsModifiedAt"_s));
    }

    void oldVersion()
    {
        const QStringList names = m_place.names();
        if (names.isEmpty())
            return;
        const QString &name = names.first();
        m_place.deliversAgain(name, qsizetype(below(m_place.versionsOf(name).size())));
    }

    QString fresh(const QString &what) { return u"%1 %2"_s.arg(what).arg(++m_counter); }

    /// What a user's edit did.
    void note(const KnownById &before, const KnownById &after, bool isUndo)
    {
        for (auto it = before.begin(); it != before.end(); ++it) {
            if (!after.contains(it.key()))
                m_deleted.insert(it.key());
        }
        for (auto it = after.begin(); it != after.end(); ++it) {
            if (before.contains(it.key()) && *it == before.value(it.key()))
                continue;
            Known &newest = m_newest[it.key()];
            newest.content = it->content;
            if (isUndo) { // the edit that was taken back need not survive
                newest.changed = newest.textChanged = Known().changed;
                continue;
            }
            newest.changed = std::max(newest.changed, it->changed);
            newest.textChanged = std::max(newest.textChanged, it->textChanged);
        }
    }

    /// Whatever stood between the machines ends, and time passes.
    void settle()
    {
        m_isSettling = true;
        for (const auto &machine : m_machines) {
            if (machine->isInDebugMode())
                machine->toggleDebugMode();
            machine->container.holdDeliveries(false);
            machine->container.setOnline(true);
            machine->container.catchUp();
        }
        for (int round = 0; round < 40; ++round) {
            pass(30s);
            for (const auto &machine : m_machines) {
                if (machine->sync().status().state == SyncStatus::State::NeedsPassphrase)
                    machine->sync().setPassphrase(QString::fromLatin1(passphrases[round % 2]), [](const auto &) {});
            }
        }
    }

    void judge()
    {
        const KnownById first = knownOf(m_machines.front()->links());
        for (std::size_t i = 1; i < m_machines.size(); ++i) {
            const KnownById other = knownOf(m_machines[i]->links());
            if (other != first)
                fail(u"machine %1 differs from machine 0: %2"_s.arg(i).arg(difference(first, other)));
            if (m_machines[i]->settings().icon() != m_machines.front()->settings().icon())
                fail(u"machine %1 has other settings than machine 0"_s.arg(i));
        }
        if (settingsDate(*m_machines.front()) < m_newestSetting)
            fail(u"the newest settings are lost"_s);
        for (auto it = m_newest.begin(); it != m_newest.end(); ++it) {
            if (m_deleted.contains(it.key()))
                continue;
            const auto found = first.constFind(it.key());
            if (found == first.constEnd())
                fail(u"lost: %1"_s.arg(it->content));
            else if (found->changed < it->changed || found->textChanged < it->textChanged)
                fail(u"an edit is lost: %1 became %2"_s.arg(shown(*it), shown(*found)));
        }
    }

    static QString shown(const Known &one)
    {
        return u"%1 in '%2' at %3 and %4"_s.arg(one.content, one.group)
            .arg(one.changed, 0, 'f', 0)
            .arg(one.textChanged, 0, 'f', 0);
    }

    static QString difference(const KnownById &a, const KnownById &b)
    {
        for (const QString &key : a.keys() + b.keys()) {
            if (a.contains(key) != b.contains(key))
                return u"only one has "_s + (a.contains(key) ? a.value(key) : b.value(key)).content;
            const Known one = a.value(key);
            const Known two = b.value(key);
            if (!(one == two))
                return shown(one) + u", "_s + shown(two);
        }
        return {};
    }

    /// Nothing is left to do, also when all is told and read again.
    void judgeQuiet()
    {
        const int written = m_place.writeCount();
        std::vector<LinkList> trees;
        for (const auto &machine : m_machines)
            trees.push_back(machine->links());
        for (int pass_ = 0; pass_ < 2; ++pass_) {
            for (const auto &machine : m_machines) {
                if (pass_ == 1)
                    machine->restart();
                machine->container.tellsAgain();
                machine->sync().handleSystemDidWake();
            }
            for (int round = 0; round < 4; ++round)
                pass(30s);
        }
        if (m_place.writeCount() != written)
            fail(u"%1 writes although nothing changed"_s.arg(m_place.writeCount() - written));
        for (std::size_t i = 0; i < m_machines.size(); ++i) {
            if (knownOf(m_machines[i]->links()) != knownOf(trees[i]))
                fail(u"machine %1 changed although nothing did"_s.arg(i));
        }
    }

    std::mt19937 m_random;
    FakeClock m_world;
    FakeCloudPlace m_place;
    bool m_withEncryption;
    /// In memory where that can be had: each merge is kept as a snapshot, and
    /// waiting for a disk is not what is tested.
    QTemporaryDir m_folder{QFileInfo(u"/dev/shm"_s).isWritable() ? u"/dev/shm/replicas-XXXXXX"_s
                                                                 : QDir::temp().filePath(u"replicas-XXXXXX"_s)};
    std::vector<std::unique_ptr<Replica>> m_machines;
    QSet<QString> m_deleted; ///< by somebody, at some time
    KnownById m_newest;      ///< the dates of the newest edit that was made anywhere
    QString m_fault;
    double m_newestSetting = Known().changed; ///< when they were changed last anywhere
    int m_counter = 0;
    bool m_isSettling = false;
};

} // namespace

QString describe(const ModelStep &step)
{
    return u"%1 on machine %2 (%3)"_s.arg(QLatin1StringView(kindNames[static_cast<int>(step.kind)]))
        .arg(step.machine)
        .arg(step.seed);
}

std::vector<ModelStep> randomSteps(quint32 seed)
{
    std::mt19937 random(seed);
    std::vector<ModelStep> steps(20 + random() % 60);
    for (ModelStep &step : steps) {
        int kind = 0;
        for (int at = static_cast<int>(random() % 100); at >= shares[kind]; ++kind)
            at -= shares[kind];
        step = {static_cast<Kind>(kind), static_cast<int>(random() % machineCount), static_cast<quint32>(random())};
    }
    return steps;
}

QString runModel(quint32 seed, const std::vector<ModelStep> &steps)
{
    return Model(seed).run(steps);
}

} // namespace orvelle::test
