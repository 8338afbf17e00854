#pragma once

#include "platform/CloudContainer.h"
#include "support/SpinUntil.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

/// What every container must do, whatever it stands on. A test program makes
/// the suite its own with one line in a file:
///
///     INSTANTIATE_TYPED_TEST_SUITE_P(Folder, CloudContainerContract, FolderSubject);
///
/// A subject is a default-constructible class for one empty place, with
///
///     CloudContainer &container();              // this machine
///     void otherMachineWrites(name, bytes);     // whatever is there
///     void otherMachineRemoves(name);
///
/// and, where it can,
///
///     std::unique_ptr<CloudContainer> anotherMachine(); // at the same place
///     void goesAway(); void comesBack();                // the whole place
///     bool wait(const std::function<bool()> &);         // moves a clock of its own, say
namespace orvelle::test {

template<typename Subject>
class CloudContainerContract : public testing::Test
{
protected:
    using FileResult = Result<CloudFile, CloudError>;

    bool wait(const std::function<bool()> &condition)
    {
        if constexpr (requires { subject.wait(condition); })
            return subject.wait(condition);
        else
            return spinUntil(condition);
    }

    template<typename T>
    Result<T, CloudError> answer(const std::function<void(CloudContainer::Done<T>)> &ask)
    {
        auto got = std::make_shared<std::optional<Result<T, CloudError>>>();
        ask([got](const Result<T, CloudError> &result) {
            EXPECT_FALSE(*got) << "answered twice";
            got->emplace(result);
        });
        EXPECT_FALSE(*got) << "answered from inside the call";
        EXPECT_TRUE(wait([&] { return got->has_value(); })) << "no answer";
        return *got ? **got
                    : Result<T, CloudError>(CloudError{CloudError::Kind::TimedOut, QStringLiteral("no answer"), {}});
    }
    FileResult readFrom(CloudContainer &from)
    {
        return answer<CloudFile>([&](auto done) { from.read(name, done); });
    }
    FileResult writeTo(CloudContainer &to, const QByteArray &bytes, const QByteArray &expected)
    {
        return answer<CloudFile>([&](auto done) { to.write(name, bytes, expected, done); });
    }
    FileResult read() { return readFrom(here()); }
    FileResult write(const QByteArray &bytes, const QByteArray &expected) { return writeTo(here(), bytes, expected); }

    CloudContainer &here() { return subject.container(); }
    QByteArray content()
    {
        const auto file = read();
        return file ? file->bytes : "(error " + QByteArray::number(int(file.error().kind)) + ")";
    }

    const QString name = QStringLiteral("shared.ovexport");
    Subject subject;
};

TYPED_TEST_SUITE_P(CloudContainerContract);

TYPED_TEST_P(CloudContainerContract, aFileThatIsNotThereIsMissing)
{
    using Kind = CloudError::Kind;
    EXPECT_TRUE(this->wait([&] { return this->here().isAvailable(); }));
    const auto file = this->read();
    ASSERT_FALSE(file);
    EXPECT_EQ(file.error().kind, Kind::Missing);
    EXPECT_EQ(this->here().downloadStatus(this->name), DownloadStatus::NotVisible);
    EXPECT_FALSE(this->here().modificationDate(this->name));
    EXPECT_FALSE(this->here().displayPath(this->name).isEmpty());

    const auto written = this->write("new", "some version");
    ASSERT_FALSE(written) << "there was nothing of that version to replace";
    EXPECT_EQ(written.error().kind, Kind::Conflict);
    EXPECT_EQ(this->read().error().kind, Kind::Missing);
}

TYPED_TEST_P(CloudContainerContract, whatIsWrittenIsReadAndReplacedByItsVersion)
{
    using Kind = CloudError::Kind;
    QByteArray version;
    for (const QByteArray &bytes : {QByteArray("one"), QByteArray(3 << 20, 't'), QByteArray("\0\r\n\xff", 4)}) {
        const auto written = this->write(bytes, version);
        ASSERT_TRUE(written) << written.error().detail.toStdString();
        EXPECT_NE(written->version, version);
        const auto file = this->read();
        ASSERT_TRUE(file) << file.error().detail.toStdString();
        EXPECT_EQ(file->bytes, bytes);
        EXPECT_EQ(file->version, written->version);
        ASSERT_FALSE(file->version.isEmpty());
        EXPECT_EQ(this->here().downloadStatus(this->name), DownloadStatus::Current);
        EXPECT_TRUE(this->here().modificationDate(this->name));

        for (const QByteArray &other : {QByteArray(), QByteArray("x") + file->version, version}) {
            const auto refused = this->write("not this", other);
            ASSERT_FALSE(refused);
            EXPECT_EQ(refused.error().kind, Kind::Conflict);
        }
        EXPECT_EQ(this->content(), bytes) << "a refused write changes nothing";
        version = file->version;
    }
}

TYPED_TEST_P(CloudContainerContract, aWriteOverAnotherMachinesChangeIsRefused)
{
    using Kind = CloudError::Kind;
    this->subject.otherMachineWrites(this->name, "theirs");
    const auto created = this->write("ours", {});
    ASSERT_FALSE(created);
    EXPECT_EQ(created.error().kind, Kind::Conflict);
    const auto theirs = this->read();
    ASSERT_TRUE(theirs) << theirs.error().detail.toStdString();
    EXPECT_EQ(theirs->bytes, "theirs");

    this->subject.otherMachineWrites(this->name, "theirs again");
    const auto replaced = this->write("ours", theirs->version);
    ASSERT_FALSE(replaced);
    EXPECT_EQ(replaced.error().kind, Kind::Conflict);
    EXPECT_EQ(this->content(), "theirs again");

    const auto last = this->read();
    ASSERT_TRUE(last);
    this->subject.otherMachineRemoves(this->name);
    const auto removed = this->write("ours", last->version);
    ASSERT_FALSE(removed);
    EXPECT_EQ(removed.error().kind, Kind::Conflict);
    EXPECT_TRUE(this->write("ours", {})) << "created anew";
    EXPECT_EQ(this->content(), "ours");
}

TYPED_TEST_P(CloudContainerContract, callsAreDoneInTheirOrder)
{
    QList<QByteArray> seen;
    const auto reads = [&](const Result<CloudFile, CloudError> &file) {
        seen += file ? file->bytes : QByteArray("missing");
    };
    this->here().read(this->name, reads);
    this->here().write(this->name, QByteArray(1 << 20, 'a'), {}, [&](const auto &file) {
        seen += file ? QByteArray("written") : QByteArray("not written");
        if (file)
            this->here().write(this->name, "c", file->version, [&](const auto &next) { seen += next ? "c" : "no c"; });
    });
    this->here().write(this->name, "b", {}, [&](const auto &file) { seen += file ? "b" : "no b"; });
    this->here().read(this->name, reads);
    EXPECT_TRUE(seen.isEmpty());
    EXPECT_TRUE(this->wait([&] { return seen.size() == 5; }));
    EXPECT_EQ(seen, (QList<QByteArray>{"missing", "written", "no b", QByteArray(1 << 20, 'a'), "c"}));
}

TYPED_TEST_P(CloudContainerContract, theWatchTellsOfAnotherMachinesChanges)
{
    for (const bool there : {false, true}) {
        int gathered = -1;
        int changes = 0;
        QObject context;
        QObject::connect(&this->here(), &CloudContainer::gathered, &context, [&](int count) {
            EXPECT_EQ(gathered, -1) << "once for each watch";
            gathered = count;
        });
        this->here().startWatching(this->name);
        EXPECT_EQ(gathered, -1) << "from inside the call";
        ASSERT_TRUE(this->wait([&] { return gathered >= 0; }));
        EXPECT_EQ(gathered, there ? 1 : 0);

        QObject::connect(&this->here(), &CloudContainer::changed, &context, [&] { ++changes; });
        this->subject.otherMachineWrites(this->name, there ? "second" : "first");
        this->here().startDownload(this->name);
        EXPECT_TRUE(this->wait(
            [&] { return changes > 0 && this->here().downloadStatus(this->name) == DownloadStatus::Current; }));
        EXPECT_EQ(this->content(), there ? "second" : "first");
        EXPECT_TRUE(this->here().modificationDate(this->name));
        this->here().stopWatching();
    }
}

TYPED_TEST_P(CloudContainerContract, whatIsTooLargeIsNotWritten)
{
    const auto written = this->write(QByteArray(CloudContainer::maxFileBytes + 1, 'x'), {});
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().kind, CloudError::Kind::TooLarge);
    EXPECT_EQ(this->read().error().kind, CloudError::Kind::Missing);
}

TYPED_TEST_P(CloudContainerContract, anEvictedFileIsReadAnew)
{
    this->subject.otherMachineWrites(this->name, "one");
    ASSERT_EQ(this->content(), "one");
    this->subject.otherMachineWrites(this->name, "two");
    if (this->here().evict(this->name)) {
        this->here().startDownload(this->name);
        EXPECT_TRUE(this->wait([&] { return this->here().downloadStatus(this->name) == DownloadStatus::Current; }));
    }
    EXPECT_EQ(this->content(), "two");
}

TYPED_TEST_P(CloudContainerContract, theTestFindsNoFaultAndLeavesNothing)
{
    this->subject.otherMachineWrites(this->name, "one");
    const auto tested = this->template answer<QString>([&](auto done) { this->here().test(done); });
    ASSERT_TRUE(tested) << tested.error().detail.toStdString();
    EXPECT_FALSE(tested->isEmpty());
    EXPECT_EQ(this->content(), "one");
    const auto copies = this->template answer<QList<ConflictCopy>>(
        [&](auto done) { this->here().readConflictCopies(this->name, done); });
    ASSERT_TRUE(copies);
    EXPECT_TRUE(copies->isEmpty());
}

TYPED_TEST_P(CloudContainerContract, aPlaceThatGoesAwayIsUnavailableUntilItReturns)
{
    if constexpr (requires {
                      this->subject.goesAway();
                      this->subject.comesBack();
                  }) {
        using Kind = CloudError::Kind;
        this->subject.otherMachineWrites(this->name, "kept");
        const auto before = this->read();
        ASSERT_TRUE(before);
        this->here().startWatching(this->name);
        int told = 0;
        QObject context;
        QObject::connect(&this->here(), &CloudContainer::availabilityChanged, &context, [&] { ++told; });
        this->subject.goesAway();
        EXPECT_EQ(this->read().error().kind, Kind::Unavailable);
        EXPECT_EQ(this->write("lost", before->version).error().kind, Kind::Unavailable);
        EXPECT_TRUE(this->wait([&] { return told == 1 && !this->here().isAvailable(); }));
        this->subject.comesBack();
        EXPECT_TRUE(this->wait([&] {
            // A place that is asked tells when it answers again.
            this->here().startDownload(this->name);
            return told == 2 && this->here().isAvailable();
        }));
        EXPECT_EQ(this->content(), "kept");
        EXPECT_TRUE(this->write("next", this->read()->version));
    } else {
        GTEST_SKIP() << "this place does not go away";
    }
}

TYPED_TEST_P(CloudContainerContract, machinesThatReadMergeAndWriteLoseNothing)
{
    if constexpr (requires { this->subject.anotherMachine(); }) {
        const auto other = this->subject.anotherMachine();
        constexpr int rounds = 25;
        int refusals = 0;
        int done = 0;
        // Each reads the list, adds its letter, and begins again when it came too late.
        struct Machine {
            CloudContainer *container;
            char letter;
            int left;
            std::function<void()> step;
        } machines[] = {{&this->here(), 'a', rounds, {}}, {other.get(), 'b', rounds, {}}};
        for (Machine &machine : machines) {
            machine.step = [&, m = &machine] {
                m->container->read(this->name, [&, m](const auto &file) {
                    const QByteArray old = file ? file->bytes : QByteArray();
                    m->container->write(this->name, old + m->letter, file ? file->version : QByteArray(),
                                        [&, m](const auto &written) {
                                            refusals += !written;
                                            m->left -= written.hasValue();
                                            if (m->left > 0)
                                                m->step();
                                            else
                                                ++done;
                                        });
                });
            };
            machine.step();
        }
        ASSERT_TRUE(this->wait([&] { return done == 2; }));
        const QByteArray all = this->content();
        EXPECT_EQ(all.count('a'), rounds);
        EXPECT_EQ(all.count('b'), rounds);
        this->RecordProperty("refusals", refusals);
    } else {
        GTEST_SKIP() << "only one machine comes here";
    }
}

TYPED_TEST_P(CloudContainerContract, aContainerThatIsGoneAnswersNobody)
{
    if constexpr (requires { this->subject.anotherMachine(); }) {
        this->subject.otherMachineWrites(this->name, QByteArray(1 << 20, 'x'));
        int answers = 0;
        for (int i = 0; i < 3; ++i) {
            auto gone = this->subject.anotherMachine();
            gone->startWatching(this->name);
            gone->read(this->name, [&](const auto &) { ++answers; });
            gone->write(this->name, "y", "z", [&](const auto &) { ++answers; });
            gone->test([&](const auto &) { ++answers; });
            if (i == 1)
                QCoreApplication::processEvents();
            gone.reset();
            QCoreApplication::processEvents();
        }
        // What another container answers comes after whatever was under way.
        EXPECT_EQ(this->content(), QByteArray(1 << 20, 'x'));
        EXPECT_EQ(answers, 0);
    } else {
        GTEST_SKIP() << "only one machine comes here";
    }
}

REGISTER_TYPED_TEST_SUITE_P(CloudContainerContract, aFileThatIsNotThereIsMissing,
                            whatIsWrittenIsReadAndReplacedByItsVersion, aWriteOverAnotherMachinesChangeIsRefused,
                            callsAreDoneInTheirOrder, theWatchTellsOfAnotherMachinesChanges, whatIsTooLargeIsNotWritten,
                            anEvictedFileIsReadAnew, theTestFindsNoFaultAndLeavesNothing,
                            aPlaceThatGoesAwayIsUnavailableUntilItReturns, machinesThatReadMergeAndWriteLoseNothing,
                            aContainerThatIsGoneAnswersNobody);

} // namespace orvelle::test
