// dialcraft-cli monitor and verify: what the controllers send, decoded and
// matched to knobs, through a listening port of the host's own, so the link's
// connections are never touched.
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <ostream>

#include "actions/knob_verification.h"
#include "actions/monitor_attribution.h"
#include "actions/monitor_inbox.h"
#include "actions/monitor_line.h"
#include "cli/cli.h"
#include "cli/cli_arguments.h"
#include "cli/cli_commands.h"
#include "cli/cli_console.h"
#include "cli/cli_output.h"
#include "cli/midi_session.h"
#include "cli/monitor_input.h"
#include "cli/stored_records.h"
#include "model/global_state.h"
#include "model/knob_attribution.h"
#include "model/knob_record.h"
#include "model/ledger_store.h"

namespace dialcraft {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto slice = std::chrono::milliseconds(100);
constexpr int default_verify_seconds = 60;

std::atomic<bool> interrupted{false};
bool watch_input = true;

void on_interrupt(int)
{
    interrupted = true;
}

// Ctrl-C ends the wait cleanly while it is installed.
class InterruptCatcher {
public:
    InterruptCatcher()
    {
        interrupted = false;
        struct sigaction action = {};
        action.sa_handler = on_interrupt;
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, &previous_);
    }
    ~InterruptCatcher() { sigaction(SIGINT, &previous_, nullptr); }
    InterruptCatcher(const InterruptCatcher&) = delete;
    InterruptCatcher& operator=(const InterruptCatcher&) = delete;

private:
    struct sigaction previous_ = {};
};

// Standard input ends the monitor when it is a pipe or a terminal that
// reached its end; anything else (/dev/null under a service manager) is not
// input to wait for.
bool input_ended()
{
    if (!watch_input)
        return false;
    struct stat status = {};
    if (fstat(STDIN_FILENO, &status) != 0 || !(S_ISFIFO(status.st_mode) || isatty(STDIN_FILENO)))
        return false;
    pollfd fd{STDIN_FILENO, POLLIN, 0};
    if (poll(&fd, 1, 0) <= 0)
        return false;
    if (fd.revents & (POLLHUP | POLLERR))
        return true;
    char buffer[256];
    return read(STDIN_FILENO, buffer, sizeof buffer) == 0;
}

std::string prefix(const CliContext& context)
{
    return "dialcraft-cli " + std::string(context.request.command->name) + ": ";
}

int start_listening(const CliContext& context, MonitorInbox& inbox)
{
    if (inbox.start(context.host) == 0)
        return cli_success;
    if (const int status = report_unopened_service(context); status == cli_no_sequencer)
        return status;
    return cli_failed;
}

QString kind_setting_text(const KnobSends& setting)
{
    const std::string_view name = midi_kind_name(setting.kind);
    QString text = QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size())) +
                   QStringLiteral(", 通道(channel) %1").arg(setting.channel);
    if (setting.kind != MidiKind::pitch_bend)
        text += QStringLiteral(", 控制器号(controller) %1").arg(setting.number);
    return text;
}

bool is_knob_kind(MidiKind kind)
{
    return kind == MidiKind::note_on || kind == MidiKind::note_off || kind == MidiKind::control_change ||
           kind == MidiKind::pitch_bend;
}

}  // namespace

void set_monitor_watches_input(bool watch)
{
    watch_input = watch;
}

int run_monitor(const CliContext& context)
{
    const CliRequest& request = context.request;
    MonitorInbox inbox;
    if (const int status = start_listening(context, inbox); status != cli_success)
        return status;
    InterruptCatcher catcher;
    MonitorAttribution attribution;
    attribution.set_ledger(read_ledger());
    const auto deadline = request.timeout_seconds ? Clock::now() + std::chrono::seconds(*request.timeout_seconds)
                                                  : Clock::time_point::max();
    std::vector<HeardMessage> taken;
    std::vector<int> knobs;
    uint64_t shown = 0;
    while (!interrupted && Clock::now() < deadline && !input_ended()) {
        inbox.wait_until(std::min(deadline, Clock::now() + slice));
        inbox.take(taken);
        for (const HeardMessage& heard : taken) {
            const QString serial = QString::fromLatin1(heard.serial);
            if (request.serial && serial.toStdString() != *request.serial)
                continue;
            attribution.matched(serial, heard.message, knobs);
            if (request.json)
                context.out << json_line(monitor_json(heard, knobs));
            else
                context.out << monitor_line(heard, knobs).toStdString() << '\n';
            if (request.count && ++shown == *request.count) {
                context.out.flush();
                return cli_success;
            }
        }
        context.out.flush();
        if (inbox.failed()) {
            context.console.error_text(prefix(context) + "监听已停止(listening stopped)\n");
            return cli_failed;
        }
    }
    return cli_success;
}

int run_verify(const CliContext& context)
{
    const CliRequest& request = context.request;
    const int knob = knob_argument(request.operands.at(0));
    std::string chosen;
    {
        MidiSession session(context.host);
        // A missing sequencer leaves no controller to verify; 4 is the
        // timeout here.
        if (const int status = choose_menu_serial(context, session, &chosen); status != cli_success)
            return status == cli_no_sequencer ? cli_no_controller : status;
    }
    const QString serial = QString::fromStdString(chosen);
    std::optional<KnobSends> setting;
    const ControllerLedger ledger = read_ledger();
    const HeldSetting* held = ledger.held(serial, knob);
    if (held) {
        setting = knob_sends_from_held(knob, *held);
    } else {
        GlobalState state;
        load_stored_records(state);
        if (const CreateSetupAreaViewData* record = state.record(knob))
            setting = knob_sends_from_text(knob, record->message_type_menu_string(),
                                           record->message_channel_menu_string(),
                                           record->message_controller_number_code_string());
    }
    if (!setting) {
        context.console.error_text(
            prefix(context) +
            QStringLiteral("旋钮 %1 没有可验证的设置(knob %1 has no setting to verify)\n").arg(knob).toStdString());
        return cli_usage_error;
    }
    MonitorInbox inbox;
    if (const int status = start_listening(context, inbox); status != cli_success)
        return status == cli_no_sequencer ? cli_no_controller : status;
    InterruptCatcher catcher;
    MonitorAttribution attribution;
    attribution.set_ledger(ledger);
    const int seconds = request.timeout_seconds.value_or(default_verify_seconds);
    const auto deadline = Clock::now() + std::chrono::seconds(seconds);
    const QString head = QStringLiteral("旋钮(knob) %1: ").arg(knob);
    std::vector<HeardMessage> taken;
    std::vector<int> knobs;
    while (!interrupted && Clock::now() < deadline) {
        inbox.wait_until(std::min(deadline, Clock::now() + slice));
        inbox.take(taken);
        for (const HeardMessage& heard : taken) {
            if (QString::fromLatin1(heard.serial) != serial || !is_knob_kind(heard.message.kind))
                continue;
            if (knob_sends(*setting, heard.message)) {
                if (held)
                    record_verification_in_ledger(serial, knob, held->type, held->channel, held->controller);
                context.out << (head + QStringLiteral("已验证(verified) ") + kind_setting_text(*setting)).toStdString()
                            << '\n';
                context.out.flush();
                return cli_success;
            }
            attribution.matched(serial, heard.message, knobs);
            context.out << (head + QStringLiteral("收到别的设置(a different setting arrived): ") +
                            monitor_message_text(heard.message, knobs))
                               .toStdString()
                        << '\n';
            context.out.flush();
            return cli_failed;
        }
        if (inbox.failed()) {
            context.console.error_text(prefix(context) + "监听已停止(listening stopped)\n");
            return cli_failed;
        }
    }
    context.out
        << (head +
            QStringLiteral("超时(timed out): %1 在 %2 秒内没有发送(sent nothing within %2 s)").arg(serial).arg(seconds))
               .toStdString()
        << '\n';
    context.out.flush();
    return cli_verify_timed_out;
}

}  // namespace dialcraft
