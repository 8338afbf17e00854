#include "sync/SyncBase.h"

#include "base/Hash.h"
#include "links/exchange/ExchangeDocument.h"

#include <QDataStream>
#include <QIODevice>

namespace orvelle {

namespace {

constexpr qsizetype idLength = 16;
constexpr quint32 storedForm = 2;
constexpr quint32 formWithoutLost = 1;

/// A list as the stream writes it, without room being made for as many as it
/// says it has.
QStringList readTexts(QDataStream &stream)
{
    QStringList texts;
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        QString text;
        stream >> text;
        texts += text;
    }
    return texts;
}

} // namespace

QString syncVersionId(const QByteArray &document)
{
    return sha256Hex(document).left(idLength);
}

QByteArray SyncBase::toBytes() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    QStringList sorted(items.begin(), items.end());
    sorted.sort(); // equal values, equal bytes
    stream << storedForm << place << version << history << since.seconds << sorted << lost;
    return qCompress(bytes, 1);
}

std::optional<SyncBase> SyncBase::fromBytes(const QByteArray &bytes)
{
    const QByteArray plain = qUncompress(bytes);
    QDataStream stream(plain);
    stream.setVersion(QDataStream::Qt_6_4);
    quint32 form = 0;
    SyncBase base;
    stream >> form;
    if (form != storedForm && form != formWithoutLost)
        return std::nullopt;
    stream >> base.place >> base.version;
    base.history = readTexts(stream);
    stream >> base.since.seconds;
    const QStringList sorted = readTexts(stream);
    if (form == storedForm)
        stream >> base.lost;
    if (stream.status() != QDataStream::Ok)
        return std::nullopt;
    base.items = QSet<QString>(sorted.begin(), sorted.end());
    return base;
}

std::optional<QStringList> documentHistory(const ExportData &document)
{
    if (!document.syncHistory)
        return std::nullopt;
    QStringList versions;
    const qsizetype count = std::min(document.syncHistory->size() / idLength, SyncBase::maxHistory);
    for (qsizetype i = 0; i < count; ++i)
        versions += document.syncHistory->mid(i * idLength, idLength);
    return versions;
}

QStringList joinedHistory(const QStringList &first, const QStringList &second)
{
    QStringList joined = first + second;
    joined.removeDuplicates();
    joined.resize(std::min(joined.size(), SyncBase::maxHistory));
    return joined;
}

} // namespace orvelle
