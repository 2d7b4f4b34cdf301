#include "cli/midi_session.h"

#include <algorithm>
#include <vector>

#include "base/sequencer_device.h"
#include "cli/cli.h"
#include "cli/cli_arguments.h"
#include "cli/cli_commands.h"
#include "cli/cli_console.h"
#include "midi/family_presence.h"
#include "midi/midi_link.h"

namespace dialcraft {

MidiSession::MidiSession(MidiHost& host) : previous_(set_midi_host(&host))
{
    opened_ = midi_init() == 0;
}

MidiSession::~MidiSession()
{
    midi_exit();
    set_midi_host(previous_);
}

int report_unopened_service(const CliContext& context)
{
    const std::string prefix = "dialcraft-cli " + std::string(context.request.command->name) + ": ";
    if (const auto reason = sequencer_unavailable_reason()) {
        context.console.error_text(prefix + sequencer_unavailable_text(*reason) + "\n");
        return cli_no_sequencer;
    }
    context.console.error_text(prefix + "无法打开 MIDI 服务(cannot open the MIDI service)\n");
    return cli_no_controller;
}

int choose_menu_serial(const CliContext& context, MidiSession& session, std::string* menu_serial)
{
    const std::string prefix = "dialcraft-cli " + std::string(context.request.command->name) + ": ";
    if (!session.opened())
        return report_unopened_service(context);
    std::vector<std::string> present;
    for (const PresentController& controller : present_family_controllers(context.host))
        if (std::find(present.begin(), present.end(), controller.serial) == present.end())
            present.push_back(controller.serial);
    std::string names;
    for (const std::string& serial : present)
        names += (names.empty() ? "" : ", ") + serial;

    if (present.empty()) {
        context.console.error_text(prefix + "没有控制器(no controller is present)\n");
        return cli_no_controller;
    }
    if (const auto& wanted = context.request.serial) {
        if (std::find(present.begin(), present.end(), *wanted) == present.end()) {
            context.console.error_text(prefix + "--serial " + *wanted +
                                       " 不在(is not present); 现有(present): " + names + "\n");
            return cli_no_controller;
        }
        *menu_serial = *wanted;
        return cli_success;
    }
    if (present.size() > 1) {
        context.console.error_text(prefix +
                                   "有多个控制器, 请用 --serial 选择(several controllers are present; "
                                   "choose one with --serial): " +
                                   names + "\n");
        return cli_usage_error;
    }
    *menu_serial = present.front();
    return cli_success;
}

}  // namespace dialcraft
