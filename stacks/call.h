// The road of a call: arguments, threads, packs.
//
// An operation is a class with
//
//     limits                     the largest of each size; 0 where there is no limit
//     shapes(sizes...)           a tuple with the Shape of each operand
//     cost(sizes...)             estimated picoseconds for an object of floats, one thread
//     withOrders(f, sizes...)    (optional) f(sizes...) with those sizes Fixed that have code of their own
//     neverFails                 (optional) all infos are 0
//     pack<V>(k, sizes..., operands...)    loads the objects k, works, stores, and returns their infos if there are any
#pragma once
#include "stacks/environment.h"
#include "stacks/operand.h"
#include "stacks/threads.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace kesl::stacks {

// The pack for an operand: ints that go with an operation on V are in lanes of the same width.
template <class V, class T> using PackFor = std::conditional_t<std::is_same_v<std::remove_const_t<T>, int>, IndexOf<V>, V>;

// The place of the first argument that is not acceptable, counted from 1, negated; or 0.
template <class Op, std::size_t s, class... O>
std::ptrdiff_t unacceptable(const std::array<std::ptrdiff_t, s>& sizes, std::ptrdiff_t count, const O&... operands)
{
    for (std::size_t i = 0; i < s; ++i)
        if (sizes[i] < 0 || (Op::limits[i] && sizes[i] > Op::limits[i])) return -std::ptrdiff_t(i + 1);
    if constexpr (requires { Op::isTall; }) // m by n with m >= n
        if (sizes[1] > sizes[0]) return -2;
    if (count < 0) return -std::ptrdiff_t(s + 1);
    std::ptrdiff_t before = s + 1, bad = 0;
    const auto check = [&](const auto& operand, auto shape) {
        if (bad) return;
        if (const int own = operand.unacceptable(count, {shape.rows, shape.columns})) bad = -(before + own);
        before += operand.arguments;
    };
    const auto shapes = std::apply([](auto... n) { return Op::shapes(n...); }, sizes);
    std::apply([&](auto... shape) { (check(operands, shape), ...); }, shapes);
    return bad;
}

// The infos of a pack, narrowed; how many of its objects failed.
template <class V> [[gnu::always_inline]] inline int writeInfo(IndexOf<V> infos, Objects k, int* info)
{
    using Ints = Pack<int, 4 * lanes<V>>;
    if (info) {
        const Ints narrow = __builtin_convertvector(infos, Ints);
        if (k.count == lanes<V>) storePack(info + k.first, narrow);
        else
            for (int l = 0; l < k.count; ++l) info[k.first + l] = narrow[l];
    }
    int sum = 0;
    if (any(infos != 0)) [[unlikely]]
        for (int l = 0; l < k.count; ++l) sum += infos[l] != 0;
    return sum;
}

// Packs of `each` objects from first to last; how many objects failed.
template <class Op, class V, class... Size, class... O> [[gnu::noinline]] std::ptrdiff_t
packs(std::ptrdiff_t first, std::ptrdiff_t last, int each, int* info, std::tuple<Size...> sizes, const O&... operands)
{
    std::ptrdiff_t failed = 0;
    for (Objects k{first, each}; k.first < last; k.first += each) {
        const auto work = [&](auto... n) KESL_INLINE { return Op::template pack<V>(k, n..., operands...); };
        if constexpr (requires { Op::neverFails; }) std::apply(work, sizes);
        else failed += writeInfo<V>(std::apply(work, sizes), k, info);
    }
    if constexpr (requires { Op::neverFails; })
        if (info) std::fill(info + first, info + last, 0);
    return failed;
}

// Full packs, then what is left. The operands are prepared for each.
template <class Op, class V, class... O> std::ptrdiff_t slice(std::ptrdiff_t first, std::ptrdiff_t last, int* info,
                                                              auto sizes, const auto& shapes, const O&... stacks)
{
    const auto some = [&](std::ptrdiff_t from, std::ptrdiff_t to, int each) {
        const auto prepared = [&](auto... shape) {
            return packs<Op, V>(
                from, to, each, info, sizes,
                Operand<PackFor<V, typename O::Element>, typename O::Element>(stacks, shape.rows, shape.columns, each)...);
        };
        return from < to ? std::apply(prepared, shapes) : 0;
    };
    const std::ptrdiff_t full = last - (last - first) % lanes<V>;
    return some(first, full, lanes<V>) + some(full, last, int(last - full));
}

// Whether no destination has an element: then even very many objects are nothing to do.
template <class Op, std::size_t s, class... O> bool hasNoResults(const std::array<std::ptrdiff_t, s>& sizes, const O&...)
{
    const auto none = [](auto... shape) { return ((O::isSource || shape.rows == 0 || shape.columns == 0) && ...); };
    return std::apply(none, std::apply([](auto... n) { return Op::shapes(n...); }, sizes));
}

// An operation of one size has code of its own for small ones, unless it says otherwise.
template <class Op> auto withOrders(auto f, auto... sizes)
{
    if constexpr (requires { Op::withOrders(f, sizes...); }) return Op::withOrders(f, sizes...);
    else return withOrder(sizes..., f);
}

// Fixed ranges of objects, which depend on nothing but the operation and its sizes, of some fifty microseconds each. The
// estimate is inexact, so it must not be computed outside of our environment: the compiler knows the sizes only inside.
template <class Op, class V, std::size_t s> [[gnu::noinline]] std::ptrdiff_t chunkOf(std::array<std::ptrdiff_t, s> sizes)
{
    const Environment environment;
    for (std::ptrdiff_t& n : sizes) asm volatile("" : "+r"(n));
    constexpr double chunkTime = 50e6;
    const double cost =
        std::apply([](auto... n) { return double(Op::cost(double(n)...)); }, sizes) * (sizeof(ElementOf<V>) / 4);
    std::ptrdiff_t packs = std::ptrdiff_t(1 + chunkTime / std::max(cost, 1.0) / lanes<V>);
    asm volatile("" : "+r"(packs));
    return packs * lanes<V>;
}

template <class Op, std::size_t s, class First, class... O>
std::ptrdiff_t call(const std::array<std::ptrdiff_t, s>& sizes, std::ptrdiff_t count, int* info, First a, O... rest)
{
    using T = std::remove_const_t<typename First::Element>;
    using V = Pack<T>;
    if (const auto bad = unacceptable<Op>(sizes, count, a, rest...)) return bad;
    if (count == 0) return 0;

    const auto objects = [&](std::ptrdiff_t first, std::ptrdiff_t last) {
        const Environment environment;
        const auto shapes = std::apply([](auto... n) { return Op::shapes(n...); }, sizes);
        const auto known = [&](auto... n) { return slice<Op, V>(first, last, info, std::tuple(n...), shapes, a, rest...); };
        return std::apply([&](auto... n) { return withOrders<Op>(known, n...); }, sizes);
    };
    if (count <= lanes<V>) return objects(0, count);
    if (hasNoResults<Op>(sizes, a, rest...)) {
        if (info) std::fill_n(info, count, 0);
        return 0;
    }

    const std::ptrdiff_t chunk = chunkOf<Op, V>(sizes);
    if (count <= 2 * chunk) return objects(0, count);
    const auto job = [&](std::ptrdiff_t i) { return objects(i * chunk, std::min(count, (i + 1) * chunk)); };
    using Job = decltype(job);
    return sumOfChunks((count - 1) / chunk + 1,
                       [](const void* j, std::ptrdiff_t i) { return (*static_cast<const Job*>(j))(i); }, &job);
}

} // namespace kesl::stacks
