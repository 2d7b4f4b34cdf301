// The layout of the ALSA host's handles: kind, serial, client, port.
#include <gtest/gtest.h>

#include "midi/alsa/object_ref.h"

using namespace dialcraft;

namespace {

TEST(AlsaRef, KindSerialClientAndPortTakeOneByteEachFromTheTop)
{
    EXPECT_EQ(encode_alsa_ref(AlsaRef{AlsaRefKind::source, 0, 20, 0}), 0x04001400u);
    EXPECT_EQ(encode_alsa_ref(AlsaRef{AlsaRefKind::output_port, 0x2B, 128, 3}), 0x022B8003u);
    EXPECT_EQ(encode_alsa_ref(AlsaRef{AlsaRefKind::device, 0, 14, 0}), 0x06000E00u);
}

TEST(AlsaRef, EveryKindRoundTrips)
{
    for (AlsaRefKind kind : {AlsaRefKind::client, AlsaRefKind::output_port, AlsaRefKind::input_port,
                             AlsaRefKind::source, AlsaRefKind::destination, AlsaRefKind::device}) {
        const AlsaRef ref{kind, 0xFE, 191, 253};
        const auto back = decode_alsa_ref(encode_alsa_ref(ref));
        ASSERT_TRUE(back.has_value());
        EXPECT_EQ(*back, ref);
    }
}

TEST(AlsaRef, NoHandleIsNullEvenForTheSystemClientPortZero)
{
    EXPECT_NE(encode_alsa_ref(AlsaRef{AlsaRefKind::client, 0, 0, 0}), 0u);
    EXPECT_NE(encode_alsa_ref(AlsaRef{AlsaRefKind::source, 0, 0, 0}), 0u);
}

TEST(AlsaRef, NullAndUnknownKindsDoNotDecode)
{
    EXPECT_FALSE(decode_alsa_ref(0).has_value());
    EXPECT_FALSE(decode_alsa_ref(0x00001400).has_value());
    EXPECT_FALSE(decode_alsa_ref(0x07001400).has_value());
    EXPECT_FALSE(decode_alsa_ref(0xFF001400).has_value());
}

}  // namespace
