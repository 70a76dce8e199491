// The checks that open an exported function. Their order is part of the interface: it decides which status a bad call gets.
#pragma once
#include "frame/operand.h"
#include "keslmx.h"

#include <utility>

namespace kesl {

// A sequence of checks, a letter each:
//     N  pointers   C  count   S  sizes   M  sizes that must match   B  strides   R  roiShifts
//     b  stride0, only where count > 1; then B leaves stride0 out
// and behind a letter, which operands it concerns, where that is not all of them:
//     <  the sources   >  the destinations   -  all but the first
struct Sequence {
    char letters[16] = {};
    consteval Sequence(const char* s)
    {
        for (int i = 0; s[i]; ++i) {
            if (i + 1 == sizeof letters || !isKnown(s[i])) unknownOrTooMany();
            letters[i] = s[i];
        }
    }
    static constexpr bool isKnown(char c)
    {
        for (const char* known = "NCSMBRb<>-"; *known; ++known)
            if (*known == c) return true;
        return false;
    }
    static void unknownOrTooMany(); // not a constant: the compiler stops where a sequence is wrong
    constexpr bool has(char c) const
    {
        for (char l : letters)
            if (l == c) return true;
        return false;
    }
};

struct Checks {
    Sequence S, L, P;
    constexpr Sequence of(Form f) const { return f == kesl::P ? P : inL(f) ? L : S; }
};

// clang-format off
//                                     standard   L          P
constexpr Checks singleChecks      = { "NSB",     "",        "NSR"    };
constexpr Checks singleMatchChecks = { "NSMB",    "",        "NSMR"   };
constexpr Checks arrayChecks       = { "NCSB",    "NCSBR",   "NCSBR"  };
constexpr Checks arrayMatchChecks  = { "NCSMB",   "NCSMBR",  "NCSMBR" };
// clang-format on

// The rule by which a member has its checks, unless it names others for an element type.
template <class Member, class T, class... Args> consteval Checks checksOf()
{
    constexpr bool array = (Args::isArray || ...), match = requires { Member::sizesMatch; };
    if constexpr (requires { Member::template checks<T>; }) return Member::template checks<T>;
    else return array ? (match ? arrayMatchChecks : arrayChecks) : (match ? singleMatchChecks : singleChecks);
}

constexpr bool concerns(char which, bool isFirst, bool isSource)
{
    return which == '<' ? isSource : which == '>' ? !isSource : which == '-' ? !isFirst : true;
}

// The check of a letter on a whole list. `which` is the character behind the letter.
template <class Member, char letter, char which, bool stride0Deferred, class... Args>
inline KeslStatus check(const Args&... args)
{
    bool first = true;
    const auto all = [&](auto ok) {
        return ((!concerns(which, std::exchange(first, false), Args::isSource) || ok(args)) && ...);
    };
    if constexpr (letter == 'N') return all([](auto& a) { return a.pointerOk(); }) ? keslStatusOk : keslStatusNullPointer;
    if constexpr (letter == 'C') return all([](auto& a) { return a.countOk(); }) ? keslStatusOk : keslStatusBadCount;
    if constexpr (letter == 'S') return all([](auto& a) { return a.sizeOk(); }) ? keslStatusOk : keslStatusBadSize;
    if constexpr (letter == 'M')
        return std::apply(Member::sizesMatch, std::tuple_cat(args.sizes()...)) ? keslStatusOk : keslStatusSizeMismatch;
    if constexpr (letter == 'B')
        return all([](auto& a) { return a.stridesOk() && (stride0Deferred || a.stride0Ok()); }) ? keslStatusOk
                                                                                                : keslStatusBadStride;
    if constexpr (letter == 'b')
        return countOf(args...) <= 1 || all([](auto& a) { return a.stride0Ok(); }) ? keslStatusOk : keslStatusBadStride;
    if constexpr (letter == 'R') return all([](auto& a) { return a.shiftOk(); }) ? keslStatusOk : keslStatusBadRoiShift;
    return keslStatusOk; // '<', '>' and '-' check nothing of their own
}

template <class Member, Sequence sequence, class... Args> inline KeslStatus checkAll(const Args&... args)
{
    return [&]<int... i>(std::integer_sequence<int, i...>) {
        KeslStatus status = keslStatusOk;
        (void)((status = check<Member, sequence.letters[i], sequence.letters[i + 1], sequence.has('b')>(args...)) || ...);
        return status;
    }(std::make_integer_sequence<int, sizeof sequence.letters - 1>{});
}

} // namespace kesl
