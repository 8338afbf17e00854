#pragma once

#include "base/Notifications.h"
#include "links/LinkCodec.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "services/DebugModeManager.h"
#include "support/FakeClock.h"
#include "support/FakeUserDefaults.h"
#include "support/Fakes.h"
#include "support/Outline.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvelle::test {

/// The world around a store. The store itself is started by a test when its
/// data is in place, and may be started again.
class StoreTest : public ::testing::Test
{
protected:
    LinkStore &start()
    {
        store.reset();
        store = std::make_unique<LinkStore>(LinkStore::Services{defaults, debugMode, notifications, clock, bookmarks,
                                                                volumes, power, snapshots, hooks});
        QObject::connect(store.get(), &LinkStore::linksChanged, [this] { ++changes; });
        QObject::connect(store.get(), &LinkStore::saveFailed, [this](const DefaultsError &) { ++failures; });
        changes = 0;
        return *store;
    }

    void put(const QString &outline, const QString &key = LinkStore::linksBaseKey())
    {
        ASSERT_TRUE(defaults.write(key, encodeLinks(treeFrom(outline))));
    }

    /// Another process makes its tree the stored one.
    void otherProcessPuts(const QString &outline)
    {
        defaults.otherProcessWrites(LinkStore::linksBaseKey(), encodeLinks(treeFrom(outline)));
    }

    QByteArray storedBytes(const QString &key = LinkStore::linksBaseKey()) const
    {
        return defaults.get<QByteArray>(key).value_or(QByteArray("none"));
    }

    QString stored(const QString &key = LinkStore::linksBaseKey()) const
    {
        const auto links = decodeLinks(storedBytes(key));
        return links ? outlineOf(*links) : QStringLiteral("undecodable");
    }

    QString shown() const { return outlineOf(store->links()); }

    QTemporaryDir folder;
    FakeUserDefaults defaults;
    Notifications notifications;
    FakeClock clock;
    FakeFileBookmarks bookmarks;
    FakeVolumes volumes;
    FakePowerEvents power;
    FakeLinkStoreHooks hooks;
    DebugModeManager debugMode{defaults, notifications};
    SnapshotStore snapshots{folder.filePath(QStringLiteral("snapshots")), clock};
    std::unique_ptr<LinkStore> store;
    int changes = 0;
    int failures = 0;
};

} // namespace orvelle::test
