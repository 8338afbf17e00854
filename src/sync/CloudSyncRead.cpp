#include "links/LinkStore.h"
#include "sync/CloudSyncPrivate.h"

namespace orvelle {

void CloudSync::Private::decode(const CloudFile &file, const Then<ReadResult> &then)
{
    if (!isEncryptedSyncFile(file.bytes) || cipher) {
        decodeWithCipher(file, then);
        return;
    }
    withCipher([this, file, then](const Asked &why) {
        if (why)
            then(ReadResult(*why));
        else
            decodeWithCipher(file, then);
    });
}

void CloudSync::Private::decodeWithCipher(const CloudFile &file, const Then<ReadResult> &then)
{
    using Read = Result<DocumentPtr, SyncDocumentError>;
    struct Opened {
        Read read;
        bool byNext = false;
    };
    const auto refused = [](const Read &read) {
        return !read && read.error().kind == SyncDocumentError::Kind::WrongPassphrase;
    };
    const auto work = [file, refused, cipher = cipher, other = next ? next->cipher : nullptr, &bookmarks = s.bookmarks,
                       home = s.links.homeDirectory()] {
        Read read = readSyncDocument(file, cipher.get(), bookmarks, home);
        if (!refused(read) || !other)
            return Opened{read, false};
        return Opened{readSyncDocument(file, other.get(), bookmarks, home), true};
    };
    onWorker<Opened>(work, [this, file, then, refused](const Opened &opened) {
        const auto tell = [opened, then] {
            then(opened.read ? ReadResult(*opened.read) : ReadResult(problemOf(opened.read.error())));
        };
        // A change of the passphrase may have been cut off after it was written.
        if (refused(opened.read) && !nextLookedUp) {
            withNextCipher([this, file, then, tell](const Asked &why) {
                if (next)
                    decodeWithCipher(file, then);
                else if (why && why->retryAfter)
                    then(ReadResult(*why));
                else
                    tell();
            });
        } else if (opened.read && opened.byNext && !(upload && upload->cipher)) {
            promoteNext(tell);
        } else {
            tell();
        }
    });
}

void CloudSync::Private::readForUser(const Then<ReadResult> &then)
{
    // What was not there a while ago may be there now.
    if (!container) {
        s.clock.after(std::chrono::milliseconds(0), q,
                      guarded([then] { then(ReadResult(problemOf(CloudError{CloudError::Kind::Unavailable}))); }));
        return;
    }
    const auto read = [this, then](bool) {
        container->read(fileName(), guarded([this, then](const Result<CloudFile, CloudError> &result) {
                            if (result)
                                decode(*result, then);
                            else
                                then(ReadResult(problemOf(result.error())));
                        }));
    };
    const DownloadStatus status = container->downloadStatus(fileName());
    if (status == DownloadStatus::Placeholder || status == DownloadStatus::Outdated)
        waitForDownload(downloadTimeout, read);
    else
        read(true); // what is not visible may be there all the same
}

} // namespace orvelle
