#include "actions/set_action.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdint>

#include "actions/knob_parameter_check.h"
#include "base/console.h"
#include "base/fatal_error.h"
#include "base/integer_text.h"
#include "midi/midi_link.h"
#include "model/global_state.h"
#include "model/handover.h"
#include "model/print_line.h"
#include "model/vocabulary.h"

namespace dialcraft {

namespace {

constexpr int family_size = 16;

// Serial "4AC%XCC27" of candidate i, read as a hexadecimal device code.
uint32_t candidate_code(int i)
{
    return 0x4AC0CC27u + (static_cast<uint32_t>(i) << 16);
}

QString own_program_path()
{
    if (QCoreApplication::instance())
        return QCoreApplication::applicationFilePath();
    return QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
}

// Lower-case hexadecimal, at least two digits.
QString two_hex_digits(qint64 value)
{
    QString text = QString::number(value, 16);
    return text.size() == 1 ? "0" + text : text;
}

template <typename T>
T unwrap(std::optional<T> value)
{
    if (!value)
        fatal_error(unwrap_nil_message);
    return *value;
}

// Probes the sixteen serials; exactly one answer selects that controller and
// switches the model menu to it, otherwise the menu's serial decides.
void choose_controller(GlobalState& globalState)
{
    ClearDeviceMathingRetval();
    uint32_t device_connect_id_arg = 0xFFFFFFFF;
    for (int i = 0; i < family_size; ++i) {
        device_connect_id_arg = candidate_code(i);
        device_connect_state_retval[static_cast<size_t>(i)] = judge_device_connect_state_with_id(device_connect_id_arg);
        print_line(QString::asprintf("i = 0x%02X, device_connect_id_arg = 0x%08X", i, device_connect_id_arg));
    }
    unsigned answered = 0;
    for (int i = 0; i < family_size; ++i) {
        answered += device_connect_state_retval[static_cast<size_t>(i)];
        if (answered > UINT8_MAX)
            fatal_error("Arithmetic overflow");
    }

    if (answered == 1) {
        for (int i = 0; i < family_size; ++i) {
            if (device_connect_state_retval[static_cast<size_t>(i)] != 1)
                continue;
            const uint32_t code = candidate_code(i);
            set_device_name(code);
            globalState.set_machine_type_menu_string(QString::asprintf("4AC%XCC27", i));
            print_line(QString::asprintf("-%X--set_device_name(0x%08X);", i, code));
            break;
        }
        return;
    }

    const QString serial = globalState.machine_type_menu_string();
    if (!serial.startsWith(QLatin1String("4AC")) || !serial.endsWith(QLatin1String("CC27"))) {
        print_line(QStringLiteral("Error: Invalid machine type selected"));
        return;
    }
    // "4ACC27" carries both affixes, overlapping: its middle would end before it starts.
    if (serial.size() < 7)
        fatal_error(bad_range_message);
    const auto middle = parse_uint32(serial.mid(3, serial.size() - 7).toStdString(), 16);
    if (!middle || *middle > 15) {
        print_line(QStringLiteral("Error: Invalid middle hex value in machine type"));
        return;
    }
    const uint32_t code = 0x4Au << 24 | (*middle + 0xC0) << 16 | 0xCC27;
    set_device_name(code);
    print_line("User selected: " + globalState.machine_type_menu_string());
    print_line(QString::asprintf("set_device_name(0x%08X);", code));
}

void print_summary(const CreateSetupAreaViewData& data)
{
    print_line(QStringLiteral("--------------------------"));
    print_line("硬件索引 : " + QString::number(data.knob_index()));
    print_line("消息类型 : " + data.message_type_menu_string());
    print_line("MIDI通道 : " + data.message_channel_menu_string());
    print_line("控制器号 : " + data.message_controller_number_code_string());
    print_line(QStringLiteral("--------------------------"));
}

// The status nibble of the knob's type, printing the type's word.
QString type_nibble(const QString& type)
{
    struct Row {
        const QString& name;
        const char* word;
        const char* nibble;
    };
    const Row rows[] = {{NOTE_ON, "NOTE_ON", "9"},
                        {NOTE_OFF, "NOTE_OFF", "8"},
                        {CONTROL_CHANGE, "CONTROL_CHANGE", "B"},
                        {BEND_CHANGE, "BEND_CHANGE", "E"}};
    for (const Row& row : rows) {
        if (type == row.name) {
            console_line(row.word);
            return row.nibble;
        }
    }
    console_line("default");
    return QStringLiteral("B");
}

// Stages the four arguments of the programming entry through their
// hexadecimal texts.
void stage_bytes(const CreateSetupAreaViewData& data)
{
    const int64_t controller = unwrap(parse_int64(data.message_controller_number_code_string().toStdString(), 10));
    const QString controller_text = two_hex_digits(controller);
    const int64_t channel = unwrap(parse_int64(data.message_channel_menu_string().toStdString(), 10));
    const QString channel_text = QString::number(channel - 1, 16);
    const QString nibble = type_nibble(data.message_type_menu_string());
    const QString knob_text = two_hex_digits(data.knob_index());

    c_arg_transfer_UInt8_1 = unwrap(parse_uint8(knob_text.toStdString(), 16));
    if (const auto type_channel = parse_int64((nibble + channel_text).toStdString(), 16)) {
        if (*type_channel < 0 || *type_channel > UINT8_MAX)
            fatal_error(unwrap_nil_message);
        c_arg_transfer_UInt8_2 = static_cast<uint8_t>(*type_channel);
    }
    c_arg_transfer_UInt8_3 = unwrap(parse_uint8(controller_text.toStdString(), 16));
    c_arg_transfer_UInt8_4 = unwrap(parse_uint8(controller_text.toStdString(), 16));
}

}  // namespace

void ClearDeviceMathingRetval()
{
    device_connect_state_retval.assign(device_connect_state_retval.size(), 0);
}

void setup_button_action(CreateSetupAreaViewData& data, GlobalState& globalState)
{
    choose_controller(globalState);
    print_summary(data);
    if (!check_knob_parameters(data, globalState))
        return;

    const QString knob = QString::number(data.knob_index());
    globalState.setFullText("单个设置:\n对" + knob + "号旋钮" + "进行设置");
    const QString path = own_program_path();
    if (path.size() < 14)
        fatal_error(bad_range_message);
    ShellCommandPath = path.left(path.size() - 14);

    stage_bytes(data);
    command_setup_succeed_flag = usb_midi_main(static_cast<int8_t>(c_arg_transfer_UInt8_1),
                                               static_cast<int8_t>(c_arg_transfer_UInt8_2),
                                               static_cast<int8_t>(c_arg_transfer_UInt8_3),
                                               static_cast<int8_t>(c_arg_transfer_UInt8_4));

    print_line(QString::number(command_setup_succeed_flag));
    if (command_setup_succeed_flag == 0)
        globalState.setFullText("旋钮" + knob + "-设置成功!");
    else
        globalState.setFullText("旋钮" + knob + "-设置失败..\n" + globalState.machine_type_menu_string());
}

}  // namespace dialcraft
