#include "ui/settings/LinkPathChecker.h"

#include "links/LinkItem.h"
#include "links/LinkStore.h"
#include "platform/Volumes.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>

namespace orvelle {

LinkPathChecker::LinkPathChecker(const LinkStore &links, QObject *parent)
    : QObject(parent), m_links(links), m_disk(1, std::chrono::milliseconds(0))
{
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
    const QPointer<LinkPathChecker> self(const_cast<LinkPathChecker *>(this));
    if (!m_links.volumes().distantVolumeHolding(path).isEmpty()) {
        m_links.look(path, self, [path, self](FileBookmarks &) {
            return [path, self, broken = !QFileInfo::exists(path)] { self->take(path, broken); };
        });
        return;
    }
    // The answer may come when this is gone, so it travels by way of the
    // application, which lives on.
    m_disk.run([path, self] {
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
