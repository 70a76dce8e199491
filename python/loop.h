// A kesl function as the loops of a generalised ufunc. Include Python.h and NumPy's headers before it.
#pragma once
#include <algorithm>
#include <complex>
#include <cstddef>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>

// What NumPy calls the element that a pointer leads to.
constexpr char numpyType(const float*) { return NPY_FLOAT; }
constexpr char numpyType(const double*) { return NPY_DOUBLE; }
constexpr char numpyType(const std::complex<float>*) { return NPY_CFLOAT; }
constexpr char numpyType(const std::complex<double>*) { return NPY_CDOUBLE; }
constexpr char numpyType(const int*) { return NPY_INT; }

// A line of the table: a ufunc, and one of the name with _ex that has the infos as its last result.
struct Row {
    const char *name, *signature, *doc;
    bool fails; // products and sums do not; they have no _ex
    int sources;
    std::string types[2]; // of the operands, for 32f and 64f
    PyUFuncGenericFunction plain[2], ex[2];
    PyUFuncObject *ufunc, *ufuncEx; // when they are made
};

// The same by NumPy's functions, for sizes that kesl refuses: large.h.
void large(const Row& row, const std::string& types, char** data, const npy_intp* sizes, const npy_intp* steps);

// The list of arguments says what NumPy must know: sizes and count, each operand as a pointer and its strides, const if it is
// a source, at last the info.
template <auto Function> struct Loop;
template <class... Arguments, ptrdiff_t (*Function)(Arguments...)> struct Loop<Function> {
    static constexpr bool isPointer[] = {std::is_pointer_v<Arguments>...};
    static constexpr int sources = (int(std::is_const_v<std::remove_pointer_t<Arguments>>) + ...);
    static constexpr int operands = (int(std::is_pointer_v<Arguments>) + ...) - 1; // without the info
    static constexpr int sizes = int(std::find(isPointer, std::end(isPointer), true) - isPointer) - 1;
    static constexpr npy_intp chunk = 4096;

    static std::string types()
    {
        std::string all;
        auto append = [&]<class T>(std::type_identity<T>) {
            if constexpr (std::is_pointer_v<T>) all += numpyType(T());
        };
        (append(std::type_identity<Arguments>()), ...);
        return all;
    }

    template <class T> static T argument(npy_intp word)
    {
        if constexpr (std::is_pointer_v<T>) return reinterpret_cast<T>(word);
        else return word;
    }
    template <size_t... I> static ptrdiff_t call(const npy_intp* words, std::index_sequence<I...>)
    {
        return Function(argument<Arguments>(words[I])...);
    }

    // Objects from `first` on. NumPy's `sizes` begin with the count; `steps` are those from object to object of each operand,
    // `inner` those inside the objects, operand by operand.
    static ptrdiff_t part(char** data, const npy_intp* size, const npy_intp* steps, const npy_intp* inner, npy_intp first,
                          npy_intp count, int* info)
    {
        npy_intp words[sizeof...(Arguments)];
        npy_intp* word = std::copy(size + 1, size + 1 + sizes, words);
        *word++ = count;
        for (int i = sizes + 1, operand = -1; i + 1 < int(sizeof...(Arguments)); ++i) {
            if (isPointer[i]) ++operand, *word++ = reinterpret_cast<npy_intp>(data[operand] + first * steps[operand]);
            else *word++ = isPointer[i - 1] ? steps[operand] : *inner++;
        }
        *word = reinterpret_cast<npy_intp>(info);
        return call(words, std::index_sequence_for<Arguments...>());
    }

    static void plain(char** data, const npy_intp* size, const npy_intp* steps, void* row)
    {
        if (part(data, size, steps, steps + operands, 0, size[0], nullptr) < 0)
            large(*static_cast<const Row*>(row), types().substr(0, operands), data, size, steps);
    }

    // kesl wants infos without gaps, NumPy may have its array elsewhere.
    static void ex(char** data, const npy_intp* size, const npy_intp* steps, void* row)
    {
        const npy_intp step = steps[operands];
        const bool packed = step == sizeof(int) || size[0] == 1;
        const npy_intp most = packed ? size[0] : chunk;
        int kept[chunk];
        for (npy_intp first = 0; first < size[0]; first += most) {
            const npy_intp count = std::min(most, size[0] - first);
            char* info = data[operands] + first * step;
            int* infos = packed ? reinterpret_cast<int*>(info) : kept;
            if (part(data, size, steps, steps + operands + 1, first, count, infos) < 0)
                return large(*static_cast<const Row*>(row), types(), data, size, steps);
            if (!packed)
                for (npy_intp i = 0; i < count; ++i) *reinterpret_cast<int*>(info + i * step) = kept[i];
        }
    }
};

template <auto Float, auto Double> Row row(const char* name, const char* signature, const char* doc, bool fails = true)
{
    using F = Loop<Float>;
    using D = Loop<Double>;
    return {name,           signature, doc,    fails, F::sources, {F::types(), D::types()}, {F::plain, D::plain},
            {F::ex, D::ex}, nullptr,   nullptr};
}
