#pragma once
// One emulated USB-MIDI controller: a configfs gadget with a single MIDI
// function (one port each way), named like a real controller. Binding it to
// a dummy_udc port plugs it into the VM's own USB host, where snd-usb-audio
// picks it up; unbinding unplugs it.
#include <cstdint>
#include <string>

class UsbGadget {
public:
    // `serial` is the product string the host sees, for example "4AC1CC27".
    UsbGadget(std::string serial, uint16_t vendor, uint16_t product);
    ~UsbGadget();
    UsbGadget(const UsbGadget&) = delete;
    UsbGadget& operator=(const UsbGadget&) = delete;

    // Creates the gadget in configfs. False, with the reason in error(), on failure.
    bool create();
    // Binds to `udc` (for example "dummy_udc.0").
    bool plug(const std::string& udc);
    bool unplug();
    // Unplugs and deletes the gadget from configfs; safe to call twice.
    void remove();

    // The gadget side's raw MIDI device, where the emulator listens.
    std::string rawmidi_device() const;
    const std::string& serial() const { return serial_; }
    const std::string& error() const { return error_; }

private:
    bool write_attribute(const std::string& relative, const std::string& value);
    bool make_dir(const std::string& relative);

    std::string serial_;
    uint16_t vendor_;
    uint16_t product_;
    std::string root_;
    std::string error_;
    bool created_ = false;
    bool plugged_ = false;
};
