#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

/// What sync clients put beside the file holds somebody's changes: each copy
/// is merged like a document of another machine and then put away.
void CloudSync::Private::takeConflictCopies()
{
    container->readConflictCopies(fileName(), guarded([this](const Result<QList<ConflictCopy>, CloudError> &result) {
                                      if (!result)
                                          qCWarning(lcCloudSync).noquote()
                                              << "Conflict copies cannot be read:" << problemOf(result.error()).detail;
                                      takeNextCopy(result ? *result : QList<ConflictCopy>());
                                  }));
}

void CloudSync::Private::takeNextCopy(QList<ConflictCopy> copies)
{
    copies.removeIf([this](const ConflictCopy &copy) {
        const auto left = leftCopies.constFind(copy.name);
        return left != leftCopies.constEnd() && *left == qHash(copy.bytes);
    });
    if (copies.isEmpty()) {
        checkEnded();
        return;
    }
    const ConflictCopy copy = copies.takeFirst();
    decode({copy.bytes, {}, {}}, [this, copy, copies](const ReadResult &read) {
        if (!read) {
            qCWarning(lcCloudSync).noquote() << "A conflict copy cannot be merged and stays:" << read.error().detail;
            leftCopies.insert(copy.name, qHash(copy.bytes));
            takeNextCopy(copies);
            return;
        }
        take(*read, SyncSource::ConflictCopy, false, [this, copy, copies](const Taken &taken) {
            if (taken.heldBack || taken.problem) {
                checkEnded();
                return;
            }
            copyTaken(copy, copies);
        });
    });
}

void CloudSync::Private::copyTaken(const ConflictCopy &copy, const QList<ConflictCopy> &rest)
{
    // Whether the file itself has it all is not known any more.
    seen.reset();
    mustWrite = true;
    if (enabled())
        schedule(uploadDelay);
    container->archiveConflictCopy(copy.name,
                                   guarded([this, copy, rest](const Result<CloudContainer::Nothing, CloudError> &done) {
                                       if (!done) {
                                           qCWarning(lcCloudSync).noquote() << "A conflict copy cannot be put away:"
                                                                            << problemOf(done.error()).detail;
                                           leftCopies.insert(copy.name, qHash(copy.bytes));
                                       }
                                       takeNextCopy(rest);
                                   }));
}

} // namespace orvelle
