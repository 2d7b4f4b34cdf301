#include "cli/apply_file.h"

#include <QStringList>

#include <string>

#include "cli/cli_console.h"
#include "model/configuration.h"
#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/slot_mapping.h"
#include "model/vocabulary.h"

namespace dialcraft {

namespace {

constexpr qsizetype mapped_lines = mapped_knob_count * 3;
constexpr size_t lines_named = 10;

// The file's lines; the line feed after the last one ends it and starts no
// line of its own. A carriage return before a line feed belongs to the line
// end, so files written with CR LF read the same.
QStringList file_lines(const QString& text)
{
    QStringList lines = text.split(u'\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (QString& line : lines)
        if (line.endsWith(u'\r'))
            line.chop(1);
    return lines;
}

// A type line that is neither blank nor any name the window writes there.
bool names_no_type(const QString& line)
{
    return !line.trimmed().isEmpty() && !is_programmable_type(line) && line != SYSTEM_CHANGE &&
           line != Default_TYPE_STRING;
}

std::string line_list(const std::vector<qsizetype>& lines)
{
    std::string text;
    for (size_t i = 0; i < lines.size() && i < lines_named; ++i)
        text += (text.empty() ? "" : ", ") + std::to_string(lines[i]);
    if (lines.size() > lines_named)
        text += ", ...";
    return text;
}

}  // namespace

QStringList read_positional_lines(const QString& text, CliConsole& console, const std::string& command)
{
    const std::string warning = "dialcraft-cli " + command + ": 警告(warning): ";
    const QStringList lines = file_lines(text);
    if (lines.size() < mapped_lines)
        console.error_text(warning + "文件只有 " + std::to_string(lines.size()) +
                           " 行, 少于旋钮 0-26 的 81 行; 缺少的旋钮跳过(the file has only " +
                           std::to_string(lines.size()) +
                           " lines, fewer than the 81 of knobs 0-26; the knobs it lacks are skipped)\n");

    std::vector<qsizetype> typeless;
    for (qsizetype line = 0; line < mapped_lines && line < lines.size(); line += 3)
        if (names_no_type(lines[line]))
            typeless.push_back(line + 1);
    if (!typeless.empty())
        console.error_text(warning + "类型行不是消息类型, 这些旋钮跳过(type lines that name no message type; " +
                           "those knobs are skipped): 第(line) " + line_list(typeless) + "\n");
    return lines;
}

QStringList positional_table(const QStringList& lines)
{
    QStringList table = lines;
    pad_to_300_slots(table);
    for (int knob = 0; knob < mapped_knob_count; ++knob) {
        const qsizetype first = knob * 3;
        if (!table[first + 1].trimmed().isEmpty())
            continue;
        for (qsizetype slot = first; slot < first + 3; ++slot)
            table[slot] = initialSettings()[slot];
    }
    return table;
}

ApplyFile read_apply_file(const QString& text, GlobalState& state, CliConsole& console)
{
    const QStringList lines = read_positional_lines(text, console, "apply");
    configuration.settings = lines;
    pad_to_300_slots(configuration.settings);
    ApplyFile file;
    for (int knob = 0; knob < mapped_knob_count; ++knob) {
        SetupAreaData_index_config_to_UI(state, knob, SlotMappingView::CreateConfigAreaView);
        const qsizetype channel_line = knob * 3 + 1;
        const bool configured = channel_line < lines.size() && !lines[channel_line].trimmed().isEmpty() &&
                                is_programmable_type(state.record(knob)->message_type_menu_string());
        (configured ? file.knobs : file.skipped).push_back(knob);
    }
    return file;
}

}  // namespace dialcraft
