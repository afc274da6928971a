#include "tests/test_support.h"

#include <cstdio>

namespace qorvane::test {

const std::vector<int>& supportedLevels() {
  static const std::vector<int> levels = [] {
    std::vector<int> all;
    for (int level = 1; level <= DispatchLevel; ++level) all.push_back(level);
    if (all.empty()) all.push_back(0);
    return all;
  }();
  return levels;
}

std::ostream& operator<<(std::ostream& out, const Element& e) {
  char text[80];
  std::snprintf(text, sizeof text, "%.17g (0x%016llx), status %d", e.value,
                static_cast<unsigned long long>(bits(e.value)), e.status);
  return out << text;
}

}  // namespace qorvane::test
