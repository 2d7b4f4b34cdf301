#include <gtest/gtest.h>

#include <string>

#include "sim_link_fixture.h"

using namespace dialcraft;

using DeviceIdentity = SimLinkTest;

TEST_F(DeviceIdentity, FamilyCodeNamesTheControllerAndItsNumbers)
{
    std::string out = output_of([] { EXPECT_EQ(set_device_name(0x4AC1CC27), midi_no_match); });
    EXPECT_EQ(out,
              "set_device_name 4ac1cc27 \r\n"
              "middle_value 1 \r\n"
              "Generated device_name: 4AC1CC27\n"
              "MIDIGetNumberOfSources 0 \r\n"
              "midi init failed \r\n");
    EXPECT_STREQ(device_name, "4AC1CC27");
    EXPECT_EQ(VID_val, 0x4AC1);
    EXPECT_EQ(PID_val, 0xCC27);
    EXPECT_EQ(VID_PID_val, 0x4AC1CC27u);
}

TEST_F(DeviceIdentity, LowHalfMatchesButHighHalfOutOfRangeLeavesNameEmpty)
{
    std::string out = output_of([] { set_device_name(0x4AD1CC27); });
    EXPECT_EQ(out,
              "set_device_name 4ad1cc27 \r\n"
              "middle_value 1 \r\n"
              "Generated device_name: \n"
              "MIDIGetNumberOfSources 0 \r\n"
              "midi init failed \r\n");
    for (char c : device_name)
        EXPECT_EQ(c, 0);
}

TEST_F(DeviceIdentity, OtherFamilies)
{
    quietly([] { set_device_name(0x16C3C008); });
    EXPECT_STREQ(device_name, "16C3C008");
    EXPECT_EQ(VID_PID_val, 0x16C3C008u);
    quietly([] { set_device_name(0x6085FF04); });
    EXPECT_STREQ(device_name, "6085FF04");
    quietly([] { set_device_name(0x4AC2CC04); });
    EXPECT_STREQ(device_name, "4AC2CC04");
    quietly([] { set_device_name(0x4AC3CC15); });
    EXPECT_STREQ(device_name, "4AC3CC15");
    quietly([] { set_device_name(0x4AC4FF10); });
    EXPECT_STREQ(device_name, "4AC4FF10");
}

TEST_F(DeviceIdentity, SpecialModelIsNamedOnlyAfterTheGeneratedLine)
{
    std::string out = output_of([] { set_device_name(0x44CACC10); });
    EXPECT_EQ(out,
              "set_device_name 44cacc10 \r\n"
              "Generated device_name: \n"
              "MIDIGetNumberOfSources 0 \r\n"
              "midi init failed \r\n");
    EXPECT_STREQ(device_name, "44CACC10");
    EXPECT_EQ(VID_val, 0x44CA);
    EXPECT_EQ(PID_val, 0xCC10);
}

TEST_F(DeviceIdentity, UnknownCodeEmptiesTheNameAndNumbersTakeTheFallbackDigit)
{
    quietly([] { set_device_name(0x4AC1CC27); });
    quietly([] { set_device_name(0x12345678); });
    EXPECT_STREQ(device_name, "");
    // Each of the four characters of an empty name contributes 255 at its shift.
    EXPECT_EQ(VID_val, 0xFFFF);
    EXPECT_EQ(PID_val, 0xFFFF);
    EXPECT_EQ(VID_PID_val, 0xFFFFFFFFu);
}

TEST_F(DeviceIdentity, HexcodeSetterUsesUpperCaseDigits)
{
    std::string out = output_of([] { set_device_name_with_hexcode(0x4ACFCC27); });
    EXPECT_EQ(out,
              "set_device_name 4acfcc27 \r\n"
              "MIDIGetNumberOfSources 0 \r\n"
              "midi init failed \r\n");
    EXPECT_STREQ(device_name, "4ACFCC27");
    EXPECT_EQ(VID_PID_val, 0x4ACFCC27u);

    quietly([] { set_device_name(0x4ACACC27); });
    EXPECT_STREQ(device_name, "4ACACC27");
}

TEST_F(DeviceIdentity, HexcodeSetterDoesNotPadShortCodes)
{
    quietly([] { set_device_name_with_hexcode(0xABC); });
    EXPECT_STREQ(device_name, "ABC");
    for (size_t i = 3; i < sizeof device_name; ++i)
        EXPECT_EQ(device_name[i], 0) << i;
}

TEST_F(DeviceIdentity, CharToHex)
{
    EXPECT_EQ(CharToHex('0'), 0);
    EXPECT_EQ(CharToHex('9'), 9);
    EXPECT_EQ(CharToHex('A'), 10);
    EXPECT_EQ(CharToHex('f'), 15);
    EXPECT_EQ(CharToHex('F'), 15);
    EXPECT_EQ(CharToHex('g'), 255);
    EXPECT_EQ(CharToHex('G'), 255);
    EXPECT_EQ(CharToHex('\0'), 255);
}

TEST_F(DeviceIdentity, JudgeIsZeroWithoutSources)
{
    uint8_t flag = 1;
    quietly([&] { flag = judge_device_connect_state_with_id(0x4AC1CC27); });
    EXPECT_EQ(flag, 0);
}

TEST_F(DeviceIdentity, JudgeSelectsAndReportsAnOnlineController)
{
    plug("4AC1CC27");
    uint8_t flag = 0;
    std::string out = output_of([&] { flag = judge_device_connect_state_with_id(0x4AC1CC27); });
    EXPECT_EQ(flag, 1);
    EXPECT_EQ(out,
              "set_device_name 4ac1cc27 \r\n"
              "MIDIGetNumberOfSources 1 \r\n"
              "midi init success ,number code 0 \r\n"
              "4AC1CC27 MIDI 1 is online\r\n");
    quietly([&] { flag = judge_device_connect_state_with_id(0x4AC2CC27); });
    EXPECT_EQ(flag, 0);
    EXPECT_STREQ(device_name, "4AC2CC27");
}

TEST_F(DeviceIdentity, NameKeepsItsTargetAcrossReopening)
{
    quietly([] { set_device_name(0x4AC5CC27); });
    quietly([] {
        midi_exit();
        midi_init();
    });
    EXPECT_STREQ(device_name, "4AC5CC27");
}
