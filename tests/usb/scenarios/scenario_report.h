#pragma once
// Outcome of one scenario run inside the test VM. Every check is recorded;
// failures and the final result leave on the console as marker lines that the
// host side of the test bed collects:
//   @@dialcraft-usb check <id> FAIL <what>
//   @@dialcraft-usb sent <id> <gap ms> ...     (between the sender's sends)
//   @@dialcraft-usb gaps <id> <gap ms> ...     (between arrivals at the controller)
//   @@dialcraft-usb table <text>               (a line of a table of figures)
//   @@dialcraft-usb result <id> PASS|FAIL <title>
// Markers go to the console even while standard output is being captured.
#include <cstdint>
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
    // Records the gaps between consecutive sends, stamped by the sender
    // (monotonic nanoseconds), and checks that each is at least 8 ms, the
    // pause the controller needs.
    void check_send_gaps(const std::vector<int64_t>& sent_ns);
    // Records the gaps between consecutive messages as the controller
    // received them. Reported only: USB delivery in the VM jitters by
    // several milliseconds either way, so they say nothing about the pause.
    void report_arrival_gaps(const std::vector<ReceivedMessage>& messages);
    // One line of a table the host prints below the results, as it is.
    void table(const std::string& line);
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
