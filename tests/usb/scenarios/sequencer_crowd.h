#pragma once
// The sequencer_crowd helper program (tests/usb/helpers) as a child process:
// other programs' sequencer clients, added on request, and a listening
// client that may rename itself.
#include <string>
#include <vector>

#include "emulated_controller.h"
#include "helper_process.h"
#include "scenario_report.h"
#include "test_bed.h"

class SequencerCrowd {
public:
    SequencerCrowd(const TestBed& bed, const std::string& log_name);

    bool start(ScenarioReport& report);
    // Adds clients until there are `total` crowd clients.
    bool grow_to(ScenarioReport& report, int total);
    // A client named `client` with a port `port` that logs what it receives.
    bool listen(ScenarioReport& report, const std::string& client, const std::string& port);
    bool rename(ScenarioReport& report, const std::string& from, const std::string& to);
    // What the listening client received so far.
    std::vector<ReceivedMessage> received() const;

private:
    bool ask(ScenarioReport& report, const std::string& command, const std::string& expected);

    std::string log_path_;
    HelperProcess process_;
    int size_ = 0;
};
