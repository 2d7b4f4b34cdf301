#pragma once
// The slot table: knob i owns slots 3i (type), 3i+1 (channel), 3i+2 (controller).
#include <QString>
#include <QStringList>

#include <optional>

struct Configuration {
    QStringList settings;
};

// The blank slot string: twenty spaces.
extern const QString blank_slot;
// 90 blank slots, knobs 0 to 29.
const QStringList& initialSettings();
// The program's one live slot table.
extern Configuration configuration;
// The table last read from "configuration.json".
extern std::optional<Configuration> loadedConfig;
