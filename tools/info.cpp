// qorvane-info: which build of the library this is, and which of its levels this processor gets. The
// two hashes are over the bits that every function gives for fixed arguments: equal hashes at equal
// levels say that this is the build that was validated. Functions that start from the processor's
// estimates of reciprocals and square roots at any level have a hash of their own, which also
// differs between makers of processors.
#include <cstdio>
#include <cstring>
#include <string_view>

#include "frame/detection.h"
#include "tools/call.h"

namespace {

using qorvane::Signature;
constexpr int count = 5003;  // blocks of any size, and a tail

struct Function {
  std::string_view stem;
  Signature signature;
  nuvStatus (*call)(const qorvane::Call&);
};
template <auto function>
nuvStatus through(const qorvane::Call& c) {
  return qorvane::call(function, c);
}
constexpr Function functions[] = {
#define FUNCTION(name, stem, ...) {#stem, qorvane::signatureOf(nuvs##name), through<nuvs##name>},
#include "frame/functions.inc"
};

bool usesEstimates(std::string_view function) {
  enum : bool { no, yes };
  struct Row {
    std::string_view stem;
    bool estimates;
  };
  constexpr Row rows[] = {
#define CONTRACT(stem, program, check, mxcsr, x87, gives, raises, neighbours, estimates) {#stem, estimates},
#include "tests/contracts.inc"
  };
  for (const Row& row : rows)
    if (row.stem == function && row.estimates) return true;
  return false;
}

// An interval of a real function's domain.
struct Interval {
  double low, high;
};
Interval argumentsOf(std::string_view stem) {
  for (const char* unit : {"asin", "acos", "atanh", "erfInv"})
    if (stem == unit) return {-1, 1};
  for (const char* positive : {"ln", "log10", "pow", "powx", "sqrt", "invSqrt"})
    if (stem == positive) return {0x1p-20, 32};
  if (stem == "acosh") return {1, 33};
  return {-20, 20};
}

// FNV-1a over bytes.
uint64_t hashed(uint64_t hash, const void* data, size_t size) {
  for (size_t i = 0; i < size; ++i) hash = (hash ^ static_cast<const unsigned char*>(data)[i]) * 0x100000001b3;
  return hash;
}

uint64_t withResults(uint64_t hash, const Function& f) {
  static double in[2][2 * count], out[2][2 * count];
  const Interval interval = argumentsOf(f.stem);
  uint64_t state = 1;
  const auto draw = [&] {
    state = state * 6364136223846793005 + 1442695040888963407;
    return interval.low + static_cast<double>(state >> 12) * 0x1p-52 * (interval.high - interval.low);
  };
  for (auto& array : in)
    for (double& x : array) x = draw();
  const nuvStatus status = f.call({{in[0], in[1]}, {out[0], out[1]}, {1.7, -0.6}, count, {}, {}});
  hash = hashed(hash, &status, sizeof status);
  for (int k = 0; k < f.signature.outputs; ++k)
    hash = hashed(hash, out[k], sizeof(double) * count * static_cast<size_t>(f.signature.parts));
  return hash;
}

}  // namespace

int main() {
  uint64_t features = 0;
  qorvane::queryProcessorFeatures(&features, nullptr);
  std::printf("version: %d.%d.%d\n", QORVANE_VERSION_MAJOR, QORVANE_VERSION_MINOR, QORVANE_VERSION_PATCH);
  std::printf("level: %d, as the processor has:", qorvane::chooseLevel(features).level);
  const struct {
    uint64_t bit;
    const char* name;
  } names[] = {{qorvane::hasSse3, "SSE3"},   {qorvane::hasSsse3, "SSSE3"},
               {qorvane::hasMovbe, "MOVBE"}, {qorvane::hasSse41, "SSE4.1"},
               {qorvane::hasAvx, "AVX"},     {qorvane::savesAvxState, "saved AVX state"}};
  for (const auto& feature : names)
    if (features & feature.bit) std::printf(" [%s]", feature.name);
  int32_t threads = 0;
  nuvGetNumThreads(&threads);
  uint64_t hashes[2] = {0xcbf29ce484222325, 0xcbf29ce484222325};
  int counts[2] = {};
  for (const Function& f : functions) {
    const bool estimates = usesEstimates(f.stem);
    hashes[estimates] = withResults(hashes[estimates], f);
    ++counts[estimates];
  }
  std::printf("\nfunctions: %d\nthreads: %d\n", counts[0] + counts[1], threads);
  std::printf("bits: %016llx (%d functions, the same on every processor of a level)\n",
              static_cast<unsigned long long>(hashes[0]), counts[0]);
  std::printf("bits from estimates: %016llx (%d functions, the same on processors with the same estimates)\n",
              static_cast<unsigned long long>(hashes[1]), counts[1]);
  return 0;
}
