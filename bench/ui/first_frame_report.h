#pragma once
// What both programs of the start-up benchmark print at their first frame:
// "first-frame <steady-clock ns> <peak resident KiB>" on standard error,
// after which they end at once, so that nothing past the first frame is
// measured. With DIALCRAFT_FIRST_FRAME_MAPPINGS set they print before it, for
// first_frame_mappings, one line "resident <KiB> <mapping>" per mapped file
// (or [heap], [anon], ...), summed over its mappings, from /proc/self/smaps.
#include <QFile>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>

namespace dialcraft::bench {

// Peak resident set size so far, in KiB; -1 when the kernel does not say.
inline long peak_resident_kib()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return -1;
}

// Resident KiB per mapping name; a mapping without a name counts as [anon].
inline void print_resident_by_mapping()
{
    std::FILE* smaps = std::fopen("/proc/self/smaps", "r");
    if (!smaps)
        return;
    std::map<std::string, long> resident;
    std::string mapping;
    char line[4096];
    while (std::fgets(line, sizeof line, smaps)) {
        unsigned long from = 0, to = 0;
        long kib = 0;
        if (std::sscanf(line, "Rss: %ld kB", &kib) == 1) {
            resident[mapping] += kib;
        } else if (std::sscanf(line, "%lx-%lx ", &from, &to) == 2) {
            // "from-to perms offset dev inode [name]"
            char name[4096] = "[anon]";
            std::sscanf(line, "%*s %*s %*s %*s %*s %4095[^\n]", name);
            mapping = name;
        }
    }
    std::fclose(smaps);
    for (const auto& [name, kib] : resident)
        std::fprintf(stderr, "resident %ld %s\n", kib, name.c_str());
}

// `tidy` runs after the report, so its time is not counted: the end skips
// every destructor, and with them the removal of temporary folders.
[[noreturn]] inline void report_first_frame_and_end(const std::function<void()>& tidy = {})
{
    if (std::getenv("DIALCRAFT_FIRST_FRAME_MAPPINGS"))
        print_resident_by_mapping();
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    std::fprintf(stderr, "first-frame %lld %ld\n", static_cast<long long>(std::chrono::nanoseconds(now).count()),
                 peak_resident_kib());
    std::fflush(stderr);
    if (tidy)
        tidy();
    std::_Exit(0);
}

}  // namespace dialcraft::bench
