#pragma once
// Keeps the slot table between runs: as compact JSON under "configurationKey"
// in the user's settings, and as "configuration.json" in the documents folder.
#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

#include "model/configuration.h"

namespace dialcraft {

void saveCustomInfo();
// saveCustomInfo for callers that need the outcome: false when the table
// could not be stored (the error line is printed all the same).
bool saveCustomInfoChecked();
void loadCustomInfo();
// Why the last saveCustomInfo() failed (the text after "Error saving
// configuration: "), or empty when it succeeded or none has run. The failure
// is printed on standard output as well; this lets the window tell it too.
QString last_save_failure();
// The file of the user's settings store that holds "configurationKey"; other
// files of the program's own (the ledger) live beside it.
QString settings_file_path();
// The table the store holds right now, decoded and padded as loadCustomInfo
// would, without a line printed; nothing when the store holds no table
// (no value, a value that is not binary or does not decode, a settings file
// that cannot be parsed). For noticing what other programs stored.
std::optional<QStringList> read_stored_table();
void saveConfiguration(const Configuration& config);
void loadConfiguration();

}  // namespace dialcraft
