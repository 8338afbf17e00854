#pragma once

#include "app/cli/CommandLine.h"
#include "links/exchange/ExchangeSettings.h"
#include "links/exchange/LinkExchange.h"
#include "menubar/MenuTestFakes.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace orvelle::test {

/// No settings travel; every document is said to have brought slots.
class NoExchangeSettings : public ExchangeSettings
{
public:
    void gather(ExportData &) const override {}
    bool apply(const ExportData &) override { return true; }
};

/// Commands on a tree over fakes, in a folder of their own.
struct CommandShell : Shell {
    using Shell::Shell;

    /// `line` holds the words, parted by single blanks.
    CommandResult run(const QString &line)
    {
        const auto parsed = parseCommandLine(line.split(u' '), folder.path());
        if (const auto *answer = std::get_if<CommandResult>(&parsed))
            return *answer;
        CommandResult result;
        runCommand(std::get<CommandCall>(parsed), context, [&result](const CommandResult &answer) { result = answer; });
        distantFiles.answers(QStringLiteral("at hand"));
        return result;
    }

    QString path(const QString &name) const { return folder.filePath(name); }

    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
        ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    }

    NoExchangeSettings settings;
    LinkExchange exchange{store, settings, bookmarks, clock};
    CommandContext context{store, exchange, defaults, snapshots, debugMode, volumes, clock, {}, {}, folder.path()};
};

} // namespace orvelle::test
