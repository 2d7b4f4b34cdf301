#include "base/program_version.h"

#include <cstring>

namespace dialcraft {

std::string_view program_version()
{
    return DIALCRAFT_PROJECT_VERSION;
}

std::string version_line(std::string_view program)
{
    std::string line(program);
    line += ' ';
    line += program_version();
    line += '\n';
    return line;
}

bool asks_version(int argc, const char* const* argv)
{
    return argc == 2 && std::strcmp(argv[1], "--version") == 0;
}

}  // namespace dialcraft
