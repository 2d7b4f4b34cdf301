#include <gtest/gtest.h>

#include <string>

#include "actions/knob_parameter_check.h"
#include "console_capture.h"
#include "model/global_state.h"

using namespace dialcraft;

namespace {

struct CheckRun {
    bool passed;
    std::string out;
    QString fullText;
};

CheckRun check(const QString& type, const QString& channel, const QString& controller)
{
    GlobalState state;
    CreateSetupAreaViewData* knob = state.record(4);
    knob->set_message_type_menu_string(type);
    knob->set_message_channel_menu_string(channel);
    knob->set_message_controller_number_code_string(controller);
    state.setFullText("before");
    ConsoleCapture capture;
    const bool passed = check_knob_parameters(*knob, state);
    return {passed, capture.finish(), state.fullText()};
}

const QString type_message = QStringLiteral("参数错误-消息类型\n请下拉选择正确参数如Control Change\nNote On\n...");

}  // namespace

TEST(KnobParameterCheck, AllValidPrintsOkLinesAndLeavesFullText)
{
    CheckRun r = check("Control Change", "2", "74");
    EXPECT_TRUE(r.passed);
    EXPECT_EQ(r.out, "MIDI通道 ok\n控制器号 ok\n消息类型 ok\n参数正确\n");
    EXPECT_EQ(r.fullText, "before");
}

TEST(KnobParameterCheck, ControllerErrorWinsOverChannelError)
{
    CheckRun r = check("Note On", "0", "200");
    EXPECT_FALSE(r.passed);
    EXPECT_EQ(r.out, "消息类型 ok\n");
    EXPECT_EQ(r.fullText, "参数错误-控制器号\n范围0~127");
}

TEST(KnobParameterCheck, ChannelErrorAlone)
{
    CheckRun r = check("Bend Change", "17", "0");
    EXPECT_FALSE(r.passed);
    EXPECT_EQ(r.out, "控制器号 ok\n消息类型 ok\n");
    EXPECT_EQ(r.fullText, "参数错误-MIDI通道\n范围1~16");
}

TEST(KnobParameterCheck, TypeErrorWinsOverEverything)
{
    CheckRun r = check("选择消息类型", "", "x");
    EXPECT_FALSE(r.passed);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.fullText, type_message);
}

TEST(KnobParameterCheck, SystemChangeIsNotAValidType)
{
    CheckRun r = check("System Change", "1", "1");
    EXPECT_FALSE(r.passed);
    EXPECT_EQ(r.out, "MIDI通道 ok\n控制器号 ok\n");
    EXPECT_EQ(r.fullText, type_message);
}

TEST(KnobParameterCheck, TypeIsComparedWholeAndCaseSensitively)
{
    EXPECT_FALSE(check("note on", "1", "1").passed);
    EXPECT_FALSE(check("Note On ", "1", "1").passed);
    EXPECT_TRUE(check("Note Off", "1", "1").passed);
}
