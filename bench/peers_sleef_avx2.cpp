// SLEEF at AVX2.
#include <immintrin.h>
#include <sleef.h>

#include "bench/peer_loops.h"

namespace qorvane::bench {
namespace {

using V [[gnu::vector_size(32)]] = double;
#define SLEEF(name, accuracy) Sleef_##name##d4_##accuracy##avx2
#include "bench/peers_sleef.inc"

}  // namespace

const Team sleefAvx2 = {"SLEEF AVX2", [] { return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"); },
                        contestants, contestantCount};

}  // namespace qorvane::bench
