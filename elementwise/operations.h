// What the families of this directory do with two values, elements or packs of them.
#pragma once

namespace kesl {

// clang-format off
struct Plus      { auto operator()(auto a, auto b) const { return a + b; } };
struct Minus     { auto operator()(auto a, auto b) const { return a - b; } };
struct MinusFrom { auto operator()(auto a, auto b) const { return b - a; } };
struct Times     { auto operator()(auto a, auto b) const { return a * b; } };
struct TimesPlus { auto operator()(auto a, auto b, auto x) const { return a * x + b; } };
struct Combine   { auto operator()(auto a, auto b, auto x, auto y) const { return a * x + b * y; } };
// clang-format on

} // namespace kesl
