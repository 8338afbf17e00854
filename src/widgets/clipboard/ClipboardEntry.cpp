#include "widgets/clipboard/ClipboardEntry.h"

#include "widgets/clipboard/ClipboardTypes.h"

#include <QFile>

namespace orvelle {

using namespace Qt::StringLiterals;

void ClipboardPayload::cleanup() const
{
    if (kind == Kind::Image)
        QFile::remove(path);
}

namespace {

QList<PasteboardItem> richForms(const ClipboardPayload &payload)
{
    QList<PasteboardItem> forms{{payload.type, payload.data}};
    if (payload.type == ClipboardTypes::rtf())
        forms += {u"application/rtf"_s, payload.data};
    if (!payload.text.isEmpty())
        forms += {Pasteboard::textType(), payload.text.toUtf8()};
    return forms;
}

QList<PasteboardItem> fileForms(const ClipboardPayload &payload)
{
    // File managers want to know that the files are not to be moved.
    const QByteArray copied = "copy\n" + QByteArray(payload.data).replace("\r\n", "\n").trimmed();
    return {{ClipboardTypes::uriList(), payload.data},
            {ClipboardTypes::copiedFiles(), copied},
            {Pasteboard::textType(), payload.text.toUtf8()}};
}

} // namespace

QList<PasteboardItem> pasteboardForms(const ClipboardPayload &payload, const QList<PasteboardItem> &picture)
{
    switch (payload.kind) {
    case ClipboardPayload::Kind::Plain:
        return {{Pasteboard::textType(), payload.text.toUtf8()}};
    case ClipboardPayload::Kind::Rich:
        return richForms(payload);
    case ClipboardPayload::Kind::Image:
        return picture;
    case ClipboardPayload::Kind::Files:
        return fileForms(payload);
    case ClipboardPayload::Kind::NonPasteable:
        break;
    }
    return {};
}

} // namespace orvelle
