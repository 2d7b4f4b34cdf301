#include "base/fatal_error.h"

#include <cstdio>
#include <cstdlib>

namespace dialcraft {

void fatal_error(std::string_view message)
{
    std::fflush(stdout);
    std::fprintf(stderr, "Fatal error: %.*s\n", static_cast<int>(message.size()), message.data());
    std::fflush(stderr);
    std::abort();
}

}  // namespace dialcraft
