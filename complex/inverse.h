// The inverse functions of one number, on which those of arrays are built.
#pragma once
#include "frame/include/qorvane.h"

namespace qorvane {

Complex64 complexAsinh(Complex64 z);
Complex64 complexAcos(Complex64 z);
Complex64 complexAcosh(Complex64 z);
Complex64 complexAtanh(Complex64 z);

// Their parts one by one, for numbers from 2^-240 to 2^240 in magnitude. Those of asin, acos and their
// hyperbolic companions for a point whose part along the cuts is a: the logarithm and the angle of asin
// without signs, the angle of acos from 0 to pi. Those of atanh without the imaginary part's sign.
Float64 inverseLog(Float64 a, Float64 b);
Float64 asinAngle(Float64 a, Float64 b);
Float64 acosAngle(Float64 a, Float64 b);
Float64 atanhReal(Float64 x, Float64 y);
Float64 atanhImaginary(Float64 x, Float64 y);

}  // namespace qorvane
