// The accuracy data: one row a function, range and program.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "tools/accuracy_measure.h"

namespace accuracy {

// Measures and hunts everything of these functions, and renews their rows in the file, a CSV with a head; the other
// rows stay. What is found is written function by function.
bool writeData(const std::string& path, const std::vector<const Function*>& functions, int64_t count, uint64_t seed,
               const std::function<void(const std::string&, double)>& progress);

}  // namespace accuracy
