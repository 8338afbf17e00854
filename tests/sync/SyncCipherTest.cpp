#include "sync/SyncCipher.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using Kind = CipherError::Kind;

// Where the header has what; a file of version 1 keeps this for ever.
constexpr qsizetype versionAt = 23;
constexpr qsizetype passesAt = 24;
constexpr qsizetype memoryAt = 28;
constexpr qsizetype saltAt = 32;
constexpr qsizetype sumAt = 64;
constexpr qsizetype contentAt = 104;

/// Puts the right sum into a header that was changed; anybody can.
void resum(QByteArray &file)
{
    const QByteArray sum = QCryptographicHash::hash(file.first(sumAt), QCryptographicHash::Sha256);
    file.replace(sumAt, 16, sum.first(16));
}

class SyncCipherTest : public testing::Test
{
protected:
    const QByteArray document = "{\"links\":[]}";
    SyncCipher cipher{"correct horse"};
    const QByteArray file = *cipher.encrypt(document);

    std::optional<Kind> failure(const QByteArray &changed)
    {
        const auto opened = cipher.decrypt(changed);
        return opened ? std::nullopt : std::optional(opened.error().kind);
    }
};

TEST_F(SyncCipherTest, OpensWithThePassphraseOnly)
{
    EXPECT_TRUE(isEncryptedSyncFile(file));
    EXPECT_FALSE(isEncryptedSyncFile(document));
    EXPECT_FALSE(file.contains("links"));
    EXPECT_EQ(*cipher.decrypt(file), document);
    const auto again = cipher.encrypt(document);
    EXPECT_NE(again->sliced(contentAt), file.sliced(contentAt)) << "a nonce of its own each time";

    SyncCipher other("correct horses");
    EXPECT_EQ(other.decrypt(file).error().kind, Kind::WrongPassphrase);
    EXPECT_NE(other.encrypt(document)->sliced(saltAt, 16), file.sliced(saltAt, 16))
        << "what could not be opened is no example";

    SyncCipher same("correct horse");
    EXPECT_EQ(*same.decrypt(file), document);
    EXPECT_EQ(same.encrypt(document)->sliced(saltAt, 16), file.sliced(saltAt, 16)) << "so that keys are derived once";
    EXPECT_EQ(*cipher.decrypt(*cipher.encrypt({})), QByteArray()) << "nothing is a document too";
}

TEST_F(SyncCipherTest, AccentsMayBeComposedOrNot)
{
    SyncCipher composed("caf\xc3\xa9");
    SyncCipher apart("cafe\xcc\x81");
    EXPECT_EQ(*apart.decrypt(*composed.encrypt(document)), document);
}

TEST_F(SyncCipherTest, WhatWasAlteredIsRefused)
{
    for (qsizetype at = 0; at < file.size(); ++at) {
        QByteArray changed = file;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_EQ(failure(changed), Kind::Damaged) << "byte " << at;
    }
    for (qsizetype size = 0; size < file.size(); ++size)
        EXPECT_EQ(failure(file.first(size)), Kind::Damaged) << "cut after " << size;
    EXPECT_EQ(failure(file + 'x'), Kind::Damaged);
    QByteArray newer = file;
    newer[versionAt] = 2;
    EXPECT_EQ(failure(newer), Kind::NewerFormat);
    EXPECT_EQ(failure(newer.first(versionAt + 1)), Kind::NewerFormat) << "whatever comes behind its number";
}

TEST_F(SyncCipherTest, WhatAHeaderAsksForIsBounded)
{
    const struct {
        quint32 passes;
        quint32 memoryKiB;
    } cases[] = {{0, 65536}, {17, 65536}, {0xffffffff, 65536}, {3, 8191}, {3, 524289}, {3, 0xffffffff}};
    for (const auto &one : cases) {
        QByteArray changed = file;
        qToLittleEndian(one.passes, changed.data() + passesAt);
        qToLittleEndian(one.memoryKiB, changed.data() + memoryAt);
        resum(changed);
        EXPECT_EQ(failure(changed), Kind::Damaged) << one.passes << " passes, " << one.memoryKiB << " KiB";
    }
    QByteArray salted = file;
    salted[saltAt] = static_cast<char>(salted[saltAt] ^ 1);
    resum(salted);
    EXPECT_EQ(failure(salted), Kind::WrongPassphrase);
}

} // namespace
} // namespace orvelle::test
