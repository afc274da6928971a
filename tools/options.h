// What the programs have in common in reading their options with getopt_long.
#pragma once
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

namespace options {

// Ends the program with status 2; getopt_long has said itself what is wrong if `mistake` is empty.
[[noreturn]] inline void stop(const std::string& program, const std::string& mistake = "") {
  if (!mistake.empty()) std::fprintf(stderr, "%s: %s\n", program.c_str(), mistake.c_str());
  std::fprintf(stderr, "%s --help tells how it is used.\n", program.c_str());
  std::exit(2);
}

// The whole number that the text is, 1e6 included, if it lies in [low, high].
inline std::optional<int64_t> wholeNumber(const char* text, int64_t low, int64_t high) {
  char* end;
  const double x = std::strtod(text, &end);
  const bool fits =
      end != text && *end == 0 && x == std::floor(x) && x >= static_cast<double>(low) && x <= static_cast<double>(high);
  return fits ? std::optional(static_cast<int64_t>(x)) : std::nullopt;
}

}  // namespace options
