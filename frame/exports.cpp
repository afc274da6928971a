// The exported functions, made from the table: each is one load of DispatchLevel and one jump
// through its dispatch table; its twin adds the offsets to the pointers, in elements and without
// looking at them, and goes the same way.
#include "frame/dispatch.h"

namespace qorvane {

#define FUNCTION(name, stem, shape, ...) \
  extern const DispatchTable<shapes::shape> stem##Kernels [[gnu::visibility("hidden")]];
#include "frame/functions.inc"
#undef FUNCTION

namespace {

// On addresses, not on pointers: a null base with an offset is an address like any other.
template <class Element>
INLINE Element* at(Element* base, int32_t offset) {
  return reinterpret_cast<Element*>(reinterpret_cast<uintptr_t>(base) +
                                    static_cast<uintptr_t>(static_cast<intptr_t>(offset)) * sizeof(Element));
}

}  // namespace
}  // namespace qorvane

using namespace qorvane;

// clang-format off
#define EXPORT_realUnary(name, stem) \
  nuvStatus name(const Float64* src, Float64* dst, int32_t len) { return stem##Kernels.level[DispatchLevel](src, dst, len); } \
  nuvStatus name##_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len) { \
    return stem##Kernels.level[DispatchLevel](at(src, srcOffset), at(dst, dstOffset), len); }
#define EXPORT_realBinary(name, stem) \
  nuvStatus name(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) { return stem##Kernels.level[DispatchLevel](srcA, srcB, dst, len); } \
  nuvStatus name##_Idx(const Float64* srcA, int32_t srcAOffset, const Float64* srcB, int32_t srcBOffset, Float64* dst, int32_t dstOffset, int32_t len) { \
    return stem##Kernels.level[DispatchLevel](at(srcA, srcAOffset), at(srcB, srcBOffset), at(dst, dstOffset), len); }
#define EXPORT_realSplit(name, stem) \
  nuvStatus name(const Float64* src, Float64* dstA, Float64* dstB, int32_t len) { return stem##Kernels.level[DispatchLevel](src, dstA, dstB, len); } \
  nuvStatus name##_Idx(const Float64* src, int32_t srcOffset, Float64* dstA, int32_t dstAOffset, Float64* dstB, int32_t dstBOffset, int32_t len) { \
    return stem##Kernels.level[DispatchLevel](at(src, srcOffset), at(dstA, dstAOffset), at(dstB, dstBOffset), len); }
#define EXPORT_realScalar(name, stem) \
  nuvStatus name(const Float64* src, Float64 value, Float64* dst, int32_t len) { return stem##Kernels.level[DispatchLevel](src, value, dst, len); } \
  nuvStatus name##_Idx(const Float64* src, int32_t srcOffset, Float64 value, Float64* dst, int32_t dstOffset, int32_t len) { \
    return stem##Kernels.level[DispatchLevel](at(src, srcOffset), value, at(dst, dstOffset), len); }
#define FUNCTION(name, stem, shape, ...) EXPORT_##shape(nuvs##name, stem)

extern "C" {
#include "frame/functions.inc"
}
