#pragma once

#include "platform/CloudContainer.h"
#include "platform/freedesktop/webdav/WebDavRequests.h"

#include <QHash>
#include <QSet>

namespace orvelle {

/// A folder on a WebDAV server (RFC 4918), with a local copy of each file.
///
///     WebDavContainer container({.folderUrl = QUrl("https://cloud.example.org/dav/Orvelle/"), .user = "ann"},
///                               http, secrets, clock, cacheFolder);
///
/// All that is passed in must outlive the container. `cacheFolder` is a folder
/// for this container's use alone, made when needed, such as "webdav" in the
/// application's cache folder; it may be removed at any time. The password is
/// the secret with the key "webdav" and the account secretAccount(). Another
/// server or user is another container; after another password was stored,
/// call credentialsChanged().
///
/// - Credentials go to the folder's own scheme, host and port only, by the
///   Basic scheme, with the first request. Digest is not offered: it protects
///   nothing that TLS does not, and would need each password's clear text as
///   well.
/// - A file is replaced by a conditional request, by a lock, or by both,
///   whatever the server is found to honour; by neither it is Unsafe.
/// - When the server is to be left alone calls fail at once, with retryAfter
///   (see WebDavRequests).
/// - The protocol has no push. Changes are noticed by read() and
///   startDownload(); one without a change is a request and an answer of a few
///   hundred bytes. Only while the server cannot be reached does a container
///   that watches ask by itself, at the pace of the pauses.
class WebDavContainer : public CloudContainer
{
    Q_OBJECT

public:
    /// `random` gives from 0 to below 1; without it the system's.
    WebDavContainer(const WebDavSettings &settings, HttpClient &http, SecretStore &secrets, Clock &clock,
                    const QString &cacheFolder, WebDavRequests::Random random = {}, QObject *parent = nullptr);
    ~WebDavContainer() override;

    static QString secretAccount(const WebDavSettings &settings) { return webDavSecretAccount(settings); }
    /// A refused password is tried again, or the new one.
    void credentialsChanged();

    bool isAvailable() const override;
    QString displayPath(const QString &name) const override;
    DownloadStatus downloadStatus(const QString &name) const override;
    std::optional<Timestamp> modificationDate(const QString &name) const override;
    void startDownload(const QString &name) override;
    Result<Nothing, CloudError> evict(const QString &name) override;
    void read(const QString &name, Done<CloudFile> done) override;
    void write(const QString &name, const QByteArray &bytes, const QByteArray &expected, Done<CloudFile> done) override;
    void readConflictCopies(const QString &name, Done<QList<ConflictCopy>> done) override;
    void archiveConflictCopy(const QString &copyName, Done<Nothing> done) override;
    void startWatching(const QString &name) override;
    void stopWatching() override;
    void test(Done<QString> done) override;

private:
    struct Seen {
        DownloadStatus status = DownloadStatus::NotVisible;
        QByteArray version = {};
        std::optional<Timestamp> modifiedAt = {};

        friend bool operator==(const Seen &, const Seen &) = default;
    };
    class Worker;

    template<typename T>
    void run(std::function<T(Worker &)> work, Done<T> done);
    Seen seen(const QString &name) const;
    /// Keeps what is known now; gives whether that is news.
    bool see(const QString &name, const Result<CloudFile, CloudError> &file);
    void look(const QString &name, std::function<void(bool news)> then);
    void noteAnswer(const CloudError *error);
    void retryLater(const CloudError &error);

    WebDavSettings m_settings;
    Clock &m_clock;
    bool m_isSafe;
    bool m_answers = true;
    mutable QHash<QString, Seen> m_seen;
    QSet<QString> m_downloading;
    QString m_watched;
    quint64 m_watch = 0;
    std::unique_ptr<Timer> m_retry;
    std::unique_ptr<Worker> m_worker;
};

} // namespace orvelle
