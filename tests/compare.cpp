// What memory holds after a call, against what the reference left in its shadow.
#include "case.h"

#include <cmath>
#include <cstring>

namespace {
template <class T> bool sameBits(T a, T b) { return std::memcmp(&a, &b, sizeof(T)) == 0; }
} // namespace

std::string Case::compare(bool bufferIsFree)
{
    return f.elemSize == 4 ? compareAs<float>(bufferIsFree) : compareAs<double>(bufferIsFree);
}

template <class T> std::string Case::compareAs(bool bufferIsFree)
{
    const auto equal = [&] {
        for (const Placed& p : placed)
            for (auto [begin, size] : p.windows)
                if (std::memcmp(begin, begin + p.arena->toShadow, size) != 0) return false;
        return true;
    };
    for (size_t i = 0; i < placed.size(); ++i)
        if (!placed[i].list.empty() && std::memcmp(placed[i].listAt, placed[i].list.data(), placed[i].list.size() * 8) != 0)
            return "the list of " + f.operands[i].name + " changed";
    if (equal()) return "";

    // What is not fixed to the bit: which NaN, perhaps the sign of a zero, scratch.
    const bool zerosAlike = reference.zerosAlike && reference.zerosAlike(dims);
    for (size_t i = 0; i < f.operands.size(); ++i) {
        const Operand& o = f.operands[i];
        const Placed& p = placed[i];
        if (o.scratch && bufferUsed && bufferIsFree)
            std::memcpy(p.begin + p.arena->toShadow, p.begin, size_t(p.end - p.begin));
        if (!o.destination || o.integer) continue;
        for (int k = 0; k < p.objects; ++k) {
            const View<T> got = view<T>(int(i), k, false), want = view<T>(int(i), k, true);
            for (int r = 0; r < o.rows(dims); ++r)
                for (int c = 0; c < o.columns(dims); ++c) {
                    T& a = got(r, c);
                    T& b = want(r, c);
                    if (sameBits(a, b)) continue;
                    if (zerosAlike && a == 0 && b == 0) {
                        b = a;
                        continue;
                    }
                    if (f.movesData() || !std::isnan(a) || !std::isnan(b))
                        return format("%s(k=%d, i=%d, j=%d) is %.17g = %a, expected %.17g = %a", o.name.c_str(), k, r, c,
                                      double(a), double(a), double(b), double(b));
                    b = a;
                }
        }
    }
    for (size_t i = 0; i < placed.size(); ++i)
        for (auto [begin, size] : placed[i].windows)
            for (size_t b = 0; b < size; ++b)
                if (begin[b] != begin[ptrdiff_t(b) + placed[i].arena->toShadow])
                    return format("byte %td of %s changed (0 is its first, %td behind its last), though it is not a result",
                                  begin + b - placed[i].begin, f.operands[i].name.c_str(), placed[i].end - placed[i].begin);
    return "";
}

std::vector<char> Case::results() const
{
    std::vector<char> all;
    for (size_t i = 0; i < f.operands.size(); ++i) {
        const Operand& o = f.operands[i];
        if (!o.destination) continue;
        for (int k = 0; k < placed[i].objects; ++k)
            for (int r = 0; r < o.rows(dims); ++r)
                for (int c = 0; c < o.columns(dims); ++c) {
                    const auto append = [&](auto value) {
                        if (value != value && !f.movesData()) value = decltype(value)(NAN);
                        const char* bytes = reinterpret_cast<const char*>(&value);
                        all.insert(all.end(), bytes, bytes + sizeof value);
                    };
                    if (o.integer) append(view<int>(int(i), k, false)(r, c));
                    else if (f.elemSize == 4) append(view<float>(int(i), k, false)(r, c));
                    else append(view<double>(int(i), k, false)(r, c));
                }
    }
    return all;
}
