// Turns a device code into the target name and connects the matching source.
#include <cstdio>
#include <cstring>

#include "base/console.h"
#include "midi/link_properties.h"
#include "midi/midi_link.h"

namespace dialcraft {

char device_name[24];
uint16_t VID_val;
uint16_t PID_val;
uint32_t VID_PID_val;
uint8_t realtime_connect_state_flag;

namespace {

struct ModelFamily {
    uint32_t low;
    uint32_t high_at_least;
    uint32_t high_below;
    const char* name_template;  // "%X" takes the middle nibble
};

constexpr ModelFamily model_families[] = {
    {0xCC04, 0x4AC0, 0x4AD0, "4AC%XCC04"}, {0xCC15, 0x4AC0, 0x4AD0, "4AC%XCC15"}, {0xCC27, 0x4AC0, 0x4AD0, "4AC%XCC27"},
    {0xFF10, 0x4AC0, 0x4AD0, "4AC%XFF10"}, {0xC008, 0x16C0, 0x16D0, "16C%XC008"}, {0xFF04, 0x6080, 0x6090, "608%XFF04"},
};

// A model of its own whose low half fits no family row.
constexpr uint32_t special_model_code = 0x44CACC10;

}  // namespace

uint32_t set_device_name(uint32_t code)
{
    console_printf("set_device_name %x \r\n", code);
    std::memset(device_name, 0, sizeof device_name);
    const uint32_t high = code >> 16;
    const uint32_t nibble = high & 0xF;
    const uint32_t low = code & 0xFFFF;
    // Every row is tested on its own; at most one low value can match.
    for (const ModelFamily& family : model_families) {
        if (low != family.low)
            continue;
        console_printf("middle_value %x \r\n", nibble);
        if (high >= family.high_at_least && high < family.high_below)
            std::snprintf(device_name, sizeof device_name, family.name_template, nibble);
    }
    console_printf("Generated device_name: %s\n", device_name);
    if (code == special_model_code)
        std::memcpy(device_name, "44CACC10", 8);
    device_name[8] = 0;
    set_usb_id();
    return midi_source_connect();
}

void set_device_name_with_hexcode(uint32_t code)
{
    console_printf("set_device_name %x \r\n", code);
    std::memset(device_name, 0, sizeof device_name);
    // No zero padding: a code below 0x10000000 gives a shorter name.
    char scratch[9] = {};
    std::snprintf(scratch, sizeof scratch, "%X", code);
    std::memcpy(device_name, scratch, 8);
    device_name[8] = 0;
    set_usb_id();
    midi_source_connect();
}

uint8_t judge_device_connect_state_with_id(uint32_t code)
{
    set_device_name_with_hexcode(code);
    return realtime_connect_state_flag;
}

void set_usb_id()
{
    auto hex4 = [](const char* c) {
        return static_cast<uint16_t>(CharToHex(c[0]) << 12 | CharToHex(c[1]) << 8 | CharToHex(c[2]) << 4 |
                                     CharToHex(c[3]));
    };
    VID_val = hex4(device_name);
    PID_val = hex4(device_name + 4);
    VID_PID_val = static_cast<uint32_t>(VID_val) << 16 | PID_val;
}

uint8_t CharToHex(char c)
{
    if (c >= '0' && c <= '9')
        return static_cast<uint8_t>(c - '0');
    if (c >= 'A' && c <= 'F')
        return static_cast<uint8_t>(c - 'A' + 10);
    if (c >= 'a' && c <= 'f')
        return static_cast<uint8_t>(c - 'a' + 10);
    return 255;
}

bool matches_device_name(const char* text)
{
    int equal = 0;
    for (int k = 0; k < 8; ++k)
        equal += text[k] == device_name[k];
    return equal == 8;
}

}  // namespace dialcraft
