#pragma once
// Conditions that cannot occur in normal use end the program: the message goes
// to standard error, then the process aborts.
#include <string_view>

namespace dialcraft {

[[noreturn]] void fatal_error(std::string_view message);

inline constexpr std::string_view unwrap_nil_message = "Unexpectedly found nil while unwrapping an Optional value";
inline constexpr std::string_view bad_range_message = "Range requires lowerBound <= upperBound";
inline constexpr std::string_view index_out_of_range_message = "Index out of range";

}  // namespace dialcraft
