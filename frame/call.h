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

// The kernel for all objects of the call: the one for contiguous rows if every stride2 is the element size.
template <Form F, class... Args> inline KeslStatus serially(auto kernel, auto general, const Args&... args)
{
    if constexpr (std::is_same_v<decltype(kernel), decltype(general)>)
        return call<F>(general, args...); // P, and where one serves all
    else return (args.rowsAreContiguous() && ...) ? call < F == S2 ? S : L > (kernel, args...) : call<F>(general, args...);
}

// A base of families whose operations are just those of their elements, as one would write them. They may raise what these
// raise; to write the control word would take longer than their shortest calls.
struct ElementByElement {};

// The body of an exported function.
template <class Member, class T, class Kernel, class General, class Wrapper, class... Args>
[[gnu::always_inline]] inline KeslStatus enter(Kernel kernel, General general, Wrapper wrapper, const Args&... args)
{
    constexpr Form F = std::max({Args::form...});
    constexpr Checks checks = checksOf<Member, T, Args...>();
    if (const KeslStatus status = checkAll<Member, checks.of(F)>(args...)) return status;
    constexpr bool plain = std::is_base_of_v<ElementByElement, Member>;
    [[maybe_unused]] const std::conditional_t<plain, std::tuple<>, QuietArithmetic> arithmetic{};
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
