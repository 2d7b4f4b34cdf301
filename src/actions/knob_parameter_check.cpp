#include "actions/knob_parameter_check.h"

#include "actions/check_number_scope.h"
#include "base/console.h"
#include "model/global_state.h"
#include "model/vocabulary.h"

namespace dialcraft {

bool check_knob_parameters(const CreateSetupAreaViewData& data, GlobalState& globalState)
{
    // Every check runs; the last failing one's message is what stays in fullText.
    const bool channel_ok = CheckNumberScope(data.message_channel_menu_string(), 1, 16) == 1;
    if (channel_ok)
        console_line("MIDI通道 ok");
    else
        globalState.setFullText(QStringLiteral("参数错误-MIDI通道\n范围1~16"));

    const bool controller_ok = CheckNumberScope(data.message_controller_number_code_string(), 0, 127) == 1;
    if (controller_ok)
        console_line("控制器号 ok");
    else
        globalState.setFullText(QStringLiteral("参数错误-控制器号\n范围0~127"));

    const QString type = data.message_type_menu_string();
    const bool type_ok = is_programmable_type(type);
    if (type_ok)
        console_line("消息类型 ok");
    else
        globalState.setFullText(QStringLiteral("参数错误-消息类型\n请下拉选择正确参数如") + CONTROL_CHANGE + "\n" +
                                NOTE_ON + "\n...");

    if (!(channel_ok && controller_ok && type_ok))
        return false;
    console_line("参数正确");
    return true;
}

}  // namespace dialcraft
