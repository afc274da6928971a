#include "tests/function_table.h"

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace qorvane::test {
namespace {

constexpr bool yes = true, no = false;
constexpr Contract contracts[] = {
#define CONTRACT(stem, program, check, mxcsr, x87, gives, raises, neighbours, estimates) \
  {#stem, #program, CheckClass::check,      MxcsrClass::mxcsr, X87Class::x87,            \
   gives, raises,   Neighbours::neighbours, estimates},
#include "tests/contracts.inc"
#undef CONTRACT
};

Function withContracts(const Served& served) {
  Function f{served, {}};
  for (size_t i = 0; i < f.programCount; ++i) {
    int found = 0;
    for (const Contract& row : contracts)
      if (row.stem == f.stem && row.program == f.programs[i].name) f.contracts[i] = row, ++found;
    if (found == 1) continue;
    std::fprintf(stderr, "tests/contracts.inc has %d rows for %s, %s\n", found, f.stem.data(),
                 std::string(f.programs[i].name).c_str());
    std::exit(1);
  }
  return f;
}

template <class T>
T* moved(T* array, int64_t doubles) {
  return reinterpret_cast<T*>(reinterpret_cast<uintptr_t>(array) - static_cast<uintptr_t>(doubles) * sizeof(double));
}

}  // namespace

const std::vector<Function>& functions() {
  static const std::vector<Function> all = [] {
    std::vector<Function> list;
    for (const Served& row : served()) list.push_back(withContracts(row));
    return list;
  }();
  return all;
}

Call forTwin(const Function& f, Call c, const std::array<int32_t, 4>& offsets) {
  for (size_t i = 0; i < 2; ++i) {
    c.inOffset[i] = offsets[i];
    c.outOffset[i] = offsets[2 + i];
    c.in[i] = moved(c.in[i], int64_t{offsets[i]} * f.signature.parts);
    c.out[i] = moved(c.out[i], int64_t{offsets[2 + i]} * f.signature.parts);
  }
  return c;
}

bool sameResult(const Contract& contract, double a, double b) {
  const uint64_t distance = std::bit_cast<uint64_t>(a) - std::bit_cast<uint64_t>(b);
  if (distance == 0 || (a != a && b != b)) return true;
  return contract.dependsOnBlock() && ((a == 0 && b == 0) || (std::isfinite(a) && distance + 1 <= 2));
}

}  // namespace qorvane::test
