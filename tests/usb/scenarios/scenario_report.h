#pragma once
// Outcome of one scenario run inside the test VM. Every check is recorded;
// failures and the final result leave on the console as marker lines that the
// host side of the test bed collects:
//   @@dialcraft-usb check <id> FAIL <what>
//   @@dialcraft-usb gaps <id> <gap ms> ...
//   @@dialcraft-usb result <id> PASS|FAIL <title>
// Markers go to the console even while standard output is being captured.
#include <string>
#include <vector>

#include "emulated_controller.h"

class ScenarioReport {
public:
    ScenarioReport(std::string id, std::string title);
    ~ScenarioReport();
    ScenarioReport(const ScenarioReport&) = delete;
    ScenarioReport& operator=(const ScenarioReport&) = delete;

    // Records one assertion; returns `ok` so callers can stop early.
    bool check(bool ok, const std::string& what);
    // Records the gaps between consecutive received messages and checks that
    // each is at least 8 ms, the pacing the controller needs.
    void check_gaps(const std::vector<ReceivedMessage>& messages);
    // Prints diagnostic text (captured link output, emulator logs) indented.
    void detail(const std::string& label, const std::string& text);
    // Prints the result marker; returns the process exit status.
    int finish();

    bool failed() const { return failures_ > 0; }

private:
    void marker(const std::string& text);

    std::string id_;
    std::string title_;
    int console_fd_ = -1;
    int failures_ = 0;
};
