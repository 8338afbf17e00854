#include "platform/freedesktop/ProcHostStatistics.h"

#include <QFile>

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

namespace orvelle {

namespace {

/// The beginning of a file of the kernel; more than the lines that matter.
Result<std::string, int> readHead(const QByteArray &path)
{
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return errno;
    std::string head(4096, '\0');
    const auto size = ::read(descriptor, head.data(), head.size());
    const int error = errno;
    ::close(descriptor);
    if (size < 0)
        return error;
    head.resize(static_cast<std::size_t>(size));
    return head;
}

/// "MemTotal:   16303072 kB" as bytes.
std::optional<quint64> kibibytesOf(const std::string &file, const char *name)
{
    const auto at = file.find(name);
    quint64 kibibytes = 0;
    if (at == std::string::npos || (at != 0 && file[at - 1] != '\n') ||
        std::sscanf(file.c_str() + at + std::strlen(name), " %llu kB", &kibibytes) != 1)
        return std::nullopt;
    return kibibytes * 1024;
}

} // namespace

ProcHostStatistics::ProcHostStatistics(const QString &procFolder) : m_folder(QFile::encodeName(procFolder)) {}

Result<CpuTicks, int> ProcHostStatistics::cpuTicks() const
{
    const auto file = readHead(m_folder + "/stat");
    if (!file)
        return file.error();
    // The first line is the sum over all processors, also those that have been
    // switched off meanwhile, so that it never falls back as a sum of ours would.
    enum { User, Nice, System, Idle, IoWait, Irq, SoftIrq, Steal, Count };
    std::array<quint64, Count> ticks{};
    const int read =
        std::sscanf(file->c_str(), "cpu %llu %llu %llu %llu %llu %llu %llu %llu", &ticks[User], &ticks[Nice],
                    &ticks[System], &ticks[Idle], &ticks[IoWait], &ticks[Irq], &ticks[SoftIrq], &ticks[Steal]);
    if (read <= Idle)
        return EPROTO;
    return CpuTicks{ticks[User], ticks[System] + ticks[Irq] + ticks[SoftIrq] + ticks[Steal],
                    ticks[Idle] + ticks[IoWait], ticks[Nice]};
}

Result<Capacity, int> ProcHostStatistics::memory() const
{
    const auto file = readHead(m_folder + "/meminfo");
    if (!file)
        return file.error();
    const auto total = kibibytesOf(*file, "MemTotal:");
    const auto available = kibibytesOf(*file, "MemAvailable:");
    if (!total || !available)
        return EPROTO;
    return Capacity{std::min(*available, *total), *total};
}

Result<Capacity, int> ProcHostStatistics::volume(const QString &path) const
{
    struct statvfs figures = {};
    if (::statvfs(QFile::encodeName(path).constData(), &figures) != 0)
        return errno;
    const quint64 unit = figures.f_frsize;
    return Capacity{figures.f_bavail * unit, figures.f_blocks * unit};
}

} // namespace orvelle
