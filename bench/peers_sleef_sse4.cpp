// SLEEF at SSE4.
#include <immintrin.h>
#include <sleef.h>

#include "bench/peer_loops.h"

namespace qorvane::bench {
namespace {

using V [[gnu::vector_size(16)]] = double;
#define SLEEF(name, accuracy) Sleef_##name##d2_##accuracy##sse4
#include "bench/peers_sleef.inc"

}  // namespace

const Team sleefSse4 = {"SLEEF SSE4", [] { return __builtin_cpu_supports("sse4.1") != 0; }, contestants,
                        contestantCount};

}  // namespace qorvane::bench
