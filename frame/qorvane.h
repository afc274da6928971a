#ifndef TARNWELL_QORVANE_H
#define TARNWELL_QORVANE_H
#include <stdint.h>
#ifdef __cplusplus
extern "C" {
#endif
typedef double Float64;
typedef struct Complex64 {
  Float64 re, im;
} Complex64;
typedef int32_t nuvStatus;
enum {
  nuvStatusOk = 0,
  nuvStatusBadLength = -6,
  nuvStatusNullPointer = -8,
  nuvStatusOverflow = 12,
  nuvStatusUnderflow = 17,
  nuvStatusPole = 18,
  nuvStatusOutOfDomain = 19
};
#define QORVANE_API __attribute__((visibility("default")))
QORVANE_API nuvStatus nuvGetNumThreads(int32_t* count);
QORVANE_API nuvStatus nuvSetNumThreads(int32_t count);

QORVANE_API nuvStatus nuvsExp_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsExp_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsLn_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsLn_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsLog10_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsLog10_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsPow_64f_A53(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsPow_64f_A53_Idx(const Float64* srcA, int32_t srcAOffset, const Float64* srcB, int32_t srcBOffset, Float64* dst, int32_t dstOffset,
                                          int32_t len);

QORVANE_API nuvStatus nuvsPowx_64f_A53(const Float64* src, Float64 value, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsPowx_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64 value, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsInv_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsInv_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsDiv_64f_A53(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsDiv_64f_A53_Idx(const Float64* srcA, int32_t srcAOffset, const Float64* srcB, int32_t srcBOffset, Float64* dst, int32_t dstOffset,
                                          int32_t len);

QORVANE_API nuvStatus nuvsSqrt_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsSqrt_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsInvSqrt_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsInvSqrt_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsCbrt_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsCbrt_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsInvCbrt_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsInvCbrt_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsSin_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsSin_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsCos_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsCos_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsSinCos_64f_A53(const Float64* src, Float64* dstA, Float64* dstB, int32_t len);
QORVANE_API nuvStatus nuvsSinCos_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dstA, int32_t dstAOffset, Float64* dstB, int32_t dstBOffset,
                                             int32_t len);

QORVANE_API nuvStatus nuvsTan_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsTan_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAsin_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAsin_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAcos_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAcos_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAtan_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAtan_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAtan2_64f_A53(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAtan2_64f_A53_Idx(const Float64* srcA, int32_t srcAOffset, const Float64* srcB, int32_t srcBOffset, Float64* dst, int32_t dstOffset,
                                            int32_t len);

QORVANE_API nuvStatus nuvsSinh_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsSinh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsCosh_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsCosh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsTanh_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsTanh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAsinh_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAsinh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAcosh_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAcosh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAtanh_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAtanh_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsErf_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsErf_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsErfInv_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsErfInv_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsErfc_64f_A53(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsErfc_64f_A53_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsFloor_64f(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsFloor_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsCeil_64f(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsCeil_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsTrunc_64f(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsTrunc_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsRound_64f(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsRound_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsRint_64f(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsRint_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsNearbyInt_64f(const Float64* src, Float64* dst, int32_t len);
QORVANE_API nuvStatus nuvsNearbyInt_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsModf_64f(const Float64* src, Float64* dstA, Float64* dstB, int32_t len);
QORVANE_API nuvStatus nuvsModf_64f_Idx(const Float64* src, int32_t srcOffset, Float64* dstA, int32_t dstAOffset, Float64* dstB, int32_t dstBOffset,
                                       int32_t len);

QORVANE_API nuvStatus nuvsExp_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsExp_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsLn_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsLn_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsLog10_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsLog10_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsPow_64fc_A53(const Complex64* srcA, const Complex64* srcB, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsPow_64fc_A53_Idx(const Complex64* srcA, int32_t srcAOffset, const Complex64* srcB, int32_t srcBOffset, Complex64* dst,
                                           int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsPowx_64fc_A53(const Complex64* src, Complex64 value, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsPowx_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64 value, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsSqrt_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsSqrt_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsSin_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsSin_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsCos_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsCos_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsTan_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsTan_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAsin_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAsin_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAcos_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAcos_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAtan_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAtan_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsSinh_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsSinh_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsCosh_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsCosh_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsTanh_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsTanh_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAsinh_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAsinh_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

QORVANE_API nuvStatus nuvsAcosh_64fc_A53(const Complex64* src, Complex64* dst, int32_t len);
QORVANE_API nuvStatus nuvsAcosh_64fc_A53_Idx(const Complex64* src, int32_t srcOffset, Complex64* dst, int32_t dstOffset, int32_t len);

#ifdef __cplusplus
}
#endif
#endif
