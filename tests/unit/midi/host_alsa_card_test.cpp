// Model and manufacturer of a sequencer client taken from its sound card.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "midi/alsa/card_names.h"

using namespace dialcraft;

namespace {

TEST(UsbManufacturer, IsTheTextBeforeTheCardNameInAUsbLongName)
{
    EXPECT_EQ(usb_manufacturer_from_long_name("dialcraft test 4AC1CC27 at usb-dummy_hcd.0-1, high speed", "4AC1CC27"),
              "dialcraft test");
    EXPECT_EQ(usb_manufacturer_from_long_name("Maker 4AC1CC27 at usb-0000:00:14.0-2, full speed", "4AC1CC27"), "Maker");
}

TEST(UsbManufacturer, IsEmptyWhenTheDeviceGaveNone)
{
    EXPECT_EQ(usb_manufacturer_from_long_name("4AC1CC27 at usb-dummy_hcd.0-1, high speed", "4AC1CC27"), "");
}

TEST(UsbManufacturer, IsEmptyForCardsThatAreNotUsb)
{
    EXPECT_EQ(usb_manufacturer_from_long_name("HDA Intel PCH at 0xf7f10000 irq 32", "HDA Intel PCH"), "");
    EXPECT_EQ(usb_manufacturer_from_long_name("Dummy 1", "Dummy"), "");
    EXPECT_EQ(usb_manufacturer_from_long_name("", "4AC1CC27"), "");
}

TEST(UsbManufacturer, NeedsTheWholeCardNameBeforeAt)
{
    // "CC27" alone is the tail of another word, not the card name.
    EXPECT_EQ(usb_manufacturer_from_long_name("Maker 4AC1CC27 at usb-dummy_hcd.0-1", "CC27"), "");
    // A manufacturer may itself contain the card name.
    EXPECT_EQ(usb_manufacturer_from_long_name("4AC1CC27 Labs 4AC1CC27 at usb-dummy_hcd.0-1", "4AC1CC27"),
              "4AC1CC27 Labs");
}

TEST(AlsaCardNames, NegativeCardIsRefused)
{
    AlsaCardNames names{"old", "old long"};
    EXPECT_EQ(read_alsa_card_names(-1, &names), -EINVAL);
    EXPECT_EQ(names.name, "old");
    EXPECT_EQ(names.long_name, "old long");
}

TEST(AlsaCardNames, MissingCardFailsAndLeavesTheNames)
{
    if (std::filesystem::exists("/dev/snd/controlC0"))
        GTEST_SKIP() << "card 0 exists on this machine";
    AlsaCardNames names{"old", "old long"};
    EXPECT_LT(read_alsa_card_names(0, &names), 0);
    EXPECT_EQ(names.name, "old");
    EXPECT_EQ(names.long_name, "old long");
}

}  // namespace
