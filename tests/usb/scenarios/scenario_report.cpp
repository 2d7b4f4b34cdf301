#include "scenario_report.h"

#include <unistd.h>

#include <cstdio>

ScenarioReport::ScenarioReport(std::string id, std::string title)
    : id_(std::move(id)), title_(std::move(title)), console_fd_(dup(STDOUT_FILENO))
{
}

ScenarioReport::~ScenarioReport()
{
    if (console_fd_ >= 0)
        close(console_fd_);
}

void ScenarioReport::marker(const std::string& text)
{
    std::string line = text + "\n";
    int fd = console_fd_ >= 0 ? console_fd_ : STDERR_FILENO;
    ssize_t ignored = write(fd, line.data(), line.size());
    (void)ignored;
}

bool ScenarioReport::check(bool ok, const std::string& what)
{
    if (!ok) {
        ++failures_;
        // A marker is one console line: line ends in the text are spelled out.
        std::string one_line;
        for (char c : what) {
            if (c == '\r')
                one_line += "\\r";
            else if (c == '\n')
                one_line += "\\n";
            else
                one_line += c;
        }
        marker("@@dialcraft-usb check " + id_ + " FAIL " + one_line);
    }
    return ok;
}

namespace {
// " 8.123 9.456 ..." for the gaps between consecutive stamps.
std::string gap_list(const std::vector<int64_t>& ns, std::vector<double>* gaps)
{
    std::string list;
    for (size_t i = 1; i < ns.size(); ++i) {
        const double gap_ms = static_cast<double>(ns[i] - ns[i - 1]) / 1e6;
        gaps->push_back(gap_ms);
        char cell[32];
        std::snprintf(cell, sizeof cell, " %.3f", gap_ms);
        list += cell;
    }
    return list;
}
}  // namespace

void ScenarioReport::check_send_gaps(const std::vector<int64_t>& sent_ns)
{
    if (sent_ns.size() < 2)
        return;
    std::vector<double> gaps;
    const std::string list = gap_list(sent_ns, &gaps);
    for (size_t i = 0; i < gaps.size(); ++i) {
        char what[96];
        std::snprintf(what, sizeof what, "the sender's gap %zu between sends is %.3f ms, below 8 ms", i + 1, gaps[i]);
        check(gaps[i] >= 8.0, what);
    }
    marker("@@dialcraft-usb sent " + id_ + list);
}

void ScenarioReport::report_arrival_gaps(const std::vector<ReceivedMessage>& messages)
{
    std::vector<int64_t> ns;
    for (const ReceivedMessage& m : messages)
        ns.push_back(m.monotonic_ns);
    if (ns.size() < 2)
        return;
    std::vector<double> gaps;
    marker("@@dialcraft-usb gaps " + id_ + gap_list(ns, &gaps));
}

void ScenarioReport::table(const std::string& line)
{
    marker("@@dialcraft-usb table " + line);
}

void ScenarioReport::detail(const std::string& label, const std::string& text)
{
    std::string block = "---- " + label + "\n";
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        block += "| " + line + "\n";
        start = end + 1;
    }
    marker(block.substr(0, block.size() - 1));
}

int ScenarioReport::finish()
{
    marker("@@dialcraft-usb result " + id_ + (failures_ ? " FAIL " : " PASS ") + title_);
    return failures_ ? 1 : 0;
}
