// Rows of the benchmark: their names, data and contenders, whatever is measured.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

// Gapped is one element unused behind each row, strided one behind every element, soa a structure of arrays, L a pointer for
// each object, P one for each element.
enum class Layout { packed, columns, gapped, strided, soa, L, P };
inline constexpr const char* layoutNames[] = {"packed", "columns", "gapped", "strided", "soa", "L", "P"};

enum class Size { one, cache, many, stream };
inline constexpr const char* sizeNames[] = {"one", "cache", "many", "stream"};

// Data are the same in every run.
struct Random {
    std::uint64_t state;
    double operator()() // uniform in [-1, 1)
    {
        state = state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<double>(static_cast<std::int64_t>(state) >> 11) * 0x1p-52;
    }
};

// Well conditioned, but such that pivoting has something to do: a dominant diagonal, with its rows exchanged at random.
template <class T> void fillRegular(T* a, int n, Random& random)
{
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) a[i * n + j] = static_cast<T>(random() + (i == j ? n : 0));
    for (int i = n - 1; i > 0; --i) {
        const int q = static_cast<int>((random() + 1) / 2 * (i + 1));
        for (int j = 0; j < n && q < i; ++j) std::swap(a[i * n + j], a[q * n + j]);
    }
}

// Objects begin to end - 1.
struct Range {
    int begin, end;
};

struct Contender {
    std::string name;
    std::function<void(int begin, int end)> run;
    bool aside = false;
    bool threadsItself = false; // the library: it is called once on all objects, with the number of threads of the row
};

// A row's data and contenders; the library is the first contender.
struct Prepared {
    int count;
    std::int64_t bytesRead, bytesWritten;
    std::vector<Contender> contenders;
    std::function<void()> poison;
    std::function<std::vector<double>(int k)> result; // everything written for object k
    double tolerance;                                 // of a result, relative to the largest element of its object
};

struct Row {
    std::string family, type;
    int order;
    Layout layout;
    Size size;
    int threads;
    std::int64_t objectBytes; // of one object in all arrays together
    std::function<Prepared(int count)> prepare;
    std::string name() const
    {
        return family + '/' + type + '/' + std::to_string(order) + '/' + layoutNames[int(layout)] + '/' +
               sizeNames[int(size)] + '/' + std::to_string(threads) + 't';
    }
};
inline std::vector<Row>& allRows() // filled while the families register themselves
{
    static std::vector<Row> rows;
    return rows;
}

} // namespace bench
