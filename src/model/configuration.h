#pragma once
// The slot table: knob i owns slots 3i (type), 3i+1 (channel), 3i+2 (controller).
#include <QString>
#include <QStringList>

#include <optional>

namespace dialcraft {

struct Configuration {
    QStringList settings;
};

// The blank slot string: twenty spaces.
extern const QString blank_slot;
// 90 blank slots, knobs 0 to 29.
const QStringList& initialSettings();
// A table read from the store or a file covers at least knobs 0 to 99: blank
// slots are appended up to 300, with the line that says so. Longer tables are
// kept whole.
void pad_to_300_slots(QStringList& settings);
// The program's one live slot table.
extern Configuration configuration;
// The table last read from "configuration.json".
extern std::optional<Configuration> loadedConfig;

}  // namespace dialcraft
