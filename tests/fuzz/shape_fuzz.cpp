// A fuzz target for the functions of one shape (QORVANE_FUZZ_SHAPE): whatever the arguments, their
// number and the caller's floating-point modes, nothing beside the arrays is written, the status is
// one of those that exist, the control words come back, and an element alone gives what it gave in
// the array.
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
  std::fprintf(stderr, "%s at level %d: %s\n", f.name.c_str(), DispatchLevel, what);
  std::abort();
}

bool isStatus(nuvStatus status) {
  return status == nuvStatusOk || status == nuvStatusOverflow || status == nuvStatusUnderflow ||
         status == nuvStatusPole || status == nuvStatusOutOfDomain;
}

const std::vector<Function>& functionsOfShape() {
  static const std::vector<Function> chosen = [] {
    std::vector<Function> of;
    for (const Function& f : functions())
      if (f.shape == Shape::QORVANE_FUZZ_SHAPE) of.push_back(f);
    return of;
  }();
  return chosen;
}

}  // namespace

// Four bytes of control (function, level, modes, shift), then the arguments; the second array and
// the scalar are the same numbers from their middle on.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const int highestLevel = DispatchLevel;
  const auto& all = functionsOfShape();
  if (size < 12 || all.empty()) return 0;
  const Function& f = all[data[0] % all.size()];
  DispatchLevel = 1 + data[1] % highestLevel;
  const uint32_t csr = 0x1f80 | (data[2] & 3u) << 13 | (data[2] & 4u ? 0x8000u : 0) | (data[2] & 8u ? 0x40u : 0);
  const uint16_t x87 = static_cast<uint16_t>(0x007f | (data[2] & 16 ? 0x0300 : 0x0200) | (data[2] & 0x60) << 5);
  const size_t shift = data[3] % 4, count = (size - 4) / 8 < maximum ? (size - 4) / 8 : maximum;
  std::vector<double> x(count), y(count), a(count + shift + 1, canary), b(a);
  std::memcpy(x.data(), data + 4, count * 8);
  for (size_t i = 0; i < count; ++i) y[i] = x[(i + count / 2) % count];

  writeX87Control(x87);
  writeMxcsr(csr);
  const nuvStatus status = f(x.data(), y.data(), y[0], &a[shift], &b[shift], static_cast<int32_t>(count));
  const uint32_t csrAfter = readMxcsr();
  const uint16_t x87After = readX87Control();
  const size_t probe = data[3] % count;
  double aloneA = canary, aloneB = canary;
  f(&x[probe], &y[probe], y[0], &aloneA, &aloneB, 1);
  writeMxcsr(0x1f80);
  writeX87Control(0x037f);

  require(isStatus(status), "no such status", f);
  require((csrAfter & 0xffc0) == csr && x87After == x87, "a control word has changed", f);
  for (size_t i = 0; i < shift; ++i) require(a[i] == canary && b[i] == canary, "wrote before its array", f);
  require(a[count + shift] == canary && b[count + shift] == canary, "wrote behind its array", f);
  if (f.dependsOnBlock(DispatchLevel) && csr != 0x1f80)
    return 0;  // in other modes the two ways of a block may be further apart
  require(sameResult(f, aloneA, a[shift + probe]), "an element differs when it is alone", f);
  if (f.hasSecondOutput())
    require(sameResult(f, aloneB, b[shift + probe]), "an element's second result differs when it is alone", f);
  return 0;
}
