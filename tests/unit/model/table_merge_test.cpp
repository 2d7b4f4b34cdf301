// The knob-by-knob three-way merge of the stored table and the text of the
// values it keeps aside.
#include <gtest/gtest.h>

#include "qt_printers.h"

#include "model/configuration.h"
#include "model/table_merge.h"

using namespace dialcraft;

namespace {

QStringList table_with(std::initializer_list<std::pair<int, QStringList>> knobs, qsizetype size = 300)
{
    QStringList table(size, blank_slot);
    for (const auto& [knob, values] : knobs)
        for (qsizetype i = 0; i < 3; ++i)
            table[knob * 3 + i] = values[i];
    return table;
}

const QStringList note_on_1_60{"Note On", "1", "60"};
const QStringList cc_2_74{"Control Change", "2", "74"};
const QStringList bend_3_0{"Bend Change", "3", "0"};

}  // namespace

TEST(TableMerge, AKnobChangedOnOneSideTakesThatSide)
{
    const QStringList base = table_with({});
    const QStringList theirs = table_with({{0, note_on_1_60}});
    const QStringList mine = table_with({{4, cc_2_74}});
    const TableMerge merge = merge_tables(base, theirs, mine, {4});
    EXPECT_EQ(merge.table, table_with({{0, note_on_1_60}, {4, cc_2_74}}));
    EXPECT_EQ(merge.taken, QList<int>{0});
    EXPECT_TRUE(merge.conflicts.isEmpty());
}

TEST(TableMerge, AKnobChangedOnBothSidesKeepsTheWindowsValueAndNamesIt)
{
    const QStringList base = table_with({});
    const QStringList theirs = table_with({{5, note_on_1_60}, {6, bend_3_0}});
    const QStringList mine = table_with({{5, cc_2_74}, {6, bend_3_0}});
    const TableMerge merge = merge_tables(base, theirs, mine, {5, 6});
    EXPECT_EQ(merge.table, table_with({{5, cc_2_74}, {6, bend_3_0}}));
    // Knob 6 got the same value on both sides: nothing to keep aside.
    EXPECT_EQ(merge.conflicts, QList<int>{5});
    EXPECT_TRUE(merge.taken.isEmpty());
}

TEST(TableMerge, PanelsThatOnlyShowCheckedValuesAreNoEdit)
{
    // The window shows a blank stored knob as the placeholder with an empty
    // channel: different slots, but not an edit of the user's.
    const QStringList base = table_with({});
    const QStringList theirs = table_with({{1, cc_2_74}});
    const QStringList mine = table_with({{1, {"选择消息类型", "", "127"}}});
    const TableMerge merge = merge_tables(base, theirs, mine, {});
    EXPECT_EQ(merge.table, theirs);
    EXPECT_EQ(merge.taken, QList<int>{1});
}

TEST(TableMerge, KnobsWithoutAPanelCompareTheirSlots)
{
    const QStringList base = table_with({});
    const QStringList theirs = table_with({{40, note_on_1_60}, {41, note_on_1_60}});
    const QStringList mine = table_with({{41, cc_2_74}, {42, bend_3_0}});
    const TableMerge merge = merge_tables(base, theirs, mine, {});
    EXPECT_EQ(merge.table, table_with({{40, note_on_1_60}, {41, cc_2_74}, {42, bend_3_0}}));
    EXPECT_EQ(merge.taken, QList<int>{40});
    EXPECT_EQ(merge.conflicts, QList<int>{41});
}

TEST(TableMerge, TheLengthFollowsTheSideThatChangedIt)
{
    const QStringList base = table_with({});
    EXPECT_EQ(merge_tables(base, table_with({}, 312), base, {}).table.size(), 312);
    EXPECT_EQ(merge_tables(base, base, table_with({}, 330), {}).table.size(), 330);
    EXPECT_EQ(merge_tables(base, table_with({}, 312), table_with({}, 306), {}).table.size(), 312);
    // A table longer on their side brings its knobs along.
    QStringList longer = table_with({}, 303);
    longer[300] = "Note On";
    EXPECT_EQ(merge_tables(base, longer, base, {}).table[300], "Note On");
}

TEST(TableMerge, NothingChangedGivesTheWindowsTable)
{
    const QStringList base = table_with({{2, cc_2_74}});
    const QStringList mine = table_with({{2, cc_2_74}, {3, note_on_1_60}});
    const TableMerge merge = merge_tables(base, base, mine, {3});
    EXPECT_EQ(merge.table, mine);
    EXPECT_TRUE(merge.taken.isEmpty());
    EXPECT_TRUE(merge.conflicts.isEmpty());
}

TEST(TableMerge, KeptValuesAreAnExportOfThoseKnobsOnly)
{
    const QStringList theirs = table_with({{0, {"选择消息类型", "", "127"}}, {2, note_on_1_60}, {3, cc_2_74}});
    QStringList expected(90, blank_slot);
    expected[0] = "Control Change";  // the export's name for the placeholder
    expected[1] = "";
    expected[2] = "127";
    expected[6] = "Note On";
    expected[7] = "1";
    expected[8] = "60";
    EXPECT_EQ(kept_values_text(theirs, {0, 2}), expected.join('\n'));
    // A knob past knob 29 lengthens the file to reach it.
    EXPECT_EQ(kept_values_text(table_with({{35, bend_3_0}}), {35}).split('\n').size(), 108);
}
