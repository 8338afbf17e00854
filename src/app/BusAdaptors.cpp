#include "app/BusAdaptors.h"

#include <QUrl>

namespace orvelle {

void ApplicationAdaptor::Activate(const QVariantMap &)
{
    m_requests.activate();
}

void ApplicationAdaptor::Open(const QStringList &uris, const QVariantMap &)
{
    QStringList paths;
    for (const QString &uri : uris) {
        const QUrl url(uri, QUrl::StrictMode);
        if (url.isLocalFile())
            paths += url.toLocalFile();
    }
    m_requests.open(paths);
}

void ApplicationAdaptor::ActivateAction(const QString &name, const QVariantList &, const QVariantMap &)
{
    m_requests.action(name);
}

int CommandAdaptor::RunCommand(const QStringList &arguments, const QString &workingDirectory, QByteArray &output,
                               QByteArray &errorOutput)
{
    const CommandResult result = m_requests.run(arguments, workingDirectory);
    output = result.out;
    errorOutput = result.err;
    return result.exitCode;
}

} // namespace orvelle
