#include "base/Text.h"
#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

struct KindFacts {
    CloudError::Kind kind;
    TextKey sentence;
    const char *name;
    bool needsUser;
};

constexpr KindFacts kinds[] = {
    {CloudError::Kind::Unavailable, "cloudSync.failure.unavailable"_text, "unavailable", false},
    {CloudError::Kind::Missing, "cloudSync.failure.missing"_text, "missing", false},
    {CloudError::Kind::NoData, "cloudSync.failure.noData"_text,
     "Lecture du fichier de synchro impossible (aucune donnée)", false},
    {CloudError::Kind::Conflict, "cloudSync.failure.conflict"_text, "changed meanwhile", false},
    {CloudError::Kind::Locked, "cloudSync.failure.locked"_text, "locked", false},
    {CloudError::Kind::Unsafe, "cloudSync.failure.unsafe"_text, "not safe to share", true},
    {CloudError::Kind::Authentication, "cloudSync.failure.authentication"_text, "not authorised", true},
    {CloudError::Kind::NoSecretStore, "cloudSync.failure.noSecretStore"_text, "no keyring", true},
    {CloudError::Kind::NoSpace, "cloudSync.failure.noSpace"_text, "no space", true},
    {CloudError::Kind::NotADocument, "cloudSync.failure.notADocument"_text, "not a document", false},
    {CloudError::Kind::Tls, "cloudSync.failure.tls"_text, "no trusted connection", true},
    {CloudError::Kind::TimedOut, "cloudSync.failure.timedOut"_text, "timed out", false},
    {CloudError::Kind::TooLarge, "cloudSync.failure.tooLarge"_text, "too large", true},
    {CloudError::Kind::Io, "cloudSync.failure.io"_text, "failed", false},
};

const KindFacts &factsOf(CloudError::Kind kind)
{
    return *std::find_if(std::begin(kinds), std::end(kinds),
                         [kind](const KindFacts &facts) { return facts.kind == kind; });
}

} // namespace

QString cloudErrorText(const CloudError &error)
{
    return text(factsOf(error.kind).sentence);
}

SyncProblem problemOf(const CloudError &error)
{
    const KindFacts &facts = factsOf(error.kind);
    SyncProblem problem;
    problem.sentence = cloudErrorText(error);
    problem.detail = QString::fromUtf8(facts.name);
    if (!error.detail.isEmpty())
        problem.detail += u": "_s + error.detail;
    problem.retryAfter = error.retryAfter;
    problem.needsUser = facts.needsUser;
    problem.missing = error.kind == CloudError::Kind::Missing;
    return problem;
}

SyncProblem problemOf(const SyncDocumentError &error)
{
    SyncProblem problem;
    problem.sentence = syncDocumentErrorText(error);
    problem.detail = error.detail;
    problem.needsUser = true;
    problem.reading = true;
    problem.needsPassphrase = error.kind == SyncDocumentError::Kind::NeedsPassphrase ||
                              error.kind == SyncDocumentError::Kind::WrongPassphrase;
    return problem;
}

SyncProblem noSnapshotProblem(const QString &detail)
{
    SyncProblem problem;
    problem.sentence = text("cloudSync.failure.noSnapshot"_text);
    problem.detail = u"no snapshot could be kept: "_s + detail;
    problem.needsUser = true;
    return problem;
}

QString logLabel(SyncSource source)
{
    static constexpr const char *labels[] = {"background check", "autosync silencieux", "saveToCloud manuel",
                                             "conflict copy"};
    return QString::fromLatin1(labels[static_cast<int>(source)]);
}

} // namespace orvelle
