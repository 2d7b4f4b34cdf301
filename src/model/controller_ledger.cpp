#include "model/controller_ledger.h"

namespace dialcraft {

const HeldSetting* ControllerLedger::held(const QString& serial, int knob) const
{
    const auto controller = controllers.find(serial);
    if (controller == controllers.end())
        return nullptr;
    const auto setting = controller->second.find(knob);
    return setting == controller->second.end() ? nullptr : &setting->second;
}

}  // namespace dialcraft
