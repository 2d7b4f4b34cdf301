#pragma once
// How apply and import read an exported file: by position, as the export
// wrote it.
// Knob i is lines 3i+1 to 3i+3 (type, channel, controller); an empty line is
// an empty slot, so nothing shifts, and a knob whose channel line is empty is
// one the window never configured. (The window's import drops empty lines
// instead; apply does not follow it there, so that export-then-apply
// programs exactly the knobs that were set.)
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace dialcraft {

class CliConsole;
class GlobalState;

struct ApplyFile {
    std::vector<int> knobs;    // knobs 0 to 26 to program, ascending
    std::vector<int> skipped;  // the others: no programmable type, empty channel, or past the file's end
};

// The file's lines, by position: a line feed ends a line (a carriage return
// before it belongs to the line end) and an empty line is an empty slot.
// Writes "dialcraft-cli <command>: 警告(warning): ..." to the error stream
// when the file has fewer than 81 lines or a type line of knobs 0 to 26 names
// no message type: signs of a file that did not come from an export.
QStringList read_positional_lines(const QString& text, CliConsole& console, const std::string& command);

// The slot table `lines` give, knob by knob: knobs 0 to 26 whose channel line
// is empty (what the export writes for a knob never configured) are blank
// slots, as in a fresh table; every other line is kept as it is; at least
// 300 slots.
QStringList positional_table(const QStringList& lines);

// Fills knobs 0 to 26 of `state` from `text` through the validating copy of
// the slot table, as the window fills its panels, and sorts them into those
// to program and those skipped. Writes a warning to the error stream when
// the file has fewer than 81 lines or a type line of knobs 0 to 26 names no
// message type. Only the process's slot table changes.
ApplyFile read_apply_file(const QString& text, GlobalState& state, CliConsole& console);

}  // namespace dialcraft
