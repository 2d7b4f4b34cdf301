#include "usb_gadget.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {
const char* const gadget_base = "/sys/kernel/config/usb_gadget/";

std::string hex4(uint16_t value)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%04X", value);
    return text;
}
}  // namespace

UsbGadget::UsbGadget(std::string serial, uint16_t vendor, uint16_t product)
    : serial_(std::move(serial)),
      vendor_(vendor),
      product_(product),
      root_(std::string(gadget_base) + "dialcraft-" + serial_)
{
}

UsbGadget::~UsbGadget()
{
    remove();
}

std::string UsbGadget::rawmidi_device() const
{
    // The MIDI function's sound card carries the id given in create().
    return "hw:G" + serial_ + ",0";
}

bool UsbGadget::write_attribute(const std::string& relative, const std::string& value)
{
    std::string path = root_ + "/" + relative;
    int fd = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) {
        error_ = "open " + path + ": " + std::strerror(errno);
        return false;
    }
    ssize_t n = write(fd, value.data(), value.size());
    int write_errno = errno;
    close(fd);
    if (n != static_cast<ssize_t>(value.size())) {
        error_ = "write '" + value + "' to " + path + ": " + std::strerror(n < 0 ? write_errno : EIO);
        return false;
    }
    return true;
}

bool UsbGadget::make_dir(const std::string& relative)
{
    std::string path = relative.empty() ? root_ : root_ + "/" + relative;
    if (mkdir(path.c_str(), 0755) != 0 && errno != EEXIST) {
        error_ = "mkdir " + path + ": " + std::strerror(errno);
        return false;
    }
    return true;
}

bool UsbGadget::create()
{
    created_ = true;
    const std::string function = "functions/midi.usb0";
    if (!make_dir("") || !write_attribute("idVendor", hex4(vendor_)) || !write_attribute("idProduct", hex4(product_)) ||
        !make_dir("strings/0x409") || !write_attribute("strings/0x409/product", serial_) ||
        !write_attribute("strings/0x409/manufacturer", "dialcraft test bed") ||
        !write_attribute("strings/0x409/serialnumber", serial_) || !make_dir("configs/c.1") || !make_dir(function) ||
        !write_attribute(function + "/id", "G" + serial_) || !write_attribute(function + "/in_ports", "1") ||
        !write_attribute(function + "/out_ports", "1"))
        return false;
    std::string link = root_ + "/configs/c.1/midi.usb0";
    if (symlink((root_ + "/" + function).c_str(), link.c_str()) != 0 && errno != EEXIST) {
        error_ = "link " + link + ": " + std::strerror(errno);
        return false;
    }
    return true;
}

bool UsbGadget::plug(const std::string& udc)
{
    if (!write_attribute("UDC", udc))
        return false;
    plugged_ = true;
    return true;
}

bool UsbGadget::unplug()
{
    if (!write_attribute("UDC", "\n"))
        return false;
    plugged_ = false;
    return true;
}

void UsbGadget::remove()
{
    if (!created_)
        return;
    if (plugged_)
        unplug();
    // configfs wants its items taken apart in reverse order of creation.
    unlink((root_ + "/configs/c.1/midi.usb0").c_str());
    rmdir((root_ + "/configs/c.1").c_str());
    rmdir((root_ + "/functions/midi.usb0").c_str());
    rmdir((root_ + "/strings/0x409").c_str());
    rmdir(root_.c_str());
    created_ = false;
}
