#include "model/ledger_json.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

#include "model/vocabulary.h"

namespace dialcraft {

namespace {

using nlohmann::json;

constexpr int ledger_version = 1;

// Stops decoding with the reason.
[[noreturn]] void unreadable(const std::string& reason)
{
    throw std::runtime_error(reason);
}

int integer_in(const json& entry, const char* field, int low, int high)
{
    const auto value = entry.find(field);
    if (value == entry.end() || !value->is_number_integer())
        unreadable(std::string(field) + " is not an integer");
    const auto number = value->get<int64_t>();
    if (number < low || number > high)
        unreadable(std::string(field) + " is out of range");
    return static_cast<int>(number);
}

QString text_of(const json& entry, const char* field)
{
    const auto value = entry.find(field);
    if (value == entry.end() || !value->is_string())
        unreadable(std::string(field) + " is not a text");
    return QString::fromStdString(value->get<std::string>());
}

HeldKnobs decode_knobs(const json& knobs)
{
    if (!knobs.is_array())
        unreadable("a controller's knobs are not a list");
    HeldKnobs held;
    for (const json& entry : knobs) {
        if (!entry.is_object())
            unreadable("a knob is not an object");
        const int knob = integer_in(entry, "knob", 0, 255);
        HeldSetting setting;
        setting.type = text_of(entry, "type");
        if (!is_programmable_type(setting.type))
            unreadable("knob " + std::to_string(knob) + " has no programmable type");
        setting.channel = integer_in(entry, "channel", 1, 16);
        setting.controller = integer_in(entry, "controller", 0, 127);
        setting.written = QDateTime::fromString(text_of(entry, "written"), Qt::ISODate);
        if (!setting.written.isValid())
            unreadable("knob " + std::to_string(knob) + " has no valid time");
        setting.written = setting.written.toUTC();
        if (entry.contains("verified")) {
            setting.verified = QDateTime::fromString(text_of(entry, "verified"), Qt::ISODate);
            if (!setting.verified.isValid())
                unreadable("knob " + std::to_string(knob) + " has no valid verification time");
            setting.verified = setting.verified.toUTC();
        }
        if (!held.emplace(knob, setting).second)
            unreadable("knob " + std::to_string(knob) + " is listed twice");
    }
    return held;
}

}  // namespace

QByteArray encode_ledger(const ControllerLedger& ledger)
{
    json controllers = json::object();
    for (const auto& [serial, knobs] : ledger.controllers) {
        json list = json::array();
        for (const auto& [knob, setting] : knobs) {
            json entry = {{"knob", knob},
                          {"type", setting.type.toStdString()},
                          {"channel", setting.channel},
                          {"controller", setting.controller},
                          {"written", setting.written.toUTC().toString(Qt::ISODate).toStdString()}};
            if (setting.verified.isValid())
                entry["verified"] = setting.verified.toUTC().toString(Qt::ISODate).toStdString();
            list.push_back(std::move(entry));
        }
        controllers[serial.toStdString()] = std::move(list);
    }
    const json document = {{"version", ledger_version}, {"controllers", std::move(controllers)}};
    return QByteArray::fromStdString(document.dump(2) + "\n");
}

std::optional<ControllerLedger> decode_ledger(const QByteArray& bytes, QString* error)
{
    try {
        const json document = json::parse(bytes.begin(), bytes.end());
        if (!document.is_object())
            unreadable("not a JSON object");
        if (integer_in(document, "version", ledger_version, ledger_version) != ledger_version)
            unreadable("unknown version");
        const auto controllers = document.find("controllers");
        if (controllers == document.end() || !controllers->is_object())
            unreadable("no controllers");
        ControllerLedger ledger;
        for (const auto& [serial, knobs] : controllers->items()) {
            if (!machine_type_array().contains(QString::fromStdString(serial)))
                unreadable("\"" + serial + "\" is not a serial of the family");
            ledger.controllers[QString::fromStdString(serial)] = decode_knobs(knobs);
        }
        return ledger;
    } catch (const std::exception& failure) {
        if (error)
            *error = QString::fromUtf8(failure.what());
        return std::nullopt;
    }
}

}  // namespace dialcraft
