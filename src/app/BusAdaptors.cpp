#include "app/BusAdaptors.h"

#include "platform/freedesktop/ActivationToken.h"

#include <QDBusError>
#include <QDir>
#include <QUrl>

namespace orvelle {

namespace {

/// So that the window which is asked for may have the focus.
void takeFocusFrom(const QVariantMap &platformData)
{
    takeActivationToken(platformData.value(QStringLiteral("activation-token")).toString());
}

} // namespace

void ApplicationAdaptor::Activate(const QVariantMap &platformData)
{
    takeFocusFrom(platformData);
    m_requests.activate();
}

void ApplicationAdaptor::Open(const QStringList &uris, const QVariantMap &platformData)
{
    takeFocusFrom(platformData);
    QStringList paths;
    for (const QString &uri : uris) {
        const QUrl url(uri, QUrl::StrictMode);
        if (url.isLocalFile() && url.host().isEmpty() && paths.size() < maxOpenedDocuments)
            paths += url.toLocalFile();
    }
    m_requests.open(paths);
}

void ApplicationAdaptor::ActivateAction(const QString &name, const QVariantList &, const QVariantMap &platformData)
{
    takeFocusFrom(platformData);
    m_requests.action(name);
}

int CommandAdaptor::RunCommand(const QStringList &arguments, const QString &workingDirectory, const QDBusMessage &call,
                               QByteArray &, QByteArray &)
{
    // What is returned here is then not sent.
    call.setDelayedReply(true);
    const CommandAnswer answer = [bus = m_bus, call](const CommandResult &result) {
        const bool fits = result.out.size() <= maxCommandOutput && result.err.size() <= maxCommandOutput;
        bus.send(fits ? call.createReply(QVariantList{result.exitCode, result.out, result.err})
                      : call.createErrorReply(QDBusError::LimitsExceeded, QStringLiteral("The output is too long")));
    };
    const bool isSound = arguments.size() <= maxCommandArguments &&
                         (workingDirectory.isEmpty() || QDir::isAbsolutePath(workingDirectory));
    if (isSound)
        m_requests.run(arguments, workingDirectory, answer);
    else
        answer(CommandResult::wrongUsage(QStringLiteral("The call is not a command line.")));
    return {};
}

} // namespace orvelle
