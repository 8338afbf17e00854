#pragma once

#include "ui/notes/NoteEditors.h"

#include <QByteArray>

#include <optional>

namespace orvelle {

/// Where the window of each note stood and how large it was, kept in the
/// settings by stable id. Notes that are gone are forgotten, and so are those
/// closed longest ago when there are many.
class NotePlaces
{
public:
    static constexpr qsizetype maxPlaces = 200;

    explicit NotePlaces(const NoteEditorServices &services) : m_services(services) {}

    /// As QWidget::restoreGeometry() takes it; absent for a note never opened.
    std::optional<QByteArray> find(const QString &stableId) const;
    void remember(const QString &stableId, const QByteArray &geometry);

private:
    NoteEditorServices m_services;
};

} // namespace orvelle
