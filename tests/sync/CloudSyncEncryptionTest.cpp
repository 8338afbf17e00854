#include "SyncTest.h"
#include "sync/SyncCipher.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle::test {

namespace {

class CloudSyncEncryptionTest : public SyncTest
{
protected:
    using Answer = std::optional<Result<SyncResult, CloudSyncError>>;

    Answer setPassphrase(SyncMachine &machine, const QString &passphrase)
    {
        Answer answer;
        machine.sync().setPassphrase(passphrase, [&](const auto &result) { answer.emplace(result); });
        clock.advance(1s);
        return answer;
    }
    bool isEncrypted() { return isEncryptedSyncFile(place.bytes(file)); }
    static QByteArray stored(SyncMachine &machine)
    {
        return machine.secrets.secrets.value(
            FakeSecretStore::place(CloudSync::passphraseSecret(), u"orvelle-sync.ovexport"_s));
    }
};

} // namespace

TEST_F(CloudSyncEncryptionTest, aMachineWithoutThePassphraseTouchesNothingUntilItKnowsIt)
{
    SyncMachine a(clock, place, u"A"_s);
    SyncMachine b(clock, place, u"B"_s);
    clock.advance(16s);
    add(a, u"one"_s);
    settle();
    const auto answer = setPassphrase(a, u"secret"_s);
    ASSERT_TRUE(answer && *answer);
    EXPECT_TRUE(isEncrypted());
    EXPECT_TRUE(a.sync().isEncrypted());
    settle();
    EXPECT_EQ(b.sync().status().state, State::NeedsPassphrase);
    add(b, u"two"_s);
    const int writes = place.writeCount();
    clock.advance(600s);
    EXPECT_EQ(place.writeCount(), writes);

    const auto wrong = setPassphrase(b, u"guess"_s);
    ASSERT_TRUE(wrong);
    EXPECT_FALSE(*wrong);
    EXPECT_TRUE(stored(b).isEmpty());
    EXPECT_FALSE(b.sync().isEncrypted());
    const auto right = setPassphrase(b, u"secret"_s);
    ASSERT_TRUE(right && *right);
    EXPECT_EQ(stored(b), "secret");
    clock.advance(600s);
    EXPECT_TRUE(isEncrypted());
    EXPECT_EQ(here(a), u"one two"_s);
    EXPECT_EQ(b.sync().status().state, State::Current);

    a.restart(); // the keyring remembers
    settle();
    add(b, u"three"_s);
    settle();
    EXPECT_EQ(here(a), u"one two three"_s);
}

TEST_F(CloudSyncEncryptionTest, nobodyCanMakeAMachineWriteInPlain)
{
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(16s);
    ASSERT_TRUE(setPassphrase(a, u"secret"_s));
    ASSERT_TRUE(isEncrypted());
    otherWrites(u"planted"_s);
    add(a, u"mine"_s);
    settle();
    EXPECT_TRUE(isEncrypted());
    a.secrets.failure = SecretError{SecretError::Kind::Locked, {}};
    a.restart();
    settle();
    add(a, u"more"_s);
    settle();
    EXPECT_TRUE(isEncrypted());
    EXPECT_EQ(a.sync().status().state, State::NeedsPassphrase);
}

TEST_F(CloudSyncEncryptionTest, thePassphraseIsChangedAndTakenAway)
{
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(16s);
    add(a, u"one"_s);
    settle();
    ASSERT_TRUE(*setPassphrase(a, u"old"_s));
    const auto changed = setPassphrase(a, u"new"_s);
    ASSERT_TRUE(changed && *changed);
    EXPECT_TRUE(SyncCipher("new").decrypt(place.bytes(file)));
    std::optional<bool> done;
    a.sync().removeEncryption([&](const auto &result) { done = result.hasValue(); });
    clock.advance(1s);
    EXPECT_EQ(done, true);
    EXPECT_EQ(inFile(), u"one"_s);
    EXPECT_TRUE(stored(a).isEmpty());
    EXPECT_FALSE(a.sync().isEncrypted());
}

TEST_F(CloudSyncEncryptionTest, withoutAKeyringNothingIsEncrypted)
{
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(16s);
    a.secrets.failure = SecretError{SecretError::Kind::Unavailable, {}};
    const auto answer = setPassphrase(a, u"secret"_s);
    ASSERT_TRUE(answer);
    EXPECT_FALSE(*answer);
    EXPECT_FALSE(a.sync().isEncrypted());
    add(a, u"one"_s);
    settle();
    EXPECT_EQ(inFile(), u"one"_s);
}

} // namespace orvelle::test
