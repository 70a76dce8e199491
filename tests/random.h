#pragma once
#include <cstdint>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

// A small generator, so that every case is reproducible from the name of its function and its number. A fuzzer gives bytes
// that decide as long as there are some.
struct Random {
    uint64_t state;
    const uint8_t *bytes = nullptr, *end = nullptr;

    explicit Random(uint64_t seed) : state(seed) {}
    Random(const std::string& name, int number) : state(0)
    {
        for (char c : name) state = (state ^ uint64_t(c)) * 0x100000001b3;
        state += uint64_t(number) * 0xd1342543de82ef95;
    }
    uint64_t next() // splitmix64
    {
        if (bytes != end)
            for (int i = 0; i < 4 && bytes != end; ++i) state = state << 8 | *bytes++;
        uint64_t z = state += 0x9e3779b97f4a7c15;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return z ^ (z >> 31);
    }
    int below(int n) { return bytes != end && n <= 256 ? *bytes++ % n : int((next() >> 33) % uint64_t(n)); }
    int between(int low, int high) { return low + below(high - low + 1); }
    bool chance(int percent) { return below(100) < percent; }
    double unit() { return double(next() >> 11) * 0x1p-53; }
    template <class List> auto pick(const List& list) { return list[size_t(below(int(std::size(list))))]; }

    std::vector<int> permutation(int n)
    {
        std::vector<int> p(size_t(n), 0);
        std::iota(p.begin(), p.end(), 0);
        for (int i = n - 1; i > 0; --i) std::swap(p[size_t(i)], p[size_t(below(i + 1))]);
        return p;
    }
};

// Entry number of a sequence that holds each of 0 .. n-1 once in every n entries, in changing order: so every value of
// a dimension is covered by any n successive cases, and values of different dimensions meet at random.
inline int inTurn(const std::string& dimension, int n, int number)
{
    return Random(dimension, number / n).permutation(n)[size_t(number % n)];
}

// A number at which something turns.
template <class T> T special(Random& r)
{
    using Limits = std::numeric_limits<T>;
    const T list[] = {0,
                      T(-0.0),
                      1,
                      -1,
                      Limits::infinity(),
                      -Limits::infinity(),
                      Limits::quiet_NaN(),
                      Limits::min(),
                      -Limits::min(),
                      Limits::denorm_min(),
                      Limits::min() / 2,
                      Limits::max(),
                      -Limits::max(),
                      Limits::epsilon(),
                      Limits::signaling_NaN()};
    return r.pick(list);
}
