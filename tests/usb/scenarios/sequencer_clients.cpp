#include "sequencer_clients.h"

#include <cstdlib>
#include <fstream>
#include <thread>

namespace {
// The quoted text of a line such as `Client  20 : "4AC1CC27" [Kernel Legacy]`.
std::string quoted(const std::string& line)
{
    size_t open = line.find('"');
    size_t close = open == std::string::npos ? open : line.find('"', open + 1);
    if (close == std::string::npos)
        return {};
    return line.substr(open + 1, close - open - 1);
}

template <typename Condition>
bool poll_until(Condition condition, std::chrono::milliseconds timeout)
{
    auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        if (condition())
            return true;
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}
}  // namespace

std::vector<SequencerClient> read_sequencer_clients()
{
    std::vector<SequencerClient> clients;
    std::ifstream in("/proc/asound/seq/clients");
    std::string line;
    while (std::getline(in, line)) {
        if (line.rfind("Client ", 0) == 0) {
            SequencerClient client;
            client.number = std::atoi(line.c_str() + 7);
            client.name = quoted(line);
            clients.push_back(client);
        } else if (line.rfind("  Port ", 0) == 0 && !clients.empty()) {
            clients.back().ports.push_back(quoted(line));
            clients.back().port_numbers.push_back(std::atoi(line.c_str() + 7));
        }
    }
    return clients;
}

bool sequencer_port_exists(const std::string& client, const std::string& port)
{
    for (const SequencerClient& c : read_sequencer_clients())
        if (c.name == client)
            for (const std::string& p : c.ports)
                if (p == port)
                    return true;
    return false;
}

std::string sequencer_port_address(const std::string& client, const std::string& port)
{
    for (const SequencerClient& c : read_sequencer_clients())
        if (c.name == client)
            for (size_t i = 0; i < c.ports.size(); ++i)
                if (c.ports[i] == port)
                    return std::to_string(c.number) + ":" + std::to_string(c.port_numbers[i]);
    return {};
}

bool wait_for_sequencer_port(const std::string& client, const std::string& port, std::chrono::milliseconds timeout)
{
    return poll_until([&] { return sequencer_port_exists(client, port); }, timeout);
}

bool wait_for_client_gone(const std::string& client, std::chrono::milliseconds timeout)
{
    return poll_until(
        [&] {
            for (const SequencerClient& c : read_sequencer_clients())
                if (c.name == client)
                    return false;
            return true;
        },
        timeout);
}

int sequencer_client_number(const std::string& client)
{
    for (const SequencerClient& c : read_sequencer_clients())
        if (c.name == client)
            return c.number;
    return -1;
}

int sound_card_number(const std::string& text)
{
    // Two lines a card: " 1 [4AC1CC27       ]: USB-Audio - 4AC1CC27", then
    // the long name, indented.
    std::ifstream in("/proc/asound/cards");
    std::string line;
    int card = -1;
    while (std::getline(in, line)) {
        if (line.size() > 1 && line[1] != ' ' && line.find('[') != std::string::npos)
            card = std::atoi(line.c_str());
        else if (card >= 0 && line.find(text) != std::string::npos)
            return card;
    }
    return -1;
}
