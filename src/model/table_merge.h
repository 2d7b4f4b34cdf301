#pragma once
// The knob-by-knob three-way merge of the stored table, for a window whose
// table another program changed: the table the window last loaded or took
// (base), the store as it is now (theirs) and the window's own table (mine).
// A knob changed on one side only takes that side's value; a knob changed on
// both sides to different values keeps the window's value, and the other
// side's value is handed back to be kept in a file. A knob is its three slots
// (type, channel, controller number) taken together.
#include <QList>
#include <QSet>
#include <QStringList>

namespace dialcraft {

struct TableMerge {
    QStringList table;
    // Knobs that took the other side's value (changed there only).
    QList<int> taken;
    // Knobs changed on both sides to different values; `table` holds the
    // window's value.
    QList<int> conflicts;
};

// `edited`: which of knobs 0 to 26 the window changed since `base`. Those are
// decided from its panels, which show checked values (a stored value that
// fails the check is shown cleared), so they cannot be compared with `base`
// slot by slot. Knobs from 27 on, which have no panel, count as changed when
// their slots in `mine` differ from `base`. The table's length follows the
// side that changed it (both: the longer).
TableMerge merge_tables(const QStringList& base, const QStringList& theirs, const QStringList& mine,
                        const QSet<int>& edited);

// Knob `knob`'s three slots of `table`; slots past the end are null.
QStringList knob_slots(const QStringList& table, int knob);

// The export-format text of the other side's values of `knobs`, every other
// knob of 0 to 29 a blank slot (as `export --controller` writes a knob never
// written): `apply` programs exactly those knobs, `import` stores them.
QString kept_values_text(const QStringList& theirs, const QList<int>& knobs);

}  // namespace dialcraft
