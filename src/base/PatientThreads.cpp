#include "base/PatientThreads.h"

namespace orvelle {

PatientThreads::PatientThreads(int most, std::chrono::milliseconds patience)
    : m_pool(std::make_unique<QThreadPool>()), m_patience(patience)
{
    m_pool->setMaxThreadCount(most);
    m_pool->setStackSize(stackSize);
}

PatientThreads::~PatientThreads()
{
    // The pool itself would wait without end.
    if (!m_pool->waitForDone(static_cast<int>(m_patience.count())))
        static_cast<void>(m_pool.release());
}

void PatientThreads::run(std::function<void()> work)
{
    m_pool->start(std::move(work));
}

} // namespace orvelle
