// A fuzz target for the functions of one shape (QORVANE_FUZZ_SHAPE): whatever the arguments, their
// number and the caller's floating-point modes, nothing beside the arrays is written, the status is
// one of the function's, the control words come back, and an element alone gives what it gave in
// the array.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/dispatch.h"
#include "frame/kernel_frame.h"
#include "tests/function_table.h"

namespace {

using namespace qorvane;
using namespace qorvane::test;

constexpr size_t maximum = 80;
constexpr double canary = -7.25e-77;

void require(bool condition, const char* what, const Function& f) {
  if (condition) return;
  writeMxcsr(0x1f80);
  std::fprintf(stderr, "%s at level %d: %s\n", f.name.data(), DispatchLevel, what);
  std::abort();
}

const std::vector<Function>& functionsOfShape() {
  static const std::vector<Function> chosen = [] {
    std::vector<Function> of;
    for (const Function& f : functions())
      if (f.shape == QORVANE_FUZZ_SHAPE) of.push_back(f);
    return of;
  }();
  return chosen;
}

}  // namespace

// Four bytes of control (function, level, modes, shift), then the arguments; the second array is the
// same numbers from their middle on, and the scalar begins it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const int highestLevel = DispatchLevel;
  const auto& all = functionsOfShape();
  if (size < 4 || all.empty()) return 0;
  const Function& f = all[data[0] % all.size()];
  const size_t parts = f.reals(1), count = std::min((size - 4) / (8 * parts), maximum), reals = count * parts;
  if (count == 0) return 0;
  DispatchLevel = 1 + data[1] % highestLevel;
  const Contract& contract = f.at(DispatchLevel);
  const uint32_t csr = 0x1f80 | (data[2] & 3u) << 13 | (data[2] & 4u ? 0x8000u : 0) | (data[2] & 8u ? 0x40u : 0);
  const uint16_t x87 = static_cast<uint16_t>(0x007f | (data[2] & 16 ? 0x0300 : 0x0200) | (data[2] & 0x60) << 5);
  const size_t shift = data[3] % 4;
  std::vector<double> x(reals), y(reals), a(reals + shift + 1, canary), b(a);
  std::memcpy(x.data(), data + 4, reals * 8);
  for (size_t i = 0; i < reals; ++i) y[i] = x[(i + reals / 2) % reals];
  const Call c = {
      {x.data(), y.data()}, {&a[shift], &b[shift]}, {y[0], y[parts - 1]}, static_cast<int32_t>(count), {}, {}};
  const size_t probe = data[3] % count * parts;
  double alone[2][2] = {{canary, canary}, {canary, canary}};
  Call single = c;
  single.in[0] += probe, single.in[1] += probe, single.len = 1;
  single.out[0] = alone[0], single.out[1] = alone[1];

  writeX87Control(x87);
  writeMxcsr(csr);
  const nuvStatus status = f(c);
  const uint32_t csrAfter = readMxcsr();
  const uint16_t x87After = readX87Control();
  f(single);
  writeMxcsr(0x1f80);
  writeX87Control(0x037f);

  require(status == nuvStatusOk || (asSet(status) & contract.gives) != 0, "not a status of this function", f);
  require((csrAfter & 0xffc0) == csr && x87After == x87, "a control word has changed", f);
  for (size_t i = 0; i < shift; ++i) require(a[i] == canary && b[i] == canary, "wrote before its array", f);
  require(a[reals + shift] == canary && b[reals + shift] == canary, "wrote behind its array", f);
  if (contract.dependsOnBlock() && csr != 0x1f80)
    return 0;  // in other modes the two ways of a block may be further apart
  for (int k = 0; k < f.signature.outputs; ++k)
    for (size_t part = 0; part < parts; ++part)
      require(sameResult(contract, alone[k][part], c.out[k][probe + part]), "an element differs when it is alone", f);
  return 0;
}
