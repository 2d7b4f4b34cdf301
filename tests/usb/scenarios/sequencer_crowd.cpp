#include "sequencer_crowd.h"

#include <chrono>
#include <fstream>
#include <sstream>

using namespace std::chrono_literals;

SequencerCrowd::SequencerCrowd(const TestBed& bed, const std::string& log_name)
    : log_path_(bed.file(log_name)), process_({bed.program("sequencer_crowd"), log_path_})
{
}

bool SequencerCrowd::start(ScenarioReport& report)
{
    return report.check(process_.start(), "start sequencer_crowd: " + process_.error());
}

bool SequencerCrowd::ask(ScenarioReport& report, const std::string& command, const std::string& expected)
{
    std::string reply;
    const bool answered = process_.ask(command, &reply, 10s);
    return report.check(answered && reply == expected, "sequencer_crowd answers \"" + command + "\" with \"" +
                                                           expected + "\" (got \"" +
                                                           (answered ? reply : process_.error()) + "\")");
}

bool SequencerCrowd::grow_to(ScenarioReport& report, int total)
{
    if (total <= size_)
        return true;
    if (!ask(report, "add " + std::to_string(total - size_), "added " + std::to_string(total)))
        return false;
    size_ = total;
    return true;
}

bool SequencerCrowd::listen(ScenarioReport& report, const std::string& client, const std::string& port)
{
    std::string reply;
    const bool answered = process_.ask("listen " + client + " " + port, &reply, 10s);
    return report.check(answered && reply.rfind("listening ", 0) == 0,
                        "sequencer_crowd opens the listening client " + client + " (got \"" +
                            (answered ? reply : process_.error()) + "\")");
}

bool SequencerCrowd::rename(ScenarioReport& report, const std::string& from, const std::string& to)
{
    return ask(report, "rename " + from + " " + to, "renamed " + to);
}

std::vector<ReceivedMessage> SequencerCrowd::received() const
{
    std::vector<ReceivedMessage> messages;
    std::ifstream in(log_path_);
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream words(line);
        std::string word;
        ReceivedMessage m;
        if (!(words >> word) || word != "received" || !(words >> m.monotonic_ns))
            continue;
        unsigned value = 0;
        while (words >> std::hex >> value)
            m.bytes.push_back(static_cast<uint8_t>(value));
        messages.push_back(m);
    }
    return messages;
}
