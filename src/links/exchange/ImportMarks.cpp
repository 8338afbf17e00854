#include "links/exchange/ImportMarks.h"

#include "base/AddressSchemes.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "services/DebugModeManager.h"

#include <QLoggingCategory>
#include <QMap>
#include <QUrl>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcImportMarks, "ImportMarks", QtInfoMsg)

/// By stable id: the allowed target, empty for none.
using Marks = QMap<QString, QString>;

QString idOf(const LinkItem &item)
{
    return item.stableId.toUpper();
}

/// Stored as pairs of id and target.
Marks decoded(const std::optional<DefaultsValue> &value)
{
    Marks marks;
    const auto *texts = value ? std::get_if<QStringList>(&*value) : nullptr;
    for (qsizetype i = 0; texts && i + 1 < texts->size(); i += 2)
        marks.insert(texts->at(i), texts->at(i + 1));
    return marks;
}

QStringList encoded(const Marks &marks)
{
    QStringList texts;
    texts.reserve(marks.size() * 2);
    for (auto each = marks.begin(); each != marks.end(); ++each)
        texts << each.key() << each.value();
    return texts;
}

/// Changes the stored marks; again when another process was quicker.
template<typename Change>
void change(UserDefaults &defaults, const QString &key, Change apply)
{
    constexpr int maxAttempts = 8;
    for (int attempt = 0; attempt < maxAttempts; ++attempt) {
        const UserDefaults::Versioned stored = defaults.read(key);
        Marks marks = decoded(stored.value);
        if (!apply(marks))
            return;
        const auto written = defaults.compareAndSet(key, stored.revision, encoded(marks));
        if (written)
            return;
        if (written.error().kind != DefaultsError::Kind::Conflict)
            break;
    }
    qCWarning(lcImportMarks, "The marks of imported links could not be stored");
}

} // namespace

bool mayLeadToFile(const LinkItem &item)
{
    switch (item.type) {
    case LinkType::File:
    case LinkType::Folder:
        return true;
    case LinkType::Url:
        return !isRemoteScheme(QUrl(item.path.trimmed(), QUrl::TolerantMode).scheme());
    case LinkType::Group:
    case LinkType::Note:
        return false;
    }
    Q_UNREACHABLE();
}

ImportMarks::ImportMarks(LinkStore &links, UserDefaults &defaults, DebugModeManager &debugMode, QObject *parent)
    : QObject(parent), m_links(links), m_defaults(defaults), m_debugMode(debugMode)
{
    connect(&links, &LinkStore::foreignLinksArrive, this, &ImportMarks::mark);
}

QString ImportMarks::key() const
{
    return m_debugMode.key(baseKey());
}

void ImportMarks::mark(const LinkList &before, const LinkList &after)
{
    QHash<QString, QString> known;
    walk(before, [&known](const LinkItem &item) {
        if (mayLeadToFile(item))
            known.insert(idOf(item), item.path);
    });
    QStringList arrived;
    walk(after, [&](const LinkItem &item) {
        if (!mayLeadToFile(item))
            return;
        const auto found = known.constFind(idOf(item));
        if (found == known.constEnd() || *found != item.path)
            arrived += idOf(item);
    });
    if (arrived.isEmpty())
        return;
    change(m_defaults, key(), [&arrived](Marks &marks) {
        const qsizetype count = marks.size();
        for (const QString &id : std::as_const(arrived)) {
            if (!marks.contains(id))
                marks.insert(id, QString());
        }
        return marks.size() > count;
    });
}

bool ImportMarks::asksFor(const LinkItem &item, const QString &target) const
{
    const Marks marks = decoded(m_defaults.value(key()));
    const auto found = marks.constFind(idOf(item));
    return found != marks.constEnd() && *found != target;
}

void ImportMarks::allow(const LinkItem &item, const QString &target)
{
    change(m_defaults, key(), [id = idOf(item), &target](Marks &marks) {
        const auto found = marks.find(id);
        if (found == marks.end())
            return false;
        *found = target;
        return true;
    });
}

void ImportMarks::dropGone()
{
    if (m_links.isUnreadable()) // it may come back
        return;
    change(m_defaults, key(), [this](Marks &marks) {
        if (marks.isEmpty()) // as with most, whose whole tree need not be gone through
            return false;
        QSet<QString> present;
        walk(m_links.links(), [&present](const LinkItem &item) { present.insert(idOf(item)); });
        return marks.removeIf([&present](const Marks::iterator &each) { return !present.contains(each.key()); }) > 0;
    });
}

} // namespace orvelle
