#include "problems.h"

#include <algorithm>
#include <cmath>

namespace stacks {
namespace {

double entry(Random& random) { return 2 * random.unit() - 1; }
double sign(Random& random) { return random.chance(50) ? 1 : -1; }

template <class T> void fill(Data data, Values& v, std::ptrdiff_t k, Random& random)
{
    const int n = std::min(v.rows, v.cols);
    const auto a = [&](int i, int j) -> T& { return v.at<T>(k, i, j); };
    for (int i = 0; i < v.rows; ++i)
        for (int j = 0; j < v.cols; ++j) a(i, j) = T(entry(random));
    switch (data) {
    case Data::regular: { // dominated by a permutation, so that there is something to exchange
        const std::vector<int> p = random.permutation(n);
        for (int i = 0; i < n; ++i) a(i, p[size_t(i)]) = T(sign(random) * (1 + n * (0.5 + random.unit())));
        break;
    }
    case Data::definite: {
        std::vector<T> g(v.object<T>(k), v.object<T>(k) + n * n);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j) {
                double sum = i == j;
                for (int l = 0; l < n; ++l) sum += double(g[size_t(i * n + l)]) * double(g[size_t(j * n + l)]);
                a(i, j) = T(sum);
            }
        break;
    }
    case Data::factors:
    case Data::lower:
        for (int i = 0; i < n; ++i) a(i, i) = T((data == Data::lower ? 1 : sign(random)) * (1 + random.unit()));
        break;
    default: break;
    }
    if (data == Data::symmetric || data == Data::definite || data == Data::lower)
        for (int i = 0; i < n; ++i)
            for (int j = i + 1; j < n; ++j) a(i, j) = T(NAN);
}

} // namespace

Problem makeProblem(const Function& f, char type, const Sizes& sizes, std::ptrdiff_t count, Random& random)
{
    Problem p{&f, type, sizes, count, {}};
    for (const Operand& o : f.sources) {
        p.sources.push_back(p.blank(o, count));
        Values& v = p.sources.back();
        const Data data = p.sources.size() == 1 ? f.data : Data::any;
        for (std::ptrdiff_t k = 0; k < count; ++k) {
            if (o.integers)
                for (int i = 0; i < v.rows; ++i) v.at<int>(k, i, 0) = random.between(i + 1, v.rows);
            else withType(type, [&]<class T>(T) { fill<T>(data, v, k, random); });
        }
    }
    return p;
}

void flatten(Values& v, unsigned axes)
{
    const Values all = v;
    const auto from = [&](std::ptrdiff_t x, int axis) { return axes >> axis & 1 ? 0 : x; };
    for (std::ptrdiff_t k = 0; k < v.count; ++k)
        for (int i = 0; i < v.rows; ++i)
            for (int j = 0; j < v.cols; ++j)
                std::memcpy(&v.data[size_t(((k * v.rows + i) * v.cols + j) * v.bytes)],
                            &all.data[size_t(((from(k, 0) * v.rows + from(i, 1)) * v.cols + from(j, 2)) * v.bytes)],
                            size_t(v.bytes));
}

std::vector<Way> waysToFail(const Function& f)
{
    std::vector<Way> ways;
    if (f.failures.nonFinite) ways = {Way::nan, Way::infinity};
    if (f.failures.singular) ways.push_back(Way::singular);
    if (f.failures.indefinite) ways.push_back(Way::indefinite);
    if (f.data == Data::factors) ways.push_back(Way::pivot);
    return ways;
}

const char* name(Way way)
{
    constexpr const char* names[] = {"NaN", "infinity", "singular", "indefinite", "pivot out of range"};
    return names[int(way)];
}

int spoil(Problem& p, std::ptrdiff_t k, Way way, Random& random)
{
    Values& v = p.sources[0];
    const Data data = p.function->data;
    const bool triangle = data == Data::symmetric || data == Data::definite || data == Data::lower;
    const bool factored = data == Data::factors || data == Data::lower;
    const int c = random.below(v.cols);
    return withType(p.type, [&]<class T>(T) {
        switch (way) {
        case Way::nan:
        case Way::infinity: {
            const int i = triangle ? random.between(c, v.rows - 1) : random.below(v.rows);
            v.at<T>(k, i, c) = way == Way::nan ? T(NAN) : T(sign(random) * INFINITY);
            return -1;
        }
        case Way::singular: // a column of zeros stays one
            if (factored) v.at<T>(k, c, c) = 0;
            for (int i = 0; i < v.rows && !factored; ++i) v.at<T>(k, i, c) = 0;
            return c + 1;
        case Way::indefinite: v.at<T>(k, c, c) = T(-0.125); return c + 1;
        case Way::pivot: p.sources[1].at<int>(k, c, 0) = random.chance(50) ? c : v.cols + 1; return -1;
        }
        return 0;
    });
}

void fail(Outcome& o, std::ptrdiff_t k, int info)
{
    ++o.status;
    o.info[size_t(k)] = info;
    for (Values& v : o.results)
        for (std::ptrdiff_t e = 0; e < v.elements(); ++e) {
            if (v.integers) v.object<int>(k)[e] = 0;
            else if (v.bytes == 8) v.object<double>(k)[e] = NAN;
            else v.object<float>(k)[e] = NAN;
        }
}

} // namespace stacks
