// The dispatch tables of all functions and the declarations of their kernels, made from the table
// of functions.
#include "frame/dispatch.h"

namespace qorvane {

#define KERNELS_sse3(stem) stem##Sse3
#define KERNELS_sse3_ssse3(stem) stem##Sse3, stem##Ssse3
#define KERNELS_sse3_avx(stem) stem##Sse3, stem##Avx
#define KERNELS_sse3_ssse3_avx(stem) stem##Sse3, stem##Ssse3, stem##Avx
#define KERNELS_sse3_sse41_avx(stem) stem##Sse3, stem##Sse41, stem##Avx

#define FUNCTION(name, stem, shape, family, programs_)          \
  shapes::shape KERNELS_##programs_(stem);                      \
  extern constexpr DispatchTable<shapes::shape> stem##Kernels = \
      tableOf<shapes::shape>(programs::programs_, {KERNELS_##programs_(stem)});
#include "frame/functions.inc"

}  // namespace qorvane
