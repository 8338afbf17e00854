#pragma once

#include "widgets/clipboard/ClipboardEntry.h"

#include <QObject>
#include <QUrl>

#include <functional>

namespace orvelle {

class ClipboardCache;
class ClipboardWork;

/// One look at the pasteboard: asks for the types, then for the content of the
/// first that makes an entry, in the history's order. Content that is marked
/// as secret is not asked for. Destroying it gives up. Main thread.
class ClipboardReading : public QObject
{
    Q_OBJECT

public:
    /// The unformatted text of RTF; empty when it cannot be read. Any thread.
    using RichPreview = std::function<QString(const QByteArray &rtf)>;

    struct Services {
        Pasteboard &pasteboard;
        ClipboardWork &work;
        const ClipboardCache &cache;
        const RichPreview &richPreview;
    };
    explicit ClipboardReading(const Services &services);

    /// Pictures beyond this many bytes are not recorded.
    static constexpr qint64 maxImageBytes = 52'428'800;
    /// Other content, which is kept in memory.
    static constexpr qint64 maxOtherBytes = 8 * 1024 * 1024;

    void start();

signals:
    /// Once, at the end.
    void finished(const std::optional<orvelle::ClipboardEntry> &entry);
    /// Instead: what is there was written by the history, from this entry.
    void foundOwn(const QString &id);

private:
    using Bytes = Result<QByteArray, PasteboardError>;
    /// Looks whether a rule applies; goes on to the next one when it does not.
    struct Rule {
        QString (*type)(const QStringList &offered);
        void (ClipboardReading::*take)(const QString &type, const QByteArray &bytes);
        qint64 maxBytes;
    };
    static const QList<Rule> &rules();

    void gotTypes(const QStringList &types);
    void askOwn();
    void askFiles();
    void tryRule(qsizetype number);
    bool skips(const Rule &rule) const;
    void failed(qsizetype number, const PasteboardError &error);
    void takeRtfd(const QString &type, const QByteArray &bytes);
    void takeRtf(const QString &type, const QByteArray &bytes);
    void takeImage(const QString &type, const QByteArray &bytes);
    void takeText(const QString &type, const QByteArray &bytes);
    void takeLink(const QString &type, const QByteArray &bytes);
    void takePdf(const QString &type, const QByteArray &bytes);
    void rest();
    void makeRtf(const QByteArray &bytes, const QString &plain);
    void find(std::function<std::optional<ClipboardEntry>()> job);
    void end(const std::optional<ClipboardEntry> &entry = {});

    Services m_services;
    QStringList m_types;
    qsizetype m_rule = 0;
    QList<QUrl> m_files;
};

} // namespace orvelle
