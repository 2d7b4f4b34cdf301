// How an imported text is cut into slots, and what the cutting reports.
#include <gtest/gtest.h>

#include "qt_printers.h"

#include "model/document_slots.h"

using namespace dialcraft;

TEST(DocumentSlotsTest, PiecesBetweenLineFeedsWithoutTheEmptyOnes)
{
    const DocumentSlots cut = split_document_slots(QStringLiteral("\na\n\n\nb\nc\n\n"));
    EXPECT_EQ(cut.pieces, (QStringList{"a", "b", "c"}));
    // Lines 1, 3 and 4 moved later slots up; the empty line 7 at the end did not.
    EXPECT_EQ(cut.shifting_empty_lines, (QList<qsizetype>{1, 3, 4}));
    EXPECT_FALSE(cut.has_cr_lf);
}

TEST(DocumentSlotsTest, TextWithoutEmptyLinesShiftsNothing)
{
    const DocumentSlots cut = split_document_slots(QStringLiteral("Note On\n1\n60\n"));
    EXPECT_EQ(cut.pieces, (QStringList{"Note On", "1", "60"}));
    EXPECT_TRUE(cut.shifting_empty_lines.isEmpty());
}

TEST(DocumentSlotsTest, CrLfDoesNotCutAndIsReported)
{
    const DocumentSlots cut = split_document_slots(QStringLiteral("a\r\nb\nc\rd"));
    EXPECT_EQ(cut.pieces, (QStringList{"a\r\nb", "c\rd"}));
    EXPECT_TRUE(cut.has_cr_lf);
}

TEST(DocumentSlotsTest, EmptyTextAndOnlyLineFeedsGiveNoPiece)
{
    EXPECT_TRUE(split_document_slots(QString()).pieces.isEmpty());
    const DocumentSlots cut = split_document_slots(QStringLiteral("\n\n"));
    EXPECT_TRUE(cut.pieces.isEmpty());
    EXPECT_TRUE(cut.shifting_empty_lines.isEmpty());
}
