#pragma once

#include "links/LinkItem.h"

#include <QObject>

#include <chrono>

namespace orvelle {

class Clock;
class LinkStore;
class Workspace;

/// Opens the things behind links. Main thread.
class LinkOpener : public QObject
{
    Q_OBJECT

public:
    /// How long access to a file is kept for its handler to start.
    static constexpr std::chrono::milliseconds accessKept{1000};

    LinkOpener(LinkStore &links, Workspace &workspace, Clock &clock, QObject *parent = nullptr);

    /// Hands a file to its application, a folder to the file manager, an
    /// address to the handler of its scheme. False when it leads nowhere, and
    /// for notes and groups, which are not opened this way.
    bool open(const LinkItem &item);

private:
    bool openAt(const QString &path, bool (Workspace::*handOver)(const QString &));

    LinkStore &m_links;
    Workspace &m_workspace;
    Clock &m_clock;
};

} // namespace orvelle
