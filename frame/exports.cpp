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
#define EXPORT_UNARY(T, name, stem) \
  nuvStatus name(const T* src, T* dst, int32_t len) { return stem##Kernels.level[DispatchLevel](src, dst, len); } \
  nuvStatus name##_Idx(const T* src, int32_t srcOffset, T* dst, int32_t dstOffset, int32_t len) { \
    return stem##Kernels.level[DispatchLevel](at(src, srcOffset), at(dst, dstOffset), len); }
#define EXPORT_BINARY(T, name, stem) \
  nuvStatus name(const T* srcA, const T* srcB, T* dst, int32_t len) { return stem##Kernels.level[DispatchLevel](srcA, srcB, dst, len); } \
  nuvStatus name##_Idx(const T* srcA, int32_t srcAOffset, const T* srcB, int32_t srcBOffset, T* dst, int32_t dstOffset, int32_t len) { \
    return stem##Kernels.level[DispatchLevel](at(srcA, srcAOffset), at(srcB, srcBOffset), at(dst, dstOffset), len); }
#define EXPORT_SPLIT(T, name, stem) \
  nuvStatus name(const T* src, T* dstA, T* dstB, int32_t len) { return stem##Kernels.level[DispatchLevel](src, dstA, dstB, len); } \
  nuvStatus name##_Idx(const T* src, int32_t srcOffset, T* dstA, int32_t dstAOffset, T* dstB, int32_t dstBOffset, int32_t len) { \
    return stem##Kernels.level[DispatchLevel](at(src, srcOffset), at(dstA, dstAOffset), at(dstB, dstBOffset), len); }
#define EXPORT_SCALAR(T, name, stem) \
  nuvStatus name(const T* src, T value, T* dst, int32_t len) { return stem##Kernels.level[DispatchLevel](src, value, dst, len); } \
  nuvStatus name##_Idx(const T* src, int32_t srcOffset, T value, T* dst, int32_t dstOffset, int32_t len) { \
    return stem##Kernels.level[DispatchLevel](at(src, srcOffset), value, at(dst, dstOffset), len); }
#define EXPORT_realUnary(...) EXPORT_UNARY(Float64, __VA_ARGS__)
#define EXPORT_realBinary(...) EXPORT_BINARY(Float64, __VA_ARGS__)
#define EXPORT_realSplit(...) EXPORT_SPLIT(Float64, __VA_ARGS__)
#define EXPORT_realScalar(...) EXPORT_SCALAR(Float64, __VA_ARGS__)
#define EXPORT_complexUnary(...) EXPORT_UNARY(Complex64, __VA_ARGS__)
#define EXPORT_complexBinary(...) EXPORT_BINARY(Complex64, __VA_ARGS__)
#define EXPORT_complexScalar(...) EXPORT_SCALAR(Complex64, __VA_ARGS__)
#define FUNCTION(name, stem, shape, ...) EXPORT_##shape(nuvs##name, stem)

extern "C" {
#include "frame/functions.inc"
}
