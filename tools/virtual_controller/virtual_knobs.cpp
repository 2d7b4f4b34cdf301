#include "virtual_controller/virtual_knobs.h"

#include <cctype>
#include <cstdio>

namespace dialcraft {

namespace {
constexpr size_t frame_messages = 5;

std::string milliseconds(VirtualKnobs::Clock::duration gap)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", std::chrono::duration<double, std::milli>(gap).count());
    return text;
}
}  // namespace

VirtualKnobs::VirtualKnobs(std::string serial) : serial_(std::move(serial)) {}

std::optional<std::string> VirtualKnobs::receive(const MidiMessage& message, Clock::time_point at)
{
    recent_.push_back(at);
    if (recent_.size() > frame_messages)
        recent_.pop_front();
    const std::optional<KnobSetting> setting = decoder_.push(message);
    if (!setting)
        return std::nullopt;
    knobs_[setting->knob] = *setting;
    // A frame is complete only on five consecutive messages that fit it, so
    // the last five arrivals are the frame's.
    std::string gaps;
    for (size_t i = 1; i < recent_.size(); ++i)
        gaps += (gaps.empty() ? "" : ", ") + milliseconds(recent_[i] - recent_[i - 1]);
    return serial_ + " " + knob_setting_text(*setting) + "; 间隔(gaps) " + gaps + " ms";
}

std::vector<std::string> VirtualKnobs::table() const
{
    if (knobs_.empty())
        return {serial_ + ": 尚未设置旋钮(no knob programmed yet)"};
    std::vector<std::string> lines;
    for (const auto& [knob, setting] : knobs_)
        lines.push_back(serial_ + " " + knob_setting_text(setting));
    return lines;
}

std::variant<MidiMessage, std::string> VirtualKnobs::turn(int knob, int value) const
{
    const auto found = knobs_.find(knob);
    if (found == knobs_.end())
        return "knob " + std::to_string(knob) + " 尚未设置(has not been programmed)";
    const KnobSetting& setting = found->second;
    switch (setting.type_nibble) {
    case 0x8:
    case 0x9:
    case 0xB:
    case 0xE: break;
    default:
        return "knob " + std::to_string(knob) +
               " 没有可发送的消息(has no message to send): " + std::string(knob_type_name(setting.type_nibble));
    }
    return MidiMessage{static_cast<uint8_t>(setting.type_nibble << 4 | (setting.channel - 1)),
                       static_cast<uint8_t>(setting.controller), static_cast<uint8_t>(value)};
}

std::optional<std::string> controller_serial(const std::string& text)
{
    if (text.size() != 8)
        return std::nullopt;
    std::string serial;
    for (char c : text) {
        if (!std::isxdigit(static_cast<unsigned char>(c)))
            return std::nullopt;
        serial.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
    }
    return serial;
}

}  // namespace dialcraft
