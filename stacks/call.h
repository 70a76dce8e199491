// The road of a call: arguments, threads, packs.
//
// An operation is a class with
//
//     limits                     the largest of each size; 0 where there is no limit
//     shapes(sizes...)           a tuple with the Shape of each operand
//     cost(sizes...)             estimated picoseconds for an object of floats, one thread
//     withOrders(f, sizes...)    (optional) f(sizes...) with those sizes Fixed that have code of their own
//     pack<V>(k, sizes..., operands...)    loads the objects k, works, stores, and returns their infos
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
    const bool failed = any(infos != 0);
    if (info)
        for (int l = 0; l < k.count; ++l) info[k.first + l] = failed ? int(infos[l]) : 0;
    int sum = 0;
    if (failed)
        for (int l = 0; l < k.count; ++l) sum += infos[l] != 0;
    return sum;
}

// Objects first to last - 1; how many failed.
template <class Op, class V, class... O>
[[gnu::noinline]] std::ptrdiff_t slice(std::ptrdiff_t first, std::ptrdiff_t last, int* info, auto sizes, O... operands)
{
    std::ptrdiff_t failed = 0;
    for (std::ptrdiff_t k = first; k < last; k += lanes<V>) {
        const Objects objects{k, int(std::min<std::ptrdiff_t>(last - k, lanes<V>))};
        if (objects.count < lanes<V>) (operands.shorten(objects.count), ...);
        const auto infos = std::apply([&](auto... n) { return Op::template pack<V>(objects, n..., operands...); }, sizes);
        failed += writeInfo<V>(infos, objects, info);
    }
    return failed;
}

// The only size, or the second of two, decides whether there is code of its own; an operation may say otherwise.
template <class Op> auto withOrders(auto f, auto... sizes)
{
    if constexpr (requires { Op::withOrders(f, sizes...); }) return Op::withOrders(f, sizes...);
    else return withOrder(sizes..., f);
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
        const auto withShapes = [&](auto... shape) {
            const auto operands = [&](auto f, const auto&... stack) {
                return f(Operand<PackFor<V, typename std::decay_t<decltype(stack)>::Element>,
                                 typename std::decay_t<decltype(stack)>::Element>(stack, shape.rows, shape.columns)...);
            };
            return operands(
                [&](const auto&... operand) {
                    const auto known = [&](auto... n) { return slice<Op, V>(first, last, info, std::tuple(n...), operand...); };
                    return std::apply([&](auto... n) { return withOrders<Op>(known, n...); }, sizes);
                },
                a, rest...);
        };
        return std::apply(withShapes, std::apply([](auto... n) { return Op::shapes(n...); }, sizes));
    };

    // Fixed ranges of objects, which depend on nothing but the operation and its sizes, of some fifty microseconds each.
    constexpr double chunkTime = 50e6;
    const double cost = std::apply([](auto... n) { return double(Op::cost(double(n)...)); }, sizes) * (sizeof(T) / 4);
    const std::ptrdiff_t chunk = std::ptrdiff_t(1 + chunkTime / std::max(cost, 1.0) / lanes<V>) * lanes<V>;
    if (count <= 2 * chunk) return objects(0, count);
    const auto job = [&](std::ptrdiff_t i) { return objects(i * chunk, std::min(count, (i + 1) * chunk)); };
    using Job = decltype(job);
    return sumOfChunks((count - 1) / chunk + 1, [](const void* j, std::ptrdiff_t i) { return (*static_cast<const Job*>(j))(i); }, &job);
}

} // namespace kesl::stacks
