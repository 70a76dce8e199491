// A call on arrays that need nothing of NumPy's machinery, which costs more than the arithmetic on a few small matrices.
#pragma once
#include "loop.h"

// quick(ufunc, sources...): the results, or NotImplemented unless all sources are plain arrays of one of kesl's types, aligned,
// single objects or stacks along one axis of the same length, and their sizes fit.
inline PyObject* quick(PyObject*, PyObject* const* arguments, Py_ssize_t given)
{
    if (given < 1 || !PyObject_TypeCheck(arguments[0], &PyUFunc_Type)) Py_RETURN_NOTIMPLEMENTED;
    const PyUFuncObject& ufunc = *reinterpret_cast<PyUFuncObject*>(arguments[0]);
    constexpr int most = 8;
    npy_intp sizes[1 + most] = {1}, steps[3 * most], *inner = steps + ufunc.nargs;
    char* data[most];
    PyObject* results[most];
    if (given != 1 + ufunc.nin || ufunc.nargs > most) Py_RETURN_NOTIMPLEMENTED;

    std::copy(ufunc.core_dim_sizes, ufunc.core_dim_sizes + ufunc.core_num_dim_ix, sizes + 1); // -1 where any size will do
    int type = -1, stack = -1;
    for (int i = 0; i < ufunc.nin; ++i) {
        if (!PyArray_CheckExact(arguments[1 + i])) Py_RETURN_NOTIMPLEMENTED;
        auto* array = reinterpret_cast<PyArrayObject*>(arguments[1 + i]);
        const int core = ufunc.core_num_dims[i], leading = PyArray_NDIM(array) - core;
        if (i == 0) type = PyArray_TYPE(array), stack = leading, sizes[0] = leading == 1 ? PyArray_DIM(array, 0) : 1;
        if (PyArray_TYPE(array) != type || leading != stack || !PyArray_ISBEHAVED_RO(array)) Py_RETURN_NOTIMPLEMENTED;
        if (stack != 0 && (stack != 1 || PyArray_DIM(array, 0) != sizes[0])) Py_RETURN_NOTIMPLEMENTED;
        for (int d = 0; d < core; ++d) {
            npy_intp& size = sizes[1 + ufunc.core_dim_ixs[ufunc.core_offsets[i] + d]];
            if (size < 0) size = PyArray_DIM(array, stack + d);
            if (size != PyArray_DIM(array, stack + d)) Py_RETURN_NOTIMPLEMENTED;
            *inner++ = PyArray_STRIDE(array, stack + d);
        }
        data[i] = PyArray_BYTES(array);
        steps[i] = stack ? PyArray_STRIDE(array, 0) : 0;
    }
    if (type != NPY_FLOAT && type != NPY_DOUBLE) Py_RETURN_NOTIMPLEMENTED;

    npy_intp elements = 0;
    const int loop = type == NPY_DOUBLE;
    for (int i = ufunc.nin; i < ufunc.nargs; ++i) {
        const int core = ufunc.core_num_dims[i];
        npy_intp shape[3] = {sizes[0]};
        for (int d = 0; d < core; ++d) shape[stack + d] = sizes[1 + ufunc.core_dim_ixs[ufunc.core_offsets[i] + d]];
        PyObject* result = PyArray_SimpleNew(stack + core, shape, ufunc.types[loop * ufunc.nargs + i]);
        if (!result) {
            while (i-- > ufunc.nin) Py_DECREF(results[i]);
            return nullptr;
        }
        results[i] = result;
        auto* array = reinterpret_cast<PyArrayObject*>(result);
        inner = std::copy(PyArray_STRIDES(array) + stack, PyArray_STRIDES(array) + stack + core, inner);
        data[i] = PyArray_BYTES(array);
        steps[i] = stack ? PyArray_STRIDE(array, 0) : 0;
        elements += PyArray_SIZE(array);
    }

    NPY_BEGIN_THREADS_DEF;
    NPY_BEGIN_THREADS_THRESHOLDED(elements + sizes[0]);
    ufunc.functions[loop](data, sizes, steps, ufunc.data[loop]);
    NPY_END_THREADS;

    PyObject* all = ufunc.nout == 1 ? results[ufunc.nin] : PyTuple_New(ufunc.nout);
    for (int i = ufunc.nin; all && ufunc.nout > 1 && i < ufunc.nargs; ++i)
        PyTuple_SET_ITEM(all, i - ufunc.nin, PyArray_Return(reinterpret_cast<PyArrayObject*>(results[i])));
    if (ufunc.nout == 1) all = PyArray_Return(reinterpret_cast<PyArrayObject*>(all));
    if (!PyErr_Occurred()) return all;
    Py_XDECREF(all);
    return nullptr;
}
