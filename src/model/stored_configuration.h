#pragma once
// Keeps the slot table between runs: as compact JSON under "configurationKey"
// in the user's settings, and as "configuration.json" in the documents folder.
#include <QByteArray>

#include "model/configuration.h"

void saveCustomInfo();
// saveCustomInfo for callers that need the outcome: false when the table
// could not be stored (the error line is printed all the same).
bool saveCustomInfoChecked();
void loadCustomInfo();
void saveConfiguration(const Configuration& config);
void loadConfiguration();
