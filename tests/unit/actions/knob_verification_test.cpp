// Verification by turning: the new setting verifies, the old one is named,
// other controllers and other knobs settle nothing, time runs out.
#include <gtest/gtest.h>

#include "actions/knob_verification.h"

using namespace dialcraft;

namespace {

using Clock = KnobVerification::Clock;
const Clock::time_point t0{};
const QString first = QStringLiteral("4AC1CC27");
const QString second = QStringLiteral("4AC3CC27");

KnobSends cc(int knob, uint8_t channel, uint8_t number)
{
    return KnobSends{knob, MidiKind::control_change, channel, number};
}

MidiMessage cc_message(uint8_t channel, uint8_t number, uint16_t value)
{
    return MidiMessage{MidiKind::control_change, channel, number, value};
}

}  // namespace

TEST(KnobVerificationTest, TheNewSettingVerifiesOnceFromTheSameController)
{
    KnobVerification v;
    v.expect(first, cc(5, 2, 74), std::nullopt, t0);
    EXPECT_TRUE(v.observe(second, cc_message(2, 74, 1), t0).empty());
    EXPECT_TRUE(v.observe(first, cc_message(2, 75, 1), t0).empty());
    const auto outcomes = v.observe(first, cc_message(2, 74, 64), t0 + std::chrono::seconds(59));
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_EQ(outcomes[0].knob, 5);
    EXPECT_EQ(outcomes[0].verdict, VerifyVerdict::verified);
    EXPECT_EQ(v.verified(), 1);
    EXPECT_EQ(v.to_go(), 0);
    EXPECT_TRUE(v.observe(first, cc_message(2, 74, 65), t0).empty());
}

TEST(KnobVerificationTest, TheOldSettingIsNamedAndTheKnobStaysAwaited)
{
    KnobVerification v;
    v.expect(first, cc(5, 2, 74), cc(5, 1, 10), t0);
    const auto old = v.observe(first, cc_message(1, 10, 3), t0);
    ASSERT_EQ(old.size(), 1u);
    EXPECT_EQ(old[0].verdict, VerifyVerdict::old_setting);
    EXPECT_TRUE(v.awaiting(first, 5));
    EXPECT_EQ(v.observe(first, cc_message(2, 74, 3), t0)[0].verdict, VerifyVerdict::verified);
}

TEST(KnobVerificationTest, AnOldSettingEqualToTheNewOneIsNoOldSetting)
{
    KnobVerification v;
    v.expect(first, cc(5, 2, 74), cc(5, 2, 74), t0);
    EXPECT_EQ(v.observe(first, cc_message(2, 74, 3), t0)[0].verdict, VerifyVerdict::verified);
}

TEST(KnobVerificationTest, TimeRunsOutAfterTheWindowAndABatchCounts)
{
    KnobVerification v(std::chrono::seconds(60));
    v.begin_batch();
    v.expect(first, cc(0, 1, 10), std::nullopt, t0);
    v.expect(first, cc(1, 1, 11), std::nullopt, t0 + std::chrono::seconds(1));
    EXPECT_EQ(v.batch_size(), 2);
    EXPECT_EQ(*v.next_deadline(), t0 + std::chrono::seconds(60));
    EXPECT_TRUE(v.expire(t0 + std::chrono::seconds(59)).empty());
    // Too late for knob 0, in time for knob 1.
    const auto late = v.observe(first, cc_message(1, 10, 1), t0 + std::chrono::milliseconds(60'001));
    EXPECT_TRUE(late.empty());
    const auto expired = v.expire(t0 + std::chrono::seconds(60));
    ASSERT_EQ(expired.size(), 1u);
    EXPECT_EQ(expired[0].knob, 0);
    EXPECT_EQ(expired[0].verdict, VerifyVerdict::timed_out);
    EXPECT_EQ(v.observe(first, cc_message(1, 11, 1), t0 + std::chrono::seconds(60))[0].knob, 1);
    EXPECT_EQ(v.verified(), 1);
    EXPECT_EQ(v.to_go(), 0);
    EXPECT_FALSE(v.next_deadline().has_value());
}

TEST(KnobVerificationTest, TwoKnobsWithOneSettingAreBothVerified)
{
    KnobVerification v;
    v.begin_batch();
    v.expect(first, cc(3, 1, 60), std::nullopt, t0);
    v.expect(first, cc(9, 1, 60), std::nullopt, t0);
    const auto outcomes = v.observe(first, cc_message(1, 60, 0), t0);
    ASSERT_EQ(outcomes.size(), 2u);
    EXPECT_EQ(outcomes[0].knob, 3);
    EXPECT_EQ(outcomes[1].knob, 9);
}
