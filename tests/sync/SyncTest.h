#pragma once

#include "links/LinkTree.h"
#include "support/LogCapture.h"
#include "support/Outline.h"
#include "support/SyncMachine.h"
#include "sync/SyncCipher.h"

#include <gtest/gtest.h>

namespace orvelle::test {

/// Machines around one place, and what they and others write there.
class SyncTest : public testing::Test
{
protected:
    using State = SyncStatus::State;

    const QString file = QStringLiteral("orvelle-sync.ovexport");

    /// A document as another maker's program would write it: it says nothing
    /// of its past.
    ExportData documentOf(const LinkList &links)
    {
        ExportData document;
        document.exportDate = clock.now();
        document.links = links;
        document.lastModifiedBy = QStringLiteral("Elsewhere");
        document.lastModifiedByMachineId = QStringLiteral("OTHER");
        return document;
    }
    void otherWrites(const QString &outline)
    {
        place.otherMachineWrites(file, encodeExchange(documentOf(treeFrom(outline))));
    }
    QString inFile()
    {
        const auto document = decodeExchange(place.bytes(file));
        return document ? outlineOf(document->links) : QStringLiteral("(not a document)");
    }
    static QString here(SyncMachine &machine) { return outlineOf(machine.links().links()); }
    static void add(SyncMachine &machine, const QString &name)
    {
        LinkItem item = namedLink(name);
        item.createdAt = item.modifiedAt = machine.now();
        machine.links().addLink(item);
    }
    static void remove(SyncMachine &machine, const QString &name) { machine.links().removeLink(idOf(name)); }
    /// Long enough for uploads and polls.
    void settle() { clock.advance(std::chrono::seconds(90)); }
    static qsizetype count(const LogCapture &log, const QString &line)
    {
        return log.lines().count(QStringLiteral("CloudSync: ") + line);
    }

    FakeClock clock;
    FakeCloudPlace place{clock};
};

} // namespace orvelle::test
