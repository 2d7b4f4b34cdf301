// The yardstick for the link's pacing: the least an alsa-lib program can do
// to send the knob programming sequence. It finds the destination port once
// and connects to it once. Then, for each line "program" on standard input,
// it sleeps 8 ms as the link does before each of its two scans, and before
// each of the five events (clock, note on, note off, control change, clock)
// sleeps 8 ms, queues the event and drains the output. The timer slack is
// the link's (1 ns), so both sleep alike. Every send is stamped with the
// monotonic clock after the drain and printed as "sent <ns>"; "done" ends
// each programming's output. It leaves at the end of its input.
//   reference_sender <destination port name> <knob> <channel 1-16> <controller>
#include <alsa/asoundlib.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

namespace {

constexpr useconds_t pause_us = 8000;

[[noreturn]] void fail(const char* what, int err)
{
    std::fprintf(stderr, "reference_sender: %s: %s\n", what, snd_strerror(err));
    std::exit(1);
}

void check(const char* what, int rc)
{
    if (rc < 0)
        fail(what, rc);
}

int64_t monotonic_ns()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

// The address of the port named `name`, found in one walk.
snd_seq_addr_t find_port(snd_seq_t* seq, const std::string& name)
{
    snd_seq_client_info_t* client = nullptr;
    snd_seq_port_info_t* port = nullptr;
    check("snd_seq_client_info_malloc", snd_seq_client_info_malloc(&client));
    check("snd_seq_port_info_malloc", snd_seq_port_info_malloc(&port));
    snd_seq_client_info_set_client(client, -1);
    while (snd_seq_query_next_client(seq, client) >= 0) {
        snd_seq_port_info_set_client(port, snd_seq_client_info_get_client(client));
        snd_seq_port_info_set_port(port, -1);
        while (snd_seq_query_next_port(seq, port) >= 0) {
            if (name == snd_seq_port_info_get_name(port)) {
                snd_seq_addr_t at = *snd_seq_port_info_get_addr(port);
                snd_seq_port_info_free(port);
                snd_seq_client_info_free(client);
                return at;
            }
        }
    }
    std::fprintf(stderr, "reference_sender: no port named %s\n", name.c_str());
    std::exit(1);
}

void send(snd_seq_t* seq, int port, snd_seq_event_t ev)
{
    usleep(pause_us);
    snd_seq_ev_set_source(&ev, port);
    snd_seq_ev_set_subs(&ev);
    snd_seq_ev_set_direct(&ev);
    check("snd_seq_event_output", snd_seq_event_output(seq, &ev));
    check("snd_seq_drain_output", snd_seq_drain_output(seq));
    std::printf("sent %lld\n", static_cast<long long>(monotonic_ns()));
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::fprintf(stderr, "usage: %s <port name> <knob> <channel> <controller>\n", argv[0]);
        return 2;
    }
    const std::string port_name = argv[1];
    const int knob = std::atoi(argv[2]);
    const int channel = std::atoi(argv[3]) - 1;
    const int controller = std::atoi(argv[4]);
    if (knob < 0 || knob > 127 || channel < 0 || channel > 15 || controller < 0 || controller > 127) {
        std::fprintf(stderr, "reference_sender: argument out of range\n");
        return 2;
    }
    // As the link does for its pauses: no timer slack stretches the sleep.
    if (prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL) != 0)
        std::perror("reference_sender: PR_SET_TIMERSLACK");

    snd_seq_t* seq = nullptr;
    check("snd_seq_open", snd_seq_open(&seq, "default", SND_SEQ_OPEN_OUTPUT, 0));
    check("snd_seq_set_client_name", snd_seq_set_client_name(seq, "Reference Sender"));
    const int port = snd_seq_create_simple_port(seq, "Reference port",
                                                SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ,
                                                SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    check("snd_seq_create_simple_port", port);
    const snd_seq_addr_t dest = find_port(seq, port_name);
    check("snd_seq_connect_to", snd_seq_connect_to(seq, port, dest.client, dest.port));

    snd_seq_event_t clock, note_on, note_off, change;
    snd_seq_ev_clear(&clock);
    clock.type = SND_SEQ_EVENT_CLOCK;
    snd_seq_ev_clear(&note_on);
    snd_seq_ev_set_noteon(&note_on, channel, controller, knob);
    snd_seq_ev_clear(&note_off);
    snd_seq_ev_set_noteoff(&note_off, channel, controller, knob);
    snd_seq_ev_clear(&change);
    snd_seq_ev_set_controller(&change, channel, controller, knob);

    char line[64];
    while (std::fgets(line, sizeof line, stdin)) {
        if (std::strcmp(line, "program\n") != 0) {
            std::fprintf(stderr, "reference_sender: unknown command %s", line);
            return 2;
        }
        // The link's two scans each begin with the same pause.
        usleep(pause_us);
        usleep(pause_us);
        send(seq, port, clock);
        send(seq, port, note_on);
        send(seq, port, note_off);
        send(seq, port, change);
        send(seq, port, clock);
        std::printf("done\n");
        std::fflush(stdout);
    }
    check("snd_seq_close", snd_seq_close(seq));
    return 0;
}
