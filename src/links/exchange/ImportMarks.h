#pragma once

#include "links/LinkItem.h"

#include <QObject>

namespace orvelle {

class DebugModeManager;
class LinkStore;
class UserDefaults;

/// Remembers which links the user did not make here: those that an import, a
/// synchronisation or a restored snapshot brought and that may lead to a file.
/// Opening one that leads to a program is asked about until it was allowed.
///
/// Kept beside the tree under a key of its own, so that documents stay as they
/// are, and read anew at each question, so that every process knows the same.
/// Main thread.
class ImportMarks : public QObject
{
    Q_OBJECT

public:
    /// Listens to `links` from here on.
    ImportMarks(LinkStore &links, UserDefaults &defaults, DebugModeManager &debugMode, QObject *parent = nullptr);

    static QString baseKey() { return QStringLiteral("ImportedLinks"); }

    /// Whether the link came from elsewhere and `target`, the path or address
    /// that is opened, is not the one that the user allowed for it.
    bool asksFor(const LinkItem &item, const QString &target) const;
    /// The user wants this link to open `target` without a question.
    void allow(const LinkItem &item, const QString &target);
    /// Forgets links that are gone. Only for the running application, which
    /// does it when no step of undo could bring them back.
    void dropGone();

private:
    void mark(const LinkList &before, const LinkList &after);
    QString key() const;

    LinkStore &m_links;
    UserDefaults &m_defaults;
    DebugModeManager &m_debugMode;
};

/// Whether what is opened for the item could be a file of this machine or of a
/// mounted share.
bool mayLeadToFile(const LinkItem &item);

} // namespace orvelle
