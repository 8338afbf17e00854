#include "links/LinkStore.h"
#include "links/exchange/ExchangeDocument.h"
#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

QString alreadyTakenLine(SyncSource source)
{
    return u"Fichier de synchro déjà importé (hash identique) — ignoré [%1]"_s.arg(logLabel(source));
}

} // namespace

void CloudSync::Private::sayOnce(bool polled, const QString &line)
{
    if (polled && line == polledLine)
        qCDebug(lcCloudSync).noquote() << line;
    else
        qCInfo(lcCloudSync).noquote() << line;
    if (polled)
        polledLine = line;
}

void CloudSync::Private::saySeldom(const QString &line)
{
    constexpr double seldom = 60;
    const auto said = saidAt.constFind(line);
    const Timestamp now = s.clock.now();
    if (said != saidAt.constEnd() && std::abs(now - *said) < seldom)
        return;
    saidAt.insert(line, now);
    qCInfo(lcCloudSync).noquote() << line;
}

/// The version that was seen last, with all that is here in it.
bool CloudSync::Private::isAsSeen(const CloudFile &file) const
{
    return seen && seen->version == file.version && seen->links.isSharedWith(s.links.links()) &&
           seen->settings == localSettingsModifiedAt();
}

void CloudSync::Private::noteSeen(const SyncDocument &document, const LinkList &links)
{
    const bool own = document.content.document->lastModifiedByMachineId == s.links.machineId();
    seen = {document.version, links, localSettingsModifiedAt(), own};
}

void CloudSync::Private::checkRead(const Result<CloudFile, CloudError> &result, bool polled)
{
    if (!result) {
        if (result.error().kind == CloudError::Kind::Missing) {
            noteMissing();
            forgetBase();
        }
        checkFailed(problemOf(result.error()), polled);
        return;
    }
    if (isAsSeen(*result)) {
        if (!seen->own)
            sayOnce(polled, alreadyTakenLine(SyncSource::BackgroundCheck));
        checkTaken({});
        return;
    }
    if (wouldBeHeldAgain() && !held->isCopy && held->document->version == result->version) {
        checkTaken({.heldBack = true});
        return;
    }
    decode(*result, [this, polled](const ReadResult &read) { checked(read, polled); });
}

/// What was in the file is only here now, or in other machines that wait for
/// it: the upload looks once more and then makes it anew.
void CloudSync::Private::noteMissing()
{
    mustWrite = mustWrite || base();
    deferred = deferred || mustWrite;
    dropOvertaken();
}

void CloudSync::Private::checked(const ReadResult &result, bool polled)
{
    if (!result) {
        checkFailed(result.error(), polled);
        return;
    }
    take(*result, SyncSource::BackgroundCheck, polled, [this, polled](const Taken &taken) {
        if (taken.problem)
            checkFailed(*taken.problem, polled);
        else
            checkTaken(taken);
    });
}

void CloudSync::Private::checkFailed(const SyncProblem &why, bool polled)
{
    sayOnce(polled, u"Check sync échoué: %1"_s.arg(why.detail));
    // What is only not there yet is no reason to trouble anybody.
    if (!why.missing) {
        setProblem(why);
        problem->reading = true;
    }
    checkEnded();
}

void CloudSync::Private::checkTaken(const Taken &taken)
{
    if (!problem || problem->reading) {
        failures = 0;
        retry.reset();
        setProblem(std::nullopt);
    }
    if (!taken.heldBack)
        dropOvertaken();
    followUp(taken);
    if (taken.heldBack)
        checkEnded();
    else
        takeConflictCopies();
}

/// What is here and not in the file gets there without another edit.
void CloudSync::Private::followUp(const Taken &taken)
{
    if (taken.heldBack)
        return;
    const bool wanted = std::exchange(deferred, false);
    if (!taken.differs && !(taken.reordered && (wanted || taken.ownWrite))) {
        mustWrite = false;
        echoes = 0;
        waitingSince.reset();
        return;
    }
    mustWrite = true;
    if (!enabled())
        return;
    // Should two machines ever disagree for good, they do so ever more slowly.
    constexpr int unhurried = 3;
    const int doublings = wanted ? 0 : std::clamp(++echoes - unhurried, 0, 6);
    const Timestamp now = s.clock.now();
    // Checks that come thick and fast must not put it off for ever.
    const bool longWait = waitingSince && now - *waitingSince > 4 * std::chrono::duration<double>(uploadDelay).count();
    schedule(longWait ? std::chrono::milliseconds(0) : uploadDelay * (1 << doublings));
}

void CloudSync::Private::checkEnded()
{
    isCheckingSyncFile = false;
    // An upload that waited for a check that failed tries by itself.
    initialSyncDone();
    if (std::exchange(checkAgain, false))
        check(false);
    announce();
}

} // namespace orvelle
