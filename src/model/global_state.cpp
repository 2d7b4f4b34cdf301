#include "model/global_state.h"

#include "model/publish.h"
#include "model/vocabulary.h"

namespace dialcraft {

const QString initial_full_text = QStringLiteral(
    "说明:  \n0.选择型号\n1.输入参数\n2.单点设置(首选)\n   或使用 全部设置\n\n注: 每个区域都有独立\n设置按钮 \n"
    "C27为设置即保存型\n不需要手动保存到硬件");

GlobalState::GlobalState(QObject* parent)
    : QObject(parent), fullText_(initial_full_text), machine_type_menu_string_(machine_type_array().at(0))
{
    for (int i = 0; i < 36; ++i)
        SetupAreaData_.append(new CreateSetupAreaViewData(i, this));
    ConfigAreaData_ = new CreateConfigAreaViewData(0, this);
}

void GlobalState::setFullText(const QString& value)
{
    publish(this, fullText_, value, &GlobalState::fullTextChanged);
}

void GlobalState::set_machine_type_menu_string(const QString& value)
{
    publish(this, machine_type_menu_string_, value, &GlobalState::machine_type_menu_stringChanged);
}

void GlobalState::setSetupAreaData(const QList<CreateSetupAreaViewData*>& value)
{
    publish(this, SetupAreaData_, value, &GlobalState::SetupAreaDataChanged);
}

void GlobalState::setConfigAreaData(CreateConfigAreaViewData* value)
{
    publish(this, ConfigAreaData_, value, &GlobalState::ConfigAreaDataChanged);
}

CreateSetupAreaViewData* GlobalState::record(int i) const
{
    return i >= 0 && i < SetupAreaData_.size() ? SetupAreaData_.at(i) : nullptr;
}

}  // namespace dialcraft
