// The report of all functions: the table of docs/accuracy.md and the plots beside it.
#pragma once
#include <cstdint>
#include <functional>
#include <string>

namespace accuracy {

// Measures every served function in every range with `count` arguments, and with as many in a hunt,
// then replaces what stands in FOLDER/accuracy.md between the lines <!-- measured --> and <!-- end
// -->, and writes FOLDER/accuracy/<stem>.png and .svg by gnuplot. `progress` gets what is being
// done, and the part done. False if a file can't be written.
bool writeReport(const std::string& folder, int64_t count, uint64_t seed,
                 const std::function<void(const std::string&, double)>& progress);

}  // namespace accuracy
