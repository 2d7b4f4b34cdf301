#pragma once
// What both programs of the start-up benchmark print at their first frame:
// "first-frame <steady-clock ns> <peak resident KiB>" on standard error,
// after which they end at once, so that nothing past the first frame is
// measured.
#include <QFile>

#include <chrono>
#include <cstdio>
#include <cstdlib>

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

[[noreturn]] inline void report_first_frame_and_end()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    std::fprintf(stderr, "first-frame %lld %ld\n", static_cast<long long>(std::chrono::nanoseconds(now).count()),
                 peak_resident_kib());
    std::fflush(stderr);
    std::_Exit(0);
}

}  // namespace dialcraft::bench
