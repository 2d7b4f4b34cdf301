// dialcraft-cli list: the controllers of the family on the MIDI service.
#include <algorithm>
#include <ostream>

#include "cli/cli.h"
#include "cli/cli_arguments.h"
#include "cli/cli_commands.h"
#include "cli/cli_console.h"
#include "cli/cli_output.h"
#include "cli/midi_session.h"
#include "midi/family_presence.h"

namespace dialcraft {

int run_list(const CliContext& context)
{
    MidiSession session(context.host);
    const std::vector<PresentController> present = session.opened() ? present_family_controllers(context.host)
                                                                    : std::vector<PresentController>{};

    if (context.request.json) {
        QJsonArray array;
        for (const PresentController& controller : present)
            array.append(QJsonObject{{"serial", QString::fromStdString(controller.serial)},
                                     {"address", QString::fromStdString(controller.address)},
                                     {"port", QString::fromStdString(controller.port_name)}});
        context.out << json_line(array);
    } else {
        size_t address_width = 0;
        for (const PresentController& controller : present)
            address_width = std::max(address_width, controller.address.size());
        for (const PresentController& controller : present)
            context.out << controller.serial << "  " << controller.address
                        << std::string(address_width - controller.address.size(), ' ') << "  " << controller.port_name
                        << "\n";
    }
    context.out.flush();

    if (!session.opened())
        return report_unopened_service(context);
    if (present.empty()) {
        context.console.error_text("dialcraft-cli list: 没有控制器(no controller is present)\n");
        return cli_no_controller;
    }
    return cli_success;
}

}  // namespace dialcraft
