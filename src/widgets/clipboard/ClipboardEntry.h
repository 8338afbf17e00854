#pragma once

#include "platform/Pasteboard.h"

#include <QImage>
#include <QString>

#include <optional>

namespace orvelle {

/// What an entry of the history can restore.
struct ClipboardPayload {
    enum class Kind {
        Plain, ///< `text`
        Rich,  ///< `data` of `type`, and beside it `text` when there is any
        Image, ///< the picture of `type` in the cached file at `path`
        Files, ///< `data` is a list of addresses (text/uri-list), `text` the paths
        NonPasteable,
    };
    Kind kind = Kind::NonPasteable;
    QString text = {};
    QByteArray data = {};
    QString type = {};
    QString path = {};

    bool isPasteable() const { return kind != Kind::NonPasteable; }
    /// Whether something other than unformatted text would be restored, and
    /// that text is there too.
    bool canPasteAsPlainText() const { return kind == Kind::Rich && !text.isEmpty(); }
    /// Removes the cached file of an image; one that is gone is no error.
    void cleanup() const;
};

/// One thing that was copied.
struct ClipboardEntry {
    QString id; ///< equal for equal content
    QString displayText;
    std::optional<QString> iconName;
    ClipboardPayload payload;
    QImage thumbnail; ///< of images; null when it could not be made

    friend bool operator==(const ClipboardEntry &a, const ClipboardEntry &b) { return a.id == b.id; }
};

/// What to put on the pasteboard for the payload. `picture` holds the bytes of
/// an image's cached file and a PNG form of it where that is another one;
/// without them an image gives nothing.
QList<PasteboardItem> pasteboardForms(const ClipboardPayload &payload, const QList<PasteboardItem> &picture = {});

} // namespace orvelle
