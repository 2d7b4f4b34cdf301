#pragma once
// How apply reads an exported file: by position, as the export wrote it.
// Knob i is lines 3i+1 to 3i+3 (type, channel, controller); an empty line is
// an empty slot, so nothing shifts, and a knob whose channel line is empty is
// one the window never configured. (The window's import drops empty lines
// instead; apply does not follow it there, so that export-then-apply
// programs exactly the knobs that were set.)
#include <QString>

#include <vector>

namespace dialcraft {

class CliConsole;
class GlobalState;

struct ApplyFile {
    std::vector<int> knobs;    // knobs 0 to 26 to program, ascending
    std::vector<int> skipped;  // the others: no programmable type, empty channel, or past the file's end
};

// Fills knobs 0 to 26 of `state` from `text` through the validating copy of
// the slot table, as the window fills its panels, and sorts them into those
// to program and those skipped. Writes a warning to the error stream when
// the file has fewer than 81 lines or a type line of knobs 0 to 26 names no
// message type. Only the process's slot table changes.
ApplyFile read_apply_file(const QString& text, GlobalState& state, CliConsole& console);

}  // namespace dialcraft
