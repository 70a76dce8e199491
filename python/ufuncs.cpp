// The module kesl._ufuncs: kesl's functions as generalised ufuncs. NumPy broadcasts, casts and allocates; one call of kesl does
// all objects of a loop (loop.h).
#define NPY_NO_DEPRECATED_API NPY_1_22_API_VERSION
#include <Python.h>
// NumPy's headers come second, in this order
#include <numpy/arrayobject.h>
#include <numpy/ufuncobject.h>

#include "adapters.h"
#include "large.h"
#include "loop.h"
#include "quick.h"
#include <dlfcn.h>
#include <keslcorex.h>

namespace {

constexpr bool neverFails = false;

Row rows[] = {
    row<kesl_matmul_32f, kesl_matmul_64f>("matmul", "(m,k),(k,n)->(m,n)", "Products of matrices.", neverFails),
    row<matvec<float>, matvec<double>>("matvec", "(m,n),(n)->(m)", "Matrices times vectors.", neverFails),
    row<vecmat<float>, vecmat<double>>("vecmat", "(m),(m,n)->(n)", "Vectors times matrices.", neverFails),
    row<kesl_vecdot_32f, kesl_vecdot_64f>("vecdot", "(n),(n)->()", "Sums of products.", neverFails),
    row<cross<float>, cross<double>>("cross", "(n),(n)->(n)", "Cross products, for n = 3.", neverFails),
    row<kesl_norm_32f, kesl_norm_64f>("norm", "(n)->()", "Euclidean lengths.", neverFails),
    row<kesl_trace_32f, kesl_trace_64f>("trace", "(n,n)->()", "Sums of diagonals.", neverFails),
    row<kesl_det_32f, kesl_det_64f>("det", "(n,n)->()", "Determinants."),
    row<kesl_inv_32f, kesl_inv_64f>("inv", "(n,n)->(n,n)", "Inverses."),
    row<kesl_solve_32f, kesl_solve_64f>("solve", "(n,n),(n,k)->(n,k)", "Solutions of linear systems."),
    row<solveVector<float>, solveVector<double>>("solve_vector", "(n,n),(n)->(n)", "Solutions for one right side."),
    row<kesl_cholesky_32f, kesl_cholesky_64f>("cholesky", "(n,n)->(n,n)", "Lower Cholesky factors."),
    row<kesl_qr_32f, kesl_qr_64f>("qr", "(m,n)->(m,n),(n,n)", "Reduced QR factors, for m >= n."),
    row<kesl_lstsq_32f, kesl_lstsq_64f>("lstsq", "(m,n),(m,k)->(n,k)", "Least squares, for m >= n."),
    row<kesl_eigvalsh_32f, kesl_eigvalsh_64f>("eigvalsh", "(n,n)->(n)", "Eigenvalues of symmetric matrices."),
    row<kesl_eigh_32f, kesl_eigh_64f>("eigh", "(n,n)->(n),(n,n)", "Eigenvalues and vectors of symmetric matrices."),
    row<eigvals<float>, eigvals<double>>("eigvals", "(n,n)->(n)", "Eigenvalues."),
    row<eig<float>, eig<double>>("eig", "(n,n)->(n),(n,n)", "Eigenvalues and right eigenvectors."),
    row<kesl_svdvals_32f, kesl_svdvals_64f>("svdvals_m", "(m,n)->(m)", "Singular values, for m <= n."),
    row<kesl_svdvals_32f, kesl_svdvals_64f>("svdvals_n", "(m,n)->(n)", "Singular values, for m >= n."),
    row<kesl_svd_32f, kesl_svd_64f>("svd_m", "(m,n)->(m,m),(m),(m,n)", "Singular values and vectors, for m <= n."),
    row<kesl_svd_32f, kesl_svd_64f>("svd_n", "(m,n)->(m,n),(n),(n,n)", "Singular values and vectors, for m >= n."),
};

// Makes a ufunc and puts it into the module. NumPy keeps pointers to all but the signature.
PyUFuncObject* add(PyObject* module, Row& row, bool ex)
{
    const auto* name = new std::string(std::string(row.name) + (ex ? "_ex" : ""));
    const size_t operands = row.types[0].size() - !ex; // the last type is that of the infos
    const auto* types = new std::string(row.types[0].substr(0, operands) + row.types[1].substr(0, operands));
    auto* data = new void* [] { &row, &row };
    PyObject* ufunc = PyUFunc_FromFuncAndDataAndSignature(
        ex ? row.ex : row.plain, data, const_cast<char*>(types->data()), 2, row.sources, int(operands) - row.sources,
        PyUFunc_None, name->c_str(), row.doc, 0, (std::string(row.signature) + (ex ? ",()" : "")).c_str());
    if (ufunc && PyModule_AddObjectRef(module, name->c_str(), ufunc) < 0) Py_CLEAR(ufunc);
    return reinterpret_cast<PyUFuncObject*>(ufunc);
}

PyObject* library(PyObject*, PyObject*)
{
    Dl_info file{};
    dladdr(reinterpret_cast<void*>(&kesl_version), &file);
    return Py_BuildValue("sss", kesl_version(), kesl_level(), file.dli_fname);
}

PyObject* getThreads(PyObject*, PyObject*) { return PyLong_FromLong(keslCoreGetNumThreads()); }

PyObject* setThreads(PyObject*, PyObject* number)
{
    const int threads = _PyLong_AsInt(number);
    if (PyErr_Occurred()) return nullptr;
    if (keslCoreSetNumThreads(threads) == keslStatusOk) Py_RETURN_NONE;
    return PyErr_Format(PyExc_ValueError, "%d threads are not possible here", threads);
}

PyMethodDef methods[] = {
    {"quick", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&quick)), METH_FASTCALL,
     "quick(ufunc, *sources): its results, or NotImplemented where NumPy has to help."},
    {"library", library, METH_NOARGS, "Version, level and file of the library that is loaded."},
    {"get_threads", getThreads, METH_NOARGS, "How many threads a call may use."},
    {"set_threads", setThreads, METH_O, "Sets how many threads calls may use; 0: as many as are useful."},
    {nullptr, nullptr, 0, nullptr},
};
PyModuleDef definition = {PyModuleDef_HEAD_INIT, "kesl._ufuncs", nullptr, -1, methods, nullptr, nullptr, nullptr, nullptr};

PyObject* make()
{
    import_array();
    import_umath();
    PyObject* module = PyModule_Create(&definition);
    for (Row& row : rows) {
        if (module) row.ufunc = add(module, row, false);
        if (module && row.fails && row.ufunc) row.ufuncEx = add(module, row, true);
        if (PyErr_Occurred()) Py_CLEAR(module);
    }
    return module;
}
} // namespace

PyMODINIT_FUNC PyInit__ufuncs() { return make(); }
