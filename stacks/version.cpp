// What is loaded, and what a result means.
#pragma GCC visibility push(default) // what this header declares is what leaves the library
#include "kesl.h"
#pragma GCC visibility pop

#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

// The arguments of every function. The number behind an operand is that of its strides.
constexpr struct {
    const char* name;
    const char* arguments;
} functions[] = {
    {"matmul", "m k n count a3 b3 c3 info"}, {"vecdot", "n count a2 b2 x1 info"},
    {"norm", "n count a2 x1 info"},          {"cross", "count a2 b2 c2 info"},
    {"trace", "n count a3 x1 info"},         {"det", "n count a3 x1 info"},
    {"inv", "n count a3 x3 info"},           {"solve", "n k count a3 b3 x3 info"},
    {"lu", "n count a3 lu3 pivots2 info"},   {"lu_solve", "n k count lu3 pivots2 b3 x3 info"},
    {"cholesky", "n count a3 l3 info"},      {"cholesky_solve", "n k count l3 b3 x3 info"},
    {"qr", "m n count a3 q3 r3 info"},       {"lstsq", "m n k count a3 b3 x3 info"},
    {"eigvalsh", "n count a3 w2 info"},      {"eigh", "n count a3 w2 v3 info"},
    {"eigvals", "n count a3 wr2 wi2 info"},  {"eig", "n count a3 wr2 wi2 vr3 vl3 info"},
    {"svdvals", "m n count a3 s2 info"},     {"svd", "m n count a3 u3 s2 vt3 info"},
};

// The arguments of a function named with or without kesl_ and the type, or null.
const char* argumentsOf(const char* function)
{
    if (!std::strncmp(function, "kesl_", 5)) function += 5;
    std::size_t length = std::strlen(function);
    if (length > 4 && (!std::strcmp(function + length - 4, "_32f") || !std::strcmp(function + length - 4, "_64f")))
        length -= 4;
    for (const auto& f : functions)
        if (std::strlen(f.name) == length && !std::strncmp(f.name, function, length)) return f.arguments;
    return nullptr;
}

// Writes the name of argument i, counted from 1, such as "aStride1"; nothing if there is none.
void writeArgument(char* text, std::size_t size, const char* arguments, std::ptrdiff_t i)
{
    text[0] = '\0';
    while (arguments && *arguments) {
        const int length = int(std::strcspn(arguments, " "));
        const int strides = arguments[length - 1] >= '1' && arguments[length - 1] <= '3' ? arguments[length - 1] - '0' : 0;
        const int letters = length - (strides > 0);
        if (i == 1) std::snprintf(text, size, "%.*s", letters, arguments);
        else if (i <= 1 + strides) std::snprintf(text, size, "%.*sStride%d", letters, arguments, int(i - 2));
        if (i <= 1 + strides) return;
        i -= 1 + strides;
        arguments += length + (arguments[length] == ' ');
    }
}

} // namespace

extern "C" {

const char* kesl_version(void) { return KESL_VERSION; }

const char* kesl_level(void)
{
#if defined(__AVX512F__)
    return "x86-64-v4";
#elif defined(__AVX2__)
    return "x86-64-v3";
#else
    return "x86-64";
#endif
}

char* kesl_strerror(const char* function, std::ptrdiff_t result, char* text, std::size_t size)
{
    char argument[32];
    writeArgument(argument, sizeof argument, argumentsOf(function), -result);
    if (result > 0) std::snprintf(text, size, "%s: %td objects failed; info tells which", function, result);
    else if (result == 0) std::snprintf(text, size, "%s: every object was done", function);
    else if (*argument) std::snprintf(text, size, "%s: argument %td, %s, is not acceptable", function, -result, argument);
    else std::snprintf(text, size, "%s: %td is not a result of this function", function, result);
    return text;
}
}
