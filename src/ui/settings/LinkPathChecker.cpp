#include "ui/settings/LinkPathChecker.h"

#include "links/LinkItem.h"

#include <QFileInfo>
#include <QPointer>
#include <QThreadPool>

namespace orvelle {

namespace {

constexpr int threads = 2;

} // namespace

void LinkPathChecker::LeavePool::operator()(QThreadPool *pool) const
{
    pool->clear();
    if (pool->waitForDone(0))
        delete pool;
}

LinkPathChecker::LinkPathChecker(QObject *parent) : QObject(parent), m_pool(new QThreadPool)
{
    m_pool->setMaxThreadCount(threads);
}

LinkPathChecker::~LinkPathChecker() = default;

bool LinkPathChecker::isBroken(const LinkItem &item) const
{
    if (item.type != LinkType::File && item.type != LinkType::Folder)
        return false;
    const auto known = m_known.constFind(item.path);
    if (known != m_known.cend())
        return *known;
    ask(item.path);
    return false;
}

void LinkPathChecker::recheck()
{
    for (auto known = m_known.cbegin(); known != m_known.cend(); ++known)
        ask(known.key());
}

void LinkPathChecker::ask(const QString &path) const
{
    if (m_asked.contains(path))
        return;
    m_asked.insert(path);
    // The answer may come when this is gone, so it travels by way of the
    // application, which lives on.
    const QPointer<LinkPathChecker> self(const_cast<LinkPathChecker *>(this));
    m_pool->start([path, self] {
        const bool broken = !QFileInfo::exists(path);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [path, self, broken] {
                if (self)
                    self->take(path, broken);
            },
            Qt::QueuedConnection);
    });
}

void LinkPathChecker::take(const QString &path, bool broken)
{
    m_asked.remove(path);
    const bool before = m_known.value(path, false);
    m_known.insert(path, broken);
    if (before != broken)
        emit changed();
}

} // namespace orvelle
