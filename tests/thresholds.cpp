// When a call goes parallel: it then asks for the number of threads. Every pointer leads to inaccessible memory, so the
// call ends at its first access, whatever its size: measures that wrap cost nothing.
#include "tests.h"

namespace {
std::vector<Value> argumentsOf(const Function& f, const Dims& dims, bool contiguous, Random& random)
{
    std::vector<Value> values(f.arguments.size());
    std::vector<size_t> strides2;
    for (size_t i = 0; i < values.size(); ++i) {
        const Argument& a = f.arguments[i];
        values[i].p = forbidden();
        if (a.role == Role::pointer || a.role == Role::constant) continue;
        values[i].p = nullptr;
        values[i].i = a.role == Role::size    ? f.size(a.name, dims)
                      : a.role == Role::count ? 1
                      : a.role == Role::shift ? 0
                                              : f.elemSize;
        if (a.role == Role::stride0 || a.role == Role::stride1) values[i].i *= random.between(1, 50);
        if (a.role == Role::stride2) strides2.push_back(i);
    }
    if (!contiguous && !strides2.empty()) values[random.pick(strides2)].i *= random.between(2, 3); // one is enough
    return values;
}
} // namespace

void testThresholds(const Function& f, const Level& level)
{
    void* address = find(level, f.name);
    Random random(f.name + "thresholds", 0);
    int reached = 0, below = 0;
    const auto check = [&](const std::vector<Value>& values) {
        const int order = f.at("widthHeight") < 0 ? 0 : values[size_t(f.at("widthHeight"))].i;
        const bool never = !f.threaded() || f.beforeMeasure(order);
        const int measure = f.measured() ? f.measure(values) : 0;
        const int threshold = f.measured() ? f.threshold(f.contiguous(values)) : 0;
        const bool parallel = !never && measure >= threshold;
        setThreads({1});
        int status = Ok;
        const bool ended = survives([&] { status = call(f, address, values); });
        std::string text;
        for (size_t i = 0; i < values.size(); ++i)
            if (f.arguments[i].role != Role::pointer && f.arguments[i].role != Role::constant)
                text += " " + f.arguments[i].name + "=" + std::to_string(values[i].i);
        EXPECT_FALSE(ended) << f.name << text << ": returned " << status << " without a look at its operands";
        EXPECT_EQ(watch.asked, int(parallel)) << f.name << text << ": measure " << measure << ", threshold " << threshold;
        ++(parallel ? reached : below);
    };

    // The smallest count that reaches the threshold, before anything wraps.
    const auto firstCount = [&](std::vector<Value>& values) {
        const int threshold = f.threshold(f.contiguous(values));
        int low = 0, high = 1 << 20;
        while (high - low > 1) {
            const int middle = (low + high) / 2;
            values[size_t(f.at("count"))].i = middle;
            const int measure = f.measure(values);
            (measure >= threshold || measure < 0 ? high : low) = middle;
        }
        return high;
    };

    for (int n = 0; n < cases(150) && !testing::Test::HasFailure(); ++n) {
        Dims dims;
        const int largest = n % 4 == 3 ? 1 << 15 : n % 4 == 2 ? 100 : 9;
        for (char c : f.letters()) dims[c] = random.between(1, largest);
        if (f.tallOnly()) dims['h'] = dims['w'];
        std::vector<Value> values = argumentsOf(f, dims, n % 2 == 0, random);
        if (!f.array) {
            check(values);
            continue;
        }
        int& count = values[size_t(f.at("count"))].i;
        if (f.measured())
            for (int first = firstCount(values), c = std::max(1, first - 1); c <= first + 1; ++c) count = c, check(values);
        for (int i = 0; i < 6; ++i) { // many of these wrap
            count = 1 + int(random.next() >> random.between(33, 60));
            check(values);
        }
        count = INT_MAX, check(values);
    }

    // Measures of exactly the threshold and of one less, where sizes can be found that have them.
    for (bool contiguous : {true, false}) {
        static const int sizes[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 16, 32, 64};
        int exact = 0, less = 0, combinations = 1;
        for (size_t i = 0; i < f.letters().size(); ++i) combinations *= int(std::size(sizes));
        for (int n : f.measured() ? random.permutation(combinations) : std::vector<int>()) {
            if ((exact >= 3 && less >= 3) || testing::Test::HasFailure()) break;
            Dims dims;
            for (char c : f.letters()) dims[c] = sizes[n % int(std::size(sizes))], n /= int(std::size(sizes));
            if (f.tallOnly() && dims['w'] > dims['h']) continue;
            std::vector<Value> values = argumentsOf(f, dims, contiguous, random);
            const int threshold = f.threshold(f.contiguous(values)), first = firstCount(values);
            for (int c = std::max(1, first - 1); c <= first; ++c) {
                values[size_t(f.at("count"))].i = c;
                const int measure = f.measure(values);
                if (measure == threshold && exact++ < 3) check(values);
                if (measure == threshold - 1 && less++ < 3) check(values);
            }
        }
    }
    if (f.threaded()) { EXPECT_GT(reached, 0); }
    EXPECT_GT(below, 0);
}
