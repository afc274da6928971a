"""Tests of the NumPy ufuncs: values against mpmath and numpy, ufunc arguments, warnings."""
import cmath

import mpmath
import numpy
import pytest

import qorvane

UNARY = {  # a function, its counterpart in mpmath, an interval of its domain
    "exp": (mpmath.exp, -20, 20), "ln": (mpmath.log, 0.01, 50), "log10": (mpmath.log10, 0.01, 50),
    "sqrt": (mpmath.sqrt, 0, 50), "cbrt": (mpmath.cbrt, 0, 50), "sin": (mpmath.sin, -20, 20),
    "cos": (mpmath.cos, -20, 20), "tan": (mpmath.tan, -20, 20), "asin": (mpmath.asin, -1, 1),
    "acos": (mpmath.acos, -1, 1), "atan": (mpmath.atan, -20, 20), "sinh": (mpmath.sinh, -20, 20),
    "cosh": (mpmath.cosh, -20, 20), "tanh": (mpmath.tanh, -20, 20), "asinh": (mpmath.asinh, -20, 20),
    "acosh": (mpmath.acosh, 1, 20), "atanh": (mpmath.atanh, -1, 1), "erf": (mpmath.erf, -5, 5),
    "erfc": (mpmath.erfc, -5, 5), "inv": (lambda x: 1 / x, 1, 20)}
COMPLEX = ["exp", "ln", "log10", "sqrt", "sin", "cos", "tan", "sinh", "cosh", "tanh", "asin", "acos", "atan",
           "asinh", "acosh"]


def samples(low, high, count=2500):
    return numpy.random.default_rng(1).uniform(low, high, count)


@pytest.mark.parametrize("name", UNARY)
def test_real_values(name):
    exact, low, high = UNARY[name]
    x = samples(low, high, 300)
    y = getattr(qorvane, name)(x)
    with mpmath.workprec(120):
        right = [exact(mpmath.mpf(v)) for v in x]
        assert max(abs(mpmath.mpf(a) - b) / numpy.spacing(abs(float(b))) for a, b in zip(y, right)) < 1.4


@pytest.mark.parametrize("name", COMPLEX)
def test_complex_values(name):
    z = samples(-3, 3, 200) + 1j * samples(-2, 2, 200)[::-1]
    right = [getattr(cmath, {"ln": "log"}.get(name, name))(v) for v in z]
    numpy.testing.assert_allclose(getattr(qorvane, name)(z), right, rtol=1e-14)


def test_several_operands():
    x, y = samples(0.1, 9), samples(-3, 3)[::-1]
    numpy.testing.assert_allclose(qorvane.pow(x, y), x**y, rtol=1e-15)
    numpy.testing.assert_array_equal(qorvane.div(x, y), x / y)
    numpy.testing.assert_allclose(qorvane.atan2(x, y), numpy.arctan2(x, y), rtol=1e-15)
    for mine, right in zip(qorvane.sinCos(x), (qorvane.sin(x), qorvane.cos(x))):
        numpy.testing.assert_array_max_ulp(mine, right)
    whole, fraction = qorvane.modf(y)
    numpy.testing.assert_array_equal(whole + fraction, y)
    numpy.testing.assert_allclose(qorvane.pow(x + 1j, 1.5), (x + 1j) ** 1.5, rtol=1e-14)


@pytest.mark.parametrize("dtype", ["f8", "c16"])
@pytest.mark.parametrize("count", [0, 1, 7, 1023, 1024, 1025, 2500])
def test_layouts(dtype, count):
    x = samples(0.1, 9, count).astype(dtype)
    right = qorvane.exp(x)
    numpy.testing.assert_array_equal(qorvane.exp(numpy.repeat(x, 3)[::3]), right)  # strides
    numpy.testing.assert_array_equal(qorvane.exp(x[::-1]), right[::-1])
    packed = numpy.zeros(count, dtype=[("pad", "i1"), ("x", dtype)])  # no alignment
    packed["x"] = x
    numpy.testing.assert_array_equal(qorvane.exp(packed["x"]), right)
    inPlace = x.copy()
    assert qorvane.exp(inPlace, out=inPlace) is inPlace
    numpy.testing.assert_array_equal(inPlace, right)
    every = numpy.full(2 * count, 5, dtype)
    qorvane.exp(x, out=every[::2])
    numpy.testing.assert_array_equal(every[::2], right)
    numpy.testing.assert_array_equal(every[1::2], 5)
    shifted = numpy.concatenate([x, x[:1]])
    qorvane.exp(shifted[:count], out=shifted[1:][:count])  # overlap
    numpy.testing.assert_array_equal(shifted[1:][:count], right)


def test_where_broadcasting_and_casts():
    x = samples(1, 9, 12)
    out = numpy.zeros(12)
    qorvane.ln(x, out=out, where=x > 5)
    numpy.testing.assert_array_equal(out, numpy.where(x > 5, qorvane.ln(x), 0))
    assert qorvane.pow(x.reshape(3, 4), 2).shape == (3, 4)
    numpy.testing.assert_array_equal(qorvane.pow.outer(x, x[:2])[:, 1], qorvane.pow(x, x[1]))
    assert qorvane.exp(numpy.float32(1)).dtype == numpy.float64
    assert qorvane.exp(1) == qorvane.exp(1.0)
    with pytest.raises(TypeError):
        qorvane.erf(1j)


FAILURES = [  # a call, and what of numpy's four kinds it is
    (lambda: qorvane.ln(0.0), "divide"), (lambda: qorvane.ln(-1.0), "invalid"), (lambda: qorvane.exp(1000.0), "over"),
    (lambda: qorvane.exp(-1000.0), "under"), (lambda: qorvane.sin(numpy.inf), "invalid"),
    (lambda: qorvane.inv(0.0), "divide"), (lambda: qorvane.div(1.0, 0.0), "divide"),
    (lambda: qorvane.div(0.0, 0.0), "invalid"), (lambda: qorvane.pow(0.0, -1.0), "divide"),
    (lambda: qorvane.pow(10.0, 400.0), "over"), (lambda: qorvane.pow(-1.0, 0.5), "invalid"),
    (lambda: qorvane.atanh(1.0), "divide"), (lambda: qorvane.acosh(0.5), "invalid"),
    (lambda: qorvane.ln(0j), "divide"), (lambda: qorvane.exp(1000 + 1j), "over")]


@pytest.mark.parametrize("case", range(len(FAILURES)))
def test_failures_are_numpys_warnings(case):
    call, kind = FAILURES[case]
    with numpy.errstate(**{k: "ignore" for k in ("divide", "over", "under", "invalid")} | {kind: "raise"}):
        with pytest.raises(FloatingPointError):
            call()
    with numpy.errstate(**{k: "raise" for k in ("divide", "over", "under", "invalid")} | {kind: "ignore"}):
        call()


@pytest.mark.parametrize("place", [0, 1023, 1024, 2499])
@pytest.mark.parametrize("step", [1, 2])
def test_failures_anywhere(place, step):
    x = numpy.ones(2500 * step)
    x[place * step] = -1
    with numpy.errstate(all="raise"), pytest.raises(FloatingPointError):
        qorvane.ln(x[::step])
    x[0] = 0 if place else x[0]  # another kind before it
    with numpy.errstate(all="ignore", invalid="raise"), pytest.raises(FloatingPointError):
        qorvane.ln(x[::step])
    x[place * step] = 0
    with numpy.errstate(all="ignore", divide="raise"), pytest.raises(FloatingPointError):
        qorvane.inv(x[::step], out=x[::step])  # what the pole was is gone from x afterwards


def test_ordinary_arguments_and_nans_warn_of_nothing():
    with numpy.errstate(all="raise"):
        for name, (_, low, high) in UNARY.items():
            # Each place of a block once, so that missing and discarded lanes are covered.
            for count in (1, 3, 9, 1025):
                getattr(qorvane, name)(samples(max(low, -0.99 if abs(low) == 1 else low) + 0.001, high - 0.001, count))
            if name != "erfc":
                assert numpy.isnan(getattr(qorvane, name)(numpy.nan))
        assert qorvane.exp(-numpy.inf) == 0 and qorvane.exp(numpy.inf) == numpy.inf
