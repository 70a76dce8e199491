#include "work.h"

#include <algorithm>
#include <kesl.h>
#include <keslcorex.h>
#include <keslmx.h>

const char* name(Library library) { return library == Library::kesl ? "kesl" : "keslmx"; }

Work::Work(Library l, int n) : library(l), count(n), a(size_t(n) * 9), x(a.size())
{
    for (size_t i = 0; i < a.size(); ++i) a[i] = i % 9 % 4 ? 0.f : 2.f;
}

bool Work::isRight()
{
    constexpr int s2 = sizeof(float), s1 = 3 * s2, s0 = 3 * s1;
    std::fill(x.begin(), x.end(), -1.f);
    if (library == Library::kesl) {
        if (kesl_inv_32f(3, count, a.data(), s0, s1, s2, x.data(), s0, s1, s2, nullptr)) return false;
    } else {
        float buffer[12];
        if (keslInvert_ma_32f(a.data(), s0, s1, s2, buffer, x.data(), s0, s1, s2, 3, count)) return false;
    }
    for (size_t i = 0; i < x.size(); ++i)
        if (x[i] != (i % 9 % 4 ? 0.f : 0.5f)) return false;
    return true;
}

void askFor(int threads) { keslCoreSetNumThreads(threads); }
