#include "model/knob_record.h"

#include "model/configuration.h"
#include "model/publish.h"
#include "model/vocabulary.h"

namespace dialcraft {

CreateSetupAreaViewData::CreateSetupAreaViewData(int knobIndex, QObject* parent)
    : QObject(parent),
      id_(QUuid::createUuid()),
      knob_index_(knobIndex),
      message_type_menu_string_(Default_TYPE_STRING),
      message_channel_menu_string_(QStringLiteral("16")),
      message_controller_number_code_string_(QStringLiteral("127"))
{
}

void CreateSetupAreaViewData::setId(const QUuid& id)
{
    id_ = id;
    emit idChanged();
}

void CreateSetupAreaViewData::set_knob_index(int value)
{
    publish(this, knob_index_, value, &CreateSetupAreaViewData::knob_indexChanged);
}

void CreateSetupAreaViewData::set_message_type_menu_string(const QString& value)
{
    publish(this, message_type_menu_string_, value, &CreateSetupAreaViewData::message_type_menu_stringChanged);
}

void CreateSetupAreaViewData::set_message_channel_menu_string(const QString& value)
{
    publish(this, message_channel_menu_string_, value, &CreateSetupAreaViewData::message_channel_menu_stringChanged);
}

void CreateSetupAreaViewData::set_message_controller_number_code_string(const QString& value)
{
    publish(this, message_controller_number_code_string_, value,
            &CreateSetupAreaViewData::message_controller_number_code_stringChanged);
}

void CreateSetupAreaViewData::updateConfigurationSettings(int at) const
{
    QStringList& settings = configuration.settings;
    if (at >= 0 && at < settings.size())
        settings[at] = message_type_menu_string_;
    else if (at >= settings.size())
        settings.append(message_type_menu_string_);
}

CreateConfigAreaViewData::CreateConfigAreaViewData(int knobIndex, QObject* parent)
    : QObject(parent), id_(QUuid::createUuid()), knob_index_(knobIndex)
{
}

void CreateConfigAreaViewData::setId(const QUuid& id)
{
    id_ = id;
    emit idChanged();
}

void CreateConfigAreaViewData::set_knob_index(int value)
{
    publish(this, knob_index_, value, &CreateConfigAreaViewData::knob_indexChanged);
}

}  // namespace dialcraft
