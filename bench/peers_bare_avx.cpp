// Loops over the bare instruction that does a function's work: load, vdivpd (or vsqrtpd, vroundpd,
// ...), store.
#include <immintrin.h>

#include "bench/peer_loops.h"

namespace qorvane::bench {
namespace {

using V [[gnu::vector_size(32)]] = double;
#define BARE(stem, result)                                          \
  {                                                                 \
#stem, repeat < V, [](V a, V b, V) { return (void)b, result; }> \
  }

constexpr Contestant contestants[] = {
    BARE(inv, _mm256_div_pd(_mm256_set1_pd(1.0), a)),
    BARE(div, _mm256_div_pd(a, b)),
    BARE(sqrt, _mm256_sqrt_pd(a)),
    BARE(invSqrt, _mm256_div_pd(_mm256_set1_pd(1.0), _mm256_sqrt_pd(a))),
    BARE(floor, _mm256_round_pd(a, _MM_FROUND_TO_NEG_INF)),
    BARE(ceil, _mm256_round_pd(a, _MM_FROUND_TO_POS_INF)),
    BARE(trunc, _mm256_round_pd(a, _MM_FROUND_TO_ZERO)),
    BARE(rint, _mm256_round_pd(a, _MM_FROUND_CUR_DIRECTION)),
    BARE(nearbyInt, _mm256_round_pd(a, _MM_FROUND_CUR_DIRECTION | _MM_FROUND_NO_EXC)),
};

}  // namespace

const Team bareAvx = {"bare AVX", [] { return __builtin_cpu_supports("avx") != 0; }, contestants,
                      sizeof contestants / sizeof contestants[0]};

}  // namespace qorvane::bench
