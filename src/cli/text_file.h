#pragma once
// Reading a configuration text file for apply and import.
#include <QString>

#include <string>

namespace dialcraft {

// The file's text as the window's import reads it: UTF-8 with invalid
// sequences replaced. Throws UsageError naming FILE when it cannot be read.
QString read_text_file(const std::string& path);

}  // namespace dialcraft
