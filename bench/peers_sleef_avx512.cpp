// SLEEF at AVX-512.
#include <immintrin.h>
#include <sleef.h>

#include "bench/peer_loops.h"

namespace qorvane::bench {
namespace {

using V [[gnu::vector_size(64)]] = double;
#define SLEEF(name, accuracy) Sleef_##name##d8_##accuracy##avx512f
#include "bench/peers_sleef.inc"

}  // namespace

const Team sleefAvx512 = {"SLEEF AVX-512", [] { return __builtin_cpu_supports("avx512f") != 0; }, contestants,
                          contestantCount};

}  // namespace qorvane::bench
