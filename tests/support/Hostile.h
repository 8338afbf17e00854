#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <functional>

namespace orvelle::test {

/// Hands each fixture of tests/hostile/<folder> to `visit`, in the order of
/// their names; those called "bad-..." must be refused, the others accepted.
/// Returns how many there were.
inline qsizetype forEachHostileFile(const QString &folder,
                                    const std::function<void(const QString &name, const QByteArray &bytes)> &visit)
{
    const QDir dir(QStringLiteral(ORVELLE_SOURCE_DIR "/tests/hostile/") + folder);
    const QStringList names = dir.entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QFile file(dir.filePath(name));
        if (file.open(QFile::ReadOnly))
            visit(name, file.readAll());
    }
    return names.size();
}

} // namespace orvelle::test
