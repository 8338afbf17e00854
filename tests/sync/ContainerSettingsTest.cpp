#include "sync/ContainerSettings.h"

#include "support/Fakes.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {

TEST(PresentSyncPlaceTest, looksForAFolderOnlyWhereSomebodyAnswers)
{
    const QTemporaryDir folder;
    FakeVolumes volumes;
    volumes.distant = {u"/net/nas"_s};
    struct Case {
        QString path;
        std::optional<SyncPlaceRefusal> refusal;
    };
    for (const Case &c : {Case{folder.path(), {}}, Case{folder.filePath(u"gone"_s), SyncPlaceRefusal::NotAFolder},
                          Case{u"/net/nas/gone"_s, {}}, Case{u"gone"_s, SyncPlaceRefusal::NoFolder}}) {
        const auto checked = presentSyncPlace({SyncPlace::Kind::Folder, c.path}, volumes);
        EXPECT_EQ(checked ? std::nullopt : std::optional(checked.error()), c.refusal) << c.path.toStdString();
    }
}

} // namespace orvelle::test
