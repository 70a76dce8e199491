// The yardstick of memory: a flat add of one or two arrays, and memcpy.
#pragma once
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <omp.h>
#include <vector>

namespace bench {

class Flat {
    std::vector<float> memory;

public:
    void use(std::int64_t bytes) { memory.resize(std::max(memory.size(), std::size_t(bytes / 4 + 48)), 1.0f); }

    [[gnu::noinline]] static void addOne(const float* x, float* y, std::int64_t n)
    {
#pragma GCC ivdep
        for (std::int64_t i = 0; i < n; ++i) y[i] = x[i] + 1.0f;
    }
    [[gnu::noinline]] static void addTwo(const float* x, const float* y, float* z, std::int64_t n)
    {
#pragma GCC ivdep
        for (std::int64_t i = 0; i < n; ++i) z[i] = x[i] + y[i];
    }
    // Moves bytes in all: as many written as read, or half as many.
    void add(std::int64_t bytes, bool two, int threads)
    {
        const std::int64_t n = bytes / (two ? 12 : 8);
        slices(n, threads, [&](std::int64_t begin, std::int64_t length) {
            float* const p = memory.data() + begin;
            if (two) addTwo(p, p + n + 16, p + 2 * (n + 16), length);
            else addOne(p, p + n + 16, length);
        });
    }
    void copy(std::int64_t bytes, int threads)
    {
        const std::int64_t n = bytes / 8;
        slices(n, threads, [&](std::int64_t begin, std::int64_t length) {
            std::memcpy(memory.data() + n + 16 + begin, memory.data() + begin, std::size_t(length) * 4);
        });
    }

private:
    static void slices(std::int64_t n, int threads, auto body)
    {
        if (threads == 1) return body(std::int64_t{0}, n);
#pragma omp parallel num_threads(threads)
        {
            const std::int64_t t = omp_get_thread_num(), nt = omp_get_num_threads();
            body(n * t / nt, n * (t + 1) / nt - n * t / nt);
        }
    }
};

} // namespace bench
