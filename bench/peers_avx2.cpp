// SLEEF's and libmvec's functions at AVX2.
#include <immintrin.h>
#include <sleef.h>

#include "bench/peer_loops.h"

namespace qorvane::bench {
namespace {

using V [[gnu::vector_size(32)]] = double;
#define SLEEF(name, accuracy) Sleef_##name##d4_##accuracy##avx2
#define LIBMVEC(operands, name) _ZGVdN4##operands##_##name
#include "bench/peers_libmvec.inc"
#include "bench/peers_sleef.inc"

bool runsHere() { return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0; }

}  // namespace

const Team sleefAvx2 = {"SLEEF AVX2", runsHere, sleef, sleefCount};
const Team libmvecAvx2 = {"libmvec AVX2", runsHere, libmvec, libmvecCount};

}  // namespace qorvane::bench
