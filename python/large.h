// Sizes that kesl does not take, and calls that NumPy's machinery would slow down. Include NumPy's headers before it.
#pragma once
#include "loop.h"

// By kesl/_large.py, which has NumPy's functions. A loop has no way to fail: an exception stays set, and Python reports it
// when the ufunc returns.
inline void large(const Row& row, const std::string& types, char** data, const npy_intp* sizes, const npy_intp* steps)
{
    const PyGILState_STATE state = PyGILState_Ensure();
    const int operands = int(types.size());
    const PyUFuncObject& ufunc = *(operands == row.ufunc->nargs ? row.ufunc : row.ufuncEx);
    PyObject* views = PyErr_Occurred() ? nullptr : PyTuple_New(operands);
    const npy_intp* inner = steps + operands;
    for (int i = 0; views && i < operands; ++i) {
        npy_intp shape[3] = {sizes[0]}, strides[3] = {steps[i]};
        const int dimensions = ufunc.core_num_dims[i];
        for (int d = 0; d < dimensions; ++d) {
            shape[1 + d] = sizes[1 + ufunc.core_dim_ixs[ufunc.core_offsets[i] + d]];
            strides[1 + d] = *inner++;
        }
        const int flags = i < row.sources ? 0 : NPY_ARRAY_WRITEABLE;
        PyObject* view =
            PyArray_New(&PyArray_Type, 1 + dimensions, shape, types[size_t(i)], strides, data[i], 0, flags, nullptr);
        if (view) PyTuple_SET_ITEM(views, i, view);
        else Py_CLEAR(views);
    }
    PyObject* module = views ? PyImport_ImportModule("kesl._large") : nullptr;
    Py_XDECREF(module ? PyObject_CallMethod(module, "run", "sO", row.name, views) : nullptr);
    Py_XDECREF(module);
    Py_XDECREF(views);
    PyGILState_Release(state);
}
