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

// Each look-up is a prompt.
TEST_F(CloudSyncEncryptionTest, aKeyringThatStaysLockedIsAskedOnceAnHourAndByHand)
{
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(16s);
    add(a, u"one"_s);
    settle();
    ASSERT_TRUE(*setPassphrase(a, u"secret"_s));
    a.secrets.failure = SecretError{SecretError::Kind::Locked, {}};
    a.restart();
    clock.advance(1s);
    const int asked = a.secrets.lookups;
    for (int i = 0; i < 50; ++i) {
        clock.advance(60s);
        a.sync().checkSyncIfNeeded();
    }
    EXPECT_EQ(a.secrets.lookups, asked);
    EXPECT_EQ(a.sync().status().state, State::NeedsPassphrase);
    clock.advance(660s);
    EXPECT_EQ(a.secrets.lookups, asked + 1);
    a.sync().saveToCloud([](const auto &) {});
    clock.advance(1s);
    EXPECT_EQ(a.secrets.lookups, asked + 2);
    a.secrets.failure.reset();
    ASSERT_TRUE(*setPassphrase(a, u"secret"_s));
    EXPECT_EQ(a.sync().status().state, State::Current);

    // There is no other passphrase to be found either.
    place.otherMachineWrites(file, *SyncCipher("other").encrypt("{}"));
    a.secrets.failure = SecretError{SecretError::Kind::Locked, {}};
    a.sync().handleSystemDidWake();
    clock.advance(1s);
    const int askedAgain = a.secrets.lookups;
    clock.advance(600s);
    EXPECT_EQ(a.secrets.lookups, askedAgain);
}

TEST_F(CloudSyncEncryptionTest, whatIsSealedIsNotSentInPlainBecauseTheSettingsDoNotKnow)
{
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(16s);
    add(a, u"one"_s);
    settle();
    // Where it cannot be stored that the file is to be sealed, nothing is said to be.
    a.defaults.failWrites(DefaultsError{DefaultsError::Kind::DiskFull, {}});
    const auto unstored = setPassphrase(a, u"secret"_s);
    a.defaults.failWrites(std::nullopt);
    ASSERT_TRUE(unstored);
    EXPECT_FALSE(*unstored);
    EXPECT_FALSE(isEncrypted());

    ASSERT_TRUE(*setPassphrase(a, u"secret"_s));
    a.stop();
    ASSERT_TRUE(a.defaults.remove(CloudSync::encryptedBaseKey())); // the settings were lost
    a.start();
    settle();
    add(a, u"two"_s);
    settle();
    EXPECT_TRUE(isEncrypted());
    EXPECT_TRUE(a.sync().isEncrypted());
    EXPECT_EQ(a.sync().status().state, State::Current);
}

TEST_F(CloudSyncEncryptionTest, aSetUpIsToldThePassphraseBeforeAnythingIsMerged)
{
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(16s);
    add(a, u"one"_s);
    settle();
    ASSERT_TRUE(*setPassphrase(a, u"secret"_s));
    SyncMachine b(clock, place, u"B"_s, false);
    add(b, u"mine"_s);
    std::optional<bool> found;
    const auto note = [&found](const auto &result) { found = result && *result; };
    b.sync().readForConfigure(note);
    clock.advance(1s);
    EXPECT_EQ(found, false);
    EXPECT_EQ(b.sync().status().state, State::NeedsPassphrase);
    const int writes = place.writeCount();
    const auto told = setPassphrase(b, u"secret"_s);
    ASSERT_TRUE(told && *told);
    EXPECT_EQ(b.sync().status().state, State::Off);
    b.sync().readForConfigure(note);
    settle();
    EXPECT_EQ(found, true);
    EXPECT_EQ(here(b), u"mine"_s);
    EXPECT_EQ(place.writeCount(), writes) << "what is to become of the two was not decided";
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

TEST_F(CloudSyncEncryptionTest, aChangeOfThePassphraseThatIsCutOffAnywhereLeavesTheFileReadable)
{
    place.latency = 10ms;
    struct Case {
        const char *what;
        std::optional<CloudError> writing;
        bool writtenAllTheSame;
    };
    for (const Case &c : {Case{"the program ends", {}, false},
                          Case{"the file cannot be written", CloudError{CloudError::Kind::NoSpace}, false},
                          Case{"the answer is lost", CloudError{CloudError::Kind::TimedOut}, true}}) {
        bool over = false;
        for (auto cut = 5ms; !over; cut += 10ms) {
            SCOPED_TRACE(std::string(c.what) + " after ms " + std::to_string(cut.count()));
            place.otherMachineRemoves(file);
            SyncMachine a(clock, place, u"A"_s);
            a.secrets.latency = 10ms;
            clock.advance(20s);
            add(a, u"one"_s);
            settle();
            ASSERT_TRUE(*setPassphrase(a, u"old"_s));
            a.container.failWrites(c.writing, c.writtenAllTheSame);
            bool succeeded = false;
            a.sync().setPassphrase(u"new"_s, [&](const auto &result) {
                over = true;
                succeeded = result.hasValue();
            });
            clock.advance(cut);
            EXPECT_EQ(over && succeeded, over && !c.writing) << "nobody is told a lie";
            a.restart();
            a.container.failWrites({});
            settle();
            EXPECT_EQ(a.sync().status().state, State::Current);
            EXPECT_TRUE(SyncCipher(stored(a)).decrypt(place.bytes(file))) << "the next start can read it";
            EXPECT_EQ(here(a), u"one"_s);
            add(a, u"two"_s);
            settle();
            EXPECT_TRUE(SyncCipher(stored(a)).decrypt(place.bytes(file)));
        }
    }
}

TEST_F(CloudSyncEncryptionTest, thePassphraseIsChangedAlsoWhileNothingWasReadYet)
{
    SyncMachine a(clock, place, u"A"_s);
    clock.advance(16s);
    add(a, u"one"_s);
    settle();
    ASSERT_TRUE(*setPassphrase(a, u"old"_s));
    a.sync().setAutoSyncEnabled(false);
    a.restart();
    const auto changed = setPassphrase(a, u"new"_s);
    ASSERT_TRUE(changed);
    EXPECT_TRUE(*changed);
    EXPECT_TRUE(SyncCipher("new").decrypt(place.bytes(file)));
    EXPECT_EQ(a.secrets.secrets.values(), QList<QByteArray>{"new"}) << "the old one is forgotten";
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
