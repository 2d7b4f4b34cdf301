// Where the window's resident memory at its first frame goes, against the
// floor's: starts window_first_frame and bare_window once each, has them list
// their resident KiB per mapping at the first frame (first_frame_report.h),
// and prints per mapping both figures and the difference, largest first:
//   first_frame_mappings [N]      the N largest differences (default 15)
#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "first_frame_runs.h"

namespace {

using Resident = std::map<std::string, long>;

std::optional<Resident> resident_at_first_frame(const char* program_name)
{
    QProcessEnvironment asked;
    asked.insert(QStringLiteral("DIALCRAFT_FIRST_FRAME_MAPPINGS"), QStringLiteral("1"));
    const auto run = dialcraft::bench::run_to_first_frame(dialcraft::bench::program_beside_this_one(program_name),
                                                          asked);
    if (!run)
        return std::nullopt;
    Resident resident;
    for (const QByteArray& line : run->errors.split('\n')) {
        if (!line.startsWith("resident "))
            continue;
        const qsizetype space = line.indexOf(' ', 9);
        if (space < 0)
            continue;
        resident[line.mid(space + 1).toStdString()] += line.mid(9, space - 9).toLong();
    }
    if (resident.empty())
        return std::nullopt;
    return resident;
}

long total(const Resident& resident)
{
    long sum = 0;
    for (const auto& entry : resident)
        sum += entry.second;
    return sum;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);  // QProcess wants one
    const long shown = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 15;
    const std::optional<Resident> window = resident_at_first_frame("window_first_frame");
    const std::optional<Resident> bare = resident_at_first_frame("bare_window");
    if (!window || !bare) {
        std::fprintf(stderr, "%s did not reach its first frame\n", window ? "bare_window" : "window_first_frame");
        return 1;
    }

    struct Row {
        std::string mapping;
        long window_kib, bare_kib;
    };
    std::vector<Row> rows;
    Resident names = *window;
    names.insert(bare->begin(), bare->end());
    for (const auto& [mapping, unused] : names) {
        const auto in = [&mapping](const Resident& r) { return r.contains(mapping) ? r.at(mapping) : 0L; };
        rows.push_back({mapping, in(*window), in(*bare)});
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& a, const Row& b) { return a.window_kib - a.bare_kib > b.window_kib - b.bare_kib; });

    std::printf("%9s %9s %9s  %s\n", "window", "bare", "more", "mapping (resident KiB at the first frame)");
    std::printf("%9ld %9ld %9ld  all\n", total(*window), total(*bare), total(*window) - total(*bare));
    for (long i = 0; i < std::min<long>(shown, static_cast<long>(rows.size())); ++i) {
        const Row& row = rows[static_cast<size_t>(i)];
        std::printf("%9ld %9ld %9ld  %s\n", row.window_kib, row.bare_kib, row.window_kib - row.bare_kib,
                    row.mapping.c_str());
    }
    return 0;
}
