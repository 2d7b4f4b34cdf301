// Other programs' sequencer clients, for the test bed: the many clients of a
// busy desktop (a DAW, soft synths, MIDI bridges) and a software instrument
// that renames itself. Driven by one command a line on standard input, each
// answered by one line on standard output once done:
//
//   add <n>                       n more clients "Crowd <k>", each with one
//                                 port "Crowd <k> port" that others may read
//                                 from and write to        -> "added <total>"
//   listen <client> <port>        a client with such a port that logs every
//                                 MIDI message it receives -> "listening <client id>"
//   rename <old> <new>            the client named <old> renames itself
//                                                          -> "renamed <new>"
//   quit (or end of input)        closes every client and leaves
//
// Received messages go to the log file named on the command line, one line
// each: "received <monotonic ns> <hex bytes>". Failures answer "error <what>".
//   sequencer_crowd <log file>
#include <alsa/asoundlib.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Client {
    snd_seq_t* seq = nullptr;
    std::string name;
    snd_midi_event_t* decoder = nullptr;  // only for listeners

    ~Client()
    {
        if (decoder)
            snd_midi_event_free(decoder);
        if (seq)
            snd_seq_close(seq);
    }
};

std::vector<std::unique_ptr<Client>> clients;
FILE* event_log = nullptr;
int crowd_size = 0;

void answer(const std::string& line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

std::string failure(const char* what, int err)
{
    return std::string("error ") + what + ": " + snd_strerror(err);
}

constexpr unsigned int duplex_caps = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ | SND_SEQ_PORT_CAP_WRITE |
                                     SND_SEQ_PORT_CAP_SUBS_WRITE;

// Opens one client with one port; `mode` says whether it reads events.
std::string open_client(const std::string& name, const std::string& port, int mode, Client** out)
{
    auto c = std::make_unique<Client>();
    if (int err = snd_seq_open(&c->seq, "default", mode, SND_SEQ_NONBLOCK); err < 0) {
        c->seq = nullptr;
        return failure("snd_seq_open", err);
    }
    if (int err = snd_seq_set_client_name(c->seq, name.c_str()); err < 0)
        return failure("snd_seq_set_client_name", err);
    if (int p = snd_seq_create_simple_port(c->seq, port.c_str(), duplex_caps,
                                           SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
        p < 0)
        return failure("snd_seq_create_simple_port", p);
    c->name = name;
    *out = c.get();
    clients.push_back(std::move(c));
    return {};
}

std::string add(int n)
{
    for (int i = 0; i < n; ++i) {
        const std::string name = "Crowd " + std::to_string(crowd_size + 1);
        Client* c = nullptr;
        if (std::string err = open_client(name, name + " port", SND_SEQ_OPEN_OUTPUT, &c); !err.empty())
            return err;
        ++crowd_size;
    }
    return "added " + std::to_string(crowd_size);
}

std::string listen(const std::string& name, const std::string& port)
{
    Client* c = nullptr;
    if (std::string err = open_client(name, port, SND_SEQ_OPEN_DUPLEX, &c); !err.empty())
        return err;
    if (int err = snd_midi_event_new(16, &c->decoder); err < 0) {
        c->decoder = nullptr;
        return failure("snd_midi_event_new", err);
    }
    snd_midi_event_no_status(c->decoder, 1);
    return "listening " + std::to_string(snd_seq_client_id(c->seq));
}

std::string rename_client(const std::string& from, const std::string& to)
{
    for (auto& c : clients) {
        if (c->name != from)
            continue;
        if (int err = snd_seq_set_client_name(c->seq, to.c_str()); err < 0)
            return failure("snd_seq_set_client_name", err);
        c->name = to;
        return "renamed " + to;
    }
    return "error no client named " + from;
}

int64_t monotonic_ns()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

void drain(Client& c)
{
    for (;;) {
        snd_seq_event_t* ev = nullptr;
        const int rc = snd_seq_event_input(c.seq, &ev);
        if (rc == -ENOSPC)
            continue;
        if (rc < 0 || !ev)
            return;
        unsigned char bytes[16];
        const long n = snd_midi_event_decode(c.decoder, bytes, sizeof bytes, ev);
        if (n <= 0)
            continue;
        std::fprintf(event_log, "received %lld", static_cast<long long>(monotonic_ns()));
        for (long i = 0; i < n; ++i)
            std::fprintf(event_log, " %02x", bytes[i]);
        std::fprintf(event_log, "\n");
        std::fflush(event_log);
    }
}

// One line from standard input; false at its end.
bool read_command(std::string* line)
{
    line->clear();
    char ch;
    for (;;) {
        const ssize_t n = read(STDIN_FILENO, &ch, 1);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        if (ch == '\n')
            return true;
        *line += ch;
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <log file>\n", argv[0]);
        return 2;
    }
    event_log = std::fopen(argv[1], "w");
    if (!event_log) {
        std::perror(argv[1]);
        return 1;
    }
    for (;;) {
        std::vector<pollfd> fds{{STDIN_FILENO, POLLIN, 0}};
        std::vector<Client*> owners{nullptr};
        for (auto& c : clients) {
            if (!c->decoder)
                continue;
            const int count = snd_seq_poll_descriptors_count(c->seq, POLLIN);
            std::vector<pollfd> mine(static_cast<size_t>(count > 0 ? count : 0));
            if (count <= 0 ||
                snd_seq_poll_descriptors(c->seq, mine.data(), static_cast<unsigned>(count), POLLIN) != count) {
                answer("error snd_seq_poll_descriptors");
                return 1;
            }
            for (const pollfd& fd : mine) {
                fds.push_back(fd);
                owners.push_back(c.get());
            }
        }
        if (poll(fds.data(), fds.size(), -1) < 0) {
            if (errno == EINTR)
                continue;
            std::perror("poll");
            return 1;
        }
        for (size_t i = 1; i < fds.size(); ++i)
            if (fds[i].revents & POLLIN)
                drain(*owners[i]);
        if (!(fds[0].revents & (POLLIN | POLLHUP)))
            continue;
        std::string line;
        if (!read_command(&line))
            break;
        std::istringstream words(line);
        std::string verb, a, b;
        words >> verb;
        if (verb == "quit")
            break;
        if (verb == "add") {
            int n = 0;
            words >> n;
            answer(n > 0 ? add(n) : "error add needs a count");
        } else if (verb == "listen" && words >> a && std::getline(words >> std::ws, b)) {
            answer(listen(a, b));
        } else if (verb == "rename" && words >> a >> b) {
            answer(rename_client(a, b));
        } else {
            answer("error unknown command: " + line);
        }
    }
    clients.clear();
    std::fclose(event_log);
    return 0;
}
