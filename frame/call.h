// The road of a call: checks, measure, then the kernel or the threaded wrapper.
#pragma once
#include "frame/arithmetic.h"
#include "frame/checks.h"
#include "frame/thresholds.h"

#include <algorithm>
#include <optional>

namespace kesl {

struct Serial {};
constexpr Serial serial; // stands for the wrapper of a function that has none

// A measure of work from the sizes and the count of a call: unsigned, so that it wraps at 32 bits, then taken as signed.
// One that wraps to a negative number is below every threshold.
template <class... Args> int measured(auto measure, const Args&... args)
{
    return int(std::apply(measure, std::tuple_cat(args.sizes()...)));
}

// The body of a kernel is its member's, which takes the count behind all other arguments, and One where there is none. Arguments
// go on by reference: a copy of one whose members were just written waits for them to reach the cache.
template <class Member, class T, Form F, class... Args>
[[gnu::always_inline]] inline KeslStatus runKernel(const Args&... args)
{
    constexpr std::size_t n = sizeof...(Args);
    constexpr bool isCount[n] = {std::is_same_v<Args, Count>...};
    constexpr std::size_t place = std::size_t(std::find(isCount, isCount + n, true) - isCount), others = n - (place < n);
    const auto all = std::forward_as_tuple(args...);
    const auto count = [&] {
        if constexpr (place < n) return std::get<place>(all);
        else return One{};
    }();
    return [&]<std::size_t... i>(std::index_sequence<i...>) KESL_INLINE {
        return Member::template kernel<T, F>(std::get<i + (i >= place)>(all)..., count);
    }(std::make_index_sequence<others>{});
}

// The kernel for all objects of the call: the one for contiguous rows if every stride2 is the element size.
template <Form F, class... Args> inline KeslStatus serially(auto kernel, auto general, const Args&... args)
{
    if constexpr (std::is_same_v<decltype(kernel), decltype(general)>)
        return call<F>(general, args...); // P, and where one serves all
    else return (args.rowsAreContiguous() && ...) ? call < F == S2 ? S : L > (kernel, args...) : call<F>(general, args...);
}

// Bases of members that differ from the rule for exceptions: to write the control word takes longer than the shortest calls,
// so a call on one object raises what its operations raise, and others nothing.
struct ElementByElement {}; // raise what their operations raise, however many objects
struct Iterative {};        // raise nothing: one object already is computed as a finished lane of a pack would be

template <class Member> bool isQuiet(int count)
{
    if constexpr (std::is_base_of_v<ElementByElement, Member>) return false;
    return count != 1 || std::is_base_of_v<Iterative, Member>;
}

// The body of an exported function.
template <class Member, class T, class Kernel, class General, class Wrapper, class... Args>
[[gnu::always_inline]] inline KeslStatus enter(Kernel kernel, General general, Wrapper wrapper, const Args&... args)
{
    constexpr Form F = std::max({Args::form...});
    constexpr Checks checks = checksOf<Member, T, Args...>();
    if (const KeslStatus status = checkAll<Member, checks.of(F)>(args...)) return status;
    std::optional<QuietArithmetic> quiet;
    if (isQuiet<Member>(countOf(args...))) quiet.emplace();
    if constexpr (requires { Member::template first<T>(args...); })
        if (const std::optional<KeslStatus> done = Member::template first<T>(args...)) return *done;
    if constexpr (!std::is_same_v<Wrapper, Serial>) {
        const int threshold = Member::threshold.template of<T>(F, (args.rowsAreContiguous() && ...));
        if (measured(Member::measure, args...) >= threshold) return call<F>(wrapper, args...);
    }
    return serially<F>(kernel, general, args...);
}

// The body of an exported function without kernels, which moves data and computes nothing. A member may name its checks
// by the forms of all its operands.
template <class Member, class T, class... Args> inline KeslStatus direct(const Args&... args)
{
    constexpr Sequence sequence = [] {
        if constexpr (requires { Member::template sequence<T, Args::form...>; })
            return Member::template sequence<T, Args::form...>;
        else return checksOf<Member, T, Args...>().of(std::max({Args::form...}));
    }();
    if (const KeslStatus status = checkAll<Member, sequence>(args...)) return status;
    Member::run(args...);
    return keslStatusOk;
}

} // namespace kesl
