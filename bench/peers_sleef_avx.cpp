// SLEEF at AVX.
#include <immintrin.h>
#include <sleef.h>

#include "bench/peer_loops.h"

namespace qorvane::bench {
namespace {

using V [[gnu::vector_size(32)]] = double;
#define SLEEF(name, accuracy) Sleef_##name##d4_##accuracy##avx
#include "bench/peers_sleef.inc"

}  // namespace

const Team sleefAvx = {"SLEEF AVX", [] { return __builtin_cpu_supports("avx") != 0; }, contestants, contestantCount};

}  // namespace qorvane::bench
