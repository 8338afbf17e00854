#include "ui/settings/LinkPathChecker.h"

#include "links/LinkItem.h"
#include "links/LinkStore.h"
#include "platform/Volumes.h"

#include <QFileInfo>

namespace orvelle {

LinkPathChecker::LinkPathChecker(const LinkStore &links, QObject *parent) : QObject(parent), m_links(links)
{
    m_disk.setMaxThreadCount(1);
}

LinkPathChecker::~LinkPathChecker()
{
    m_disk.clear();
    m_disk.waitForDone();
}

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
    auto *self = const_cast<LinkPathChecker *>(this);
    if (!m_links.volumes().distantVolumeHolding(path).isEmpty()) {
        m_links.look(path, self, [path, self](FileBookmarks &) {
            return [path, self, broken = !QFileInfo::exists(path)] { self->take(path, broken); };
        });
        return;
    }
    m_disk.start([path, self] {
        const bool broken = !QFileInfo::exists(path);
        QMetaObject::invokeMethod(
            self, [path, self, broken] { self->take(path, broken); }, Qt::QueuedConnection);
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
