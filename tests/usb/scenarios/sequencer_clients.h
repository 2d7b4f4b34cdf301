#pragma once
// The kernel's own view of the ALSA sequencer (/proc/asound/seq/clients),
// used to wait for an emulated controller to appear on the host side or to
// disappear after an unplug, independently of the code under test.
#include <chrono>
#include <string>
#include <vector>

struct SequencerClient {
    int number = -1;
    std::string name;
    std::vector<std::string> ports;
    std::vector<int> port_numbers;  // beside `ports`
};

std::vector<SequencerClient> read_sequencer_clients();

// True when a client named `client` has a port named `port`.
bool sequencer_port_exists(const std::string& client, const std::string& port);

// Where the sequencer puts that port, "24:0"; empty when there is no such port.
std::string sequencer_port_address(const std::string& client, const std::string& port);

// Polls until the port exists (or, for wait_for_client_gone, until no client
// of that name is left); false when `timeout` passes first.
bool wait_for_sequencer_port(const std::string& client, const std::string& port, std::chrono::milliseconds timeout);
bool wait_for_client_gone(const std::string& client, std::chrono::milliseconds timeout);

// The sequencer client number of the client named `client`, or -1.
int sequencer_client_number(const std::string& client);
// The number of the sound card whose long name (/proc/asound/cards)
// contains `text`, or -1.
int sound_card_number(const std::string& text);
