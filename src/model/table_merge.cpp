#include "model/table_merge.h"

#include <algorithm>

#include "model/config_file_transfer.h"
#include "model/configuration.h"
#include "model/slot_mapping.h"

namespace dialcraft {

QStringList knob_slots(const QStringList& table, int knob)
{
    QStringList slots_;
    for (qsizetype i = qsizetype(knob) * 3; i < qsizetype(knob) * 3 + 3; ++i)
        slots_.append(i < table.size() ? table[i] : QString());
    return slots_;
}

TableMerge merge_tables(const QStringList& base, const QStringList& theirs, const QStringList& mine,
                        const QSet<int>& edited)
{
    qsizetype length = base.size();
    const bool their_length = theirs.size() != base.size();
    const bool my_length = mine.size() != base.size();
    if (their_length && my_length)
        length = std::max(theirs.size(), mine.size());
    else if (their_length)
        length = theirs.size();
    else if (my_length)
        length = mine.size();

    const qsizetype longest = std::max({base.size(), theirs.size(), mine.size()});
    const int knobs = int((longest + 2) / 3);
    TableMerge merge;
    merge.table.reserve(length);
    for (int knob = 0; knob < knobs; ++knob) {
        const QStringList theirs_knob = knob_slots(theirs, knob);
        const QStringList mine_knob = knob_slots(mine, knob);
        const bool their_change = theirs_knob != knob_slots(base, knob);
        const bool my_change = knob < mapped_knob_count ? edited.contains(knob) : mine_knob != knob_slots(base, knob);
        const bool take = their_change && !my_change;
        if (take)
            merge.taken.append(knob);
        else if (their_change && my_change && theirs_knob != mine_knob)
            merge.conflicts.append(knob);
        const QStringList& from = take ? theirs : mine;
        const QStringList& other = take ? mine : theirs;
        for (qsizetype slot = qsizetype(knob) * 3; slot < qsizetype(knob) * 3 + 3 && slot < length; ++slot) {
            if (slot < from.size())
                merge.table.append(from[slot]);
            else if (slot < other.size())
                merge.table.append(other[slot]);
            else
                merge.table.append(blank_slot);
        }
    }
    return merge;
}

QString kept_values_text(const QStringList& theirs, const QList<int>& knobs)
{
    QStringList table = initialSettings();
    for (int knob : knobs) {
        while (table.size() < qsizetype(knob) * 3 + 3)
            table.append(blank_slot);
        const QStringList values = knob_slots(theirs, knob);
        for (qsizetype i = 0; i < 3; ++i)
            table[qsizetype(knob) * 3 + i] = values[i].isNull() ? blank_slot : values[i];
    }
    return export_text(table);
}

}  // namespace dialcraft
