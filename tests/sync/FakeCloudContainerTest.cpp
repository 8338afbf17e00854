#include "support/FakeCloudContainer.h"

#include "support/CloudContainerContract.h"

namespace orvelle::test {

namespace {

/// The fake keeps to what every container promises, so that what is tested on
/// it holds on the others.
class FakeServer
{
public:
    CloudContainer &container() { return m_container; }
    void otherMachineWrites(const QString &name, const QByteArray &bytes) { m_place.otherMachineWrites(name, bytes); }
    void otherMachineRemoves(const QString &name) { m_place.otherMachineRemoves(name); }
    std::unique_ptr<CloudContainer> anotherMachine() { return std::make_unique<FakeCloudContainer>(m_place); }
    void goesAway() { m_container.becomesAvailable(false); }
    void comesBack() { m_container.becomesAvailable(true); }
    bool wait(const std::function<bool()> &condition)
    {
        for (int i = 0; i < 100 && !condition(); ++i)
            m_clock.advance(std::chrono::milliseconds(10));
        return condition();
    }

private:
    FakeClock m_clock;
    FakeCloudPlace m_place{m_clock};
    FakeCloudContainer m_container{m_place};
};

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(FakeServer, CloudContainerContract, FakeServer);

} // namespace orvelle::test
