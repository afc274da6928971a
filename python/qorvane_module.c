// The library's functions as NumPy ufuncs, made from the table of functions: a real function and its
// complex namesake are two loops of one ufunc. Functions with a scalar exponent have none: pow
// broadcasts.
//
// Operands go to the library as they stand where they are contiguous and the result has memory of
// its own, and through buffers otherwise. Blocks are a multiple of what kernels take at once, so that
// results have the bits of a single call. In-place operands go through buffers too: sources must
// still be there when a block is looked through for what failed.
#define NPY_NO_DEPRECATED_API NPY_1_7_API_VERSION
#define PY_SSIZE_T_CLEAN
#include <Python.h>
#include <fenv.h>
#include <float.h>
#include <math.h>
#include <numpy/ndarraytypes.h>
#include <numpy/ufuncobject.h>
#include <stdbool.h>
#include <string.h>

#include "qorvane.h"

enum { blockLength = 1024, maxOperands = 3 };
enum Shape { realUnary, realBinary, realSplit, realScalar, complexUnary, complexBinary, complexScalar };

typedef void (*AnyFunction)(void);
typedef nuvStatus (*Unary)(const void*, void*, int32_t);
typedef nuvStatus (*Binary)(const void*, const void*, void*, int32_t);
typedef nuvStatus (*Split)(const void*, void*, void*, int32_t);

typedef struct Row {
  const char* stem;
  const char* entry;
  enum Shape shape;
  AnyFunction function;
  int kinds;  // the floating-point exceptions that its elements can have
} Row;

static Row rows[] = {
#define FUNCTION(name, stem, shape, family, programs) {#stem, "nuvs" #name, shape, (AnyFunction)nuvs##name, 0},
#include "frame/functions.inc"
#undef FUNCTION
};
enum { rowCount = sizeof rows / sizeof *rows };

static bool isComplex(const Row* row) { return row->shape >= complexUnary; }
static int sourceCount(const Row* row) { return row->shape == realBinary || row->shape == complexBinary ? 2 : 1; }
static int operandCount(const Row* row) { return row->shape == realSplit ? 3 : sourceCount(row) + 1; }
static bool named(const Row* row, const char* stem) { return strcmp(row->stem, stem) == 0; }

// Overflow and underflow of these have no status of the library, or not in every case.
static bool failsSilently(const Row* row) {
  return isComplex(row) || named(row, "pow") || named(row, "inv") || named(row, "div") || named(row, "erfc");
}

// The kinds that its statuses tell of, or all of them.
static int kindsOf(const Row* row) {
  enum { nothing = 0, overflow = FE_OVERFLOW, underflow = FE_UNDERFLOW, pole = FE_DIVBYZERO, outOfDomain = FE_INVALID };
  static const struct {
    const char* stem;
    int kinds;
  } programs[] = {
#define CONTRACT(stem, program, check, mxcsr, x87, gives, ...) {#stem, gives},
#include "tests/contracts.inc"
#undef CONTRACT
  };
  int kinds = 0;
  for (size_t i = 0; i < sizeof programs / sizeof *programs; i++) {
    if (named(row, programs[i].stem)) kinds |= programs[i].kinds;
  }
  if (!failsSilently(row)) return kinds;
  return FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | (isComplex(row) ? 0 : FE_UNDERFLOW);
}

static bool anyNan(const double* x, int width) { return isnan(x[0]) || (width == 2 && isnan(x[1])); }
static bool allFinite(const double* x, int width) { return isfinite(x[0]) && (width == 1 || isfinite(x[1])); }

// Whether a finite argument that gave an infinity is a pole of a function of one argument: all poles
// are 0, ±1 or ±i, and no overflow is near them but that of 1/x, at subnormal arguments.
static bool isPole(double x) { return x == 0.0 || fabs(x) == 1.0; }

// The floating-point exceptions that IEEE functions would raise for the elements of a block, beside
// those that were found before.
static int exceptionsOf(const Row* row, int found, const double* const* sources, const double* results,
                        npy_intp count) {
  const int width = isComplex(row) ? 2 : 1;
  const int sourcesUsed = sourceCount(row);
  const bool underflows = (row->kinds & FE_UNDERFLOW) != 0;
  for (npy_intp i = 0; i < count * width && (row->kinds & ~found) != 0; i += width) {
    const double* result = results + i;
    const bool ordinary = fabs(result[0]) <= DBL_MAX && (width == 1 || fabs(result[1]) <= DBL_MAX);
    if (ordinary && !(underflows && fabs(result[0]) < DBL_MIN)) continue;
    const double* first = sources[0] + i;
    const double* last = sources[sourcesUsed - 1] + i;
    const bool finite = allFinite(first, width) && allFinite(last, width);
    if (ordinary) {
      if (finite && first[0] != 0.0) found |= FE_UNDERFLOW;
    } else if (anyNan(result, width)) {
      if (!anyNan(first, width) && !anyNan(last, width)) found |= FE_INVALID;
    } else if (finite) {
      bool pole = isPole(first[0]) && (width == 1 || isPole(first[1]));
      if (sourcesUsed == 2) {
        const double* base = named(row, "div") ? last : first;
        pole = base[0] == 0.0 && (width == 1 || base[1] == 0.0);
      }
      found |= pole ? FE_DIVBYZERO : FE_OVERFLOW;
    }
  }
  return found;
}

static nuvStatus call(const Row* row, double* const* operands, int32_t count) {
  if (row->shape == realSplit) return ((Split)row->function)(operands[0], operands[1], operands[2], count);
  if (sourceCount(row) == 2) return ((Binary)row->function)(operands[0], operands[1], operands[2], count);
  return ((Unary)row->function)(operands[0], operands[1], count);
}

static void copy(char* to, npy_intp toStep, const char* from, npy_intp fromStep, npy_intp count, size_t size) {
  for (npy_intp i = 0; i < count; i++, to += toStep, from += fromStep) {
    if (size == sizeof(double)) {
      memcpy(to, from, sizeof(double));
    } else {
      memcpy(to, from, sizeof(Complex64));
    }
  }
}

// The inner loop of every ufunc.
static void loop(char** args, const npy_intp* dimensions, const npy_intp* steps, void* data) {
  const Row* row = data;
  const npy_intp size = isComplex(row) ? sizeof(Complex64) : sizeof(double);
  const int sourcesUsed = sourceCount(row);
  const int operandsUsed = operandCount(row);
  npy_intp length = blockLength;
  bool buffered[maxOperands];
  for (int k = 0; k < operandsUsed; k++) buffered[k] = steps[k] != size;
  for (int k = 0; k < sourcesUsed; k++) {
    for (int r = sourcesUsed; r < operandsUsed; r++) buffered[k] |= args[k] == args[r];
  }
  // reduce() and accumulate() take each result as the next source.
  const npy_intp resultStep = steps[sourcesUsed];
  if (sourcesUsed == 2 && steps[0] == resultStep && (resultStep == 0 || args[0] + resultStep == args[2])) length = 1;

  // NumPy reads the flags after the loop, and kernels raise some for lanes that they discard. The
  // default modes, FTZ and DAZ off, make results independent of what other libraries have set.
  fenv_t environment;
  fegetenv(&environment);
  fesetenv(FE_DFL_ENV);
  int exceptions = 0;
  double buffers[maxOperands][2 * blockLength];
  for (npy_intp begin = 0; begin < dimensions[0]; begin += length) {
    const npy_intp count = dimensions[0] - begin < length ? dimensions[0] - begin : length;
    double* operands[maxOperands];
    for (int k = 0; k < operandsUsed; k++) {
      operands[k] = buffered[k] ? buffers[k] : (double*)(void*)(args[k] + begin * size);
      if (buffered[k] && k < sourcesUsed)
        copy((char*)buffers[k], size, args[k] + begin * steps[k], steps[k], count, (size_t)size);
    }
    const nuvStatus status = call(row, operands, (int32_t)count);
    if (status > nuvStatusOk || failsSilently(row))
      exceptions = exceptionsOf(row, exceptions, (const double* const*)operands, operands[sourcesUsed], count);
    for (int k = sourcesUsed; k < operandsUsed; k++) {
      if (buffered[k]) copy(args[k] + begin * steps[k], steps[k], (char*)buffers[k], size, count, (size_t)size);
    }
  }
  fesetenv(&environment);
  if (exceptions != 0) feraiseexcept(exceptions);
}

// The row of the complex function with a real one's name: complexExp for exp.
static Row* complexNamesake(const Row* real) {
  for (int i = 0; i < rowCount; i++) {
    const char* stem = rows[i].stem;
    if (strncmp(stem, "complex", 7) == 0 && (stem[7] | 0x20) == real->stem[0] && strcmp(stem + 8, real->stem + 1) == 0)
      return &rows[i];
  }
  return NULL;
}

static int addFunctions(PyObject* module) {
  // NumPy keeps pointers to all of these.
  static PyUFuncGenericFunction loops[2] = {loop, loop};
  static char types[maxOperands + 1][2 * maxOperands];
  static void* data[rowCount][2];
  static char docs[rowCount][128];
  for (int t = 0; t < maxOperands + 1; t++) {
    for (int k = 0; k < 2 * t; k++) types[t][k] = k < t ? NPY_DOUBLE : NPY_CDOUBLE;
  }
  for (int i = 0; i < rowCount; i++) {
    Row* row = &rows[i];
    if (isComplex(row) || row->shape == realScalar) continue;
    Row* namesake = complexNamesake(row);
    row->kinds = kindsOf(row);
    if (namesake != NULL) namesake->kinds = kindsOf(namesake);
    const int operandsUsed = operandCount(row);
    data[i][0] = row;
    data[i][1] = namesake;
    snprintf(docs[i], sizeof docs[i], "%s%s%s over arrays.", row->entry, namesake != NULL ? " and " : "",
             namesake != NULL ? namesake->entry : "");
    PyObject* ufunc =
        PyUFunc_FromFuncAndData(loops, data[i], types[operandsUsed], namesake != NULL ? 2 : 1, sourceCount(row),
                                operandsUsed - sourceCount(row), PyUFunc_None, row->stem, docs[i], 0);
    if (ufunc == NULL) return -1;
    const int failed = PyModule_AddObjectRef(module, row->stem, ufunc);
    Py_DECREF(ufunc);
    if (failed != 0) return -1;
  }
  return 0;
}

PyMODINIT_FUNC PyInit_qorvane(void) {
  static struct PyModuleDef definition = {PyModuleDef_HEAD_INIT, .m_name = "qorvane", .m_size = -1,
                                          .m_doc = "Vector elementary functions in double precision, as ufuncs."};
  import_array();
  import_umath();
  PyObject* module = PyModule_Create(&definition);
  if (module == NULL) return NULL;
  char version[32];
  snprintf(version, sizeof version, "%d.%d.%d", QORVANE_VERSION_MAJOR, QORVANE_VERSION_MINOR, QORVANE_VERSION_PATCH);
  if (PyModule_AddStringConstant(module, "__version__", version) != 0 || addFunctions(module) != 0) {
    Py_DECREF(module);
    return NULL;
  }
  return module;
}
