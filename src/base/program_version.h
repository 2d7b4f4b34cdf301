#pragma once
// `--version` of the three programs: one line, "<program> <version>", the
// version of the project they were built from.
#include <string>
#include <string_view>

namespace dialcraft {

// The project's version, e.g. "0.2.0".
std::string_view program_version();
// "<program> <version>\n".
std::string version_line(std::string_view program);
// The command line is exactly `<program> --version`.
bool asks_version(int argc, const char* const* argv);

}  // namespace dialcraft
