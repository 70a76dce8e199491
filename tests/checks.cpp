// Calls with bad arguments. Every pointer leads to inaccessible memory: a failed check touches nothing.
#include "tests.h"

namespace {
struct Fault {
    size_t argument;
    Value value;
};

Value integer(int i)
{
    Value v;
    v.p = nullptr, v.i = i;
    return v;
}

std::vector<Value> validArguments(const Function& f, Random& random)
{
    Dims dims;
    for (char c : f.letters()) dims[c] = random.between(1, 9);
    if (f.tallOnly()) dims['h'] = dims['w'] + random.below(3);
    std::vector<Value> values(f.arguments.size());
    for (size_t i = 0; i < values.size(); ++i) {
        const Argument& a = f.arguments[i];
        values[i].p = forbidden();
        if (a.role == Role::size) values[i] = integer(f.size(a.name, dims));
        if (a.role == Role::count) values[i] = integer(random.between(1, 40));
        if (a.role == Role::shift) values[i] = integer(random.below(4) * f.elemSize);
        if (a.role == Role::stride0 || a.role == Role::stride1 || a.role == Role::stride2)
            values[i] = integer(random.between(1, 20) * f.elemSize);
        if (a.role == Role::constant) values[i].d = 0;
    }
    return values;
}

std::vector<Fault> faults(const Function& f, const std::vector<Value>& valid)
{
    std::vector<Fault> list;
    for (size_t i = 0; i < valid.size(); ++i) switch (f.arguments[i].role) {
        case Role::pointer: list.push_back({i, integer(0)}); break;
        case Role::size: list.push_back({i, integer(valid[i].i + 1)}); [[fallthrough]]; // perhaps a mismatch
        case Role::count:
            for (int bad : {0, -1, INT_MIN}) list.push_back({i, integer(bad)});
            break;
        case Role::shift:
            for (int bad : {-f.elemSize, 1, 2, f.elemSize / 2, f.elemSize + 1, -1, INT_MIN, INT_MAX})
                list.push_back({i, integer(bad)});
            break;
        case Role::constant: break;
        default:
            for (int bad : {0, -f.elemSize, 1, 2, f.elemSize / 2, 3 * f.elemSize / 2, f.elemSize + 1, -1, INT_MIN, INT_MAX})
                list.push_back({i, integer(bad)});
        }
    return list;
}

std::string print(const Function& f, const std::vector<Value>& values)
{
    std::string text = f.name + "(";
    for (size_t i = 0; i < values.size(); ++i) {
        const Role role = f.arguments[i].role;
        text += i ? ", " : "";
        text += role == Role::pointer    ? values[i].p ? "(void *)1" : "NULL"
                : role == Role::constant ? "0"
                                         : std::to_string(values[i].i);
    }
    return text + ");";
}
} // namespace

std::vector<Value> goodArguments(const Function& f)
{
    Random random(f.name, 0);
    return validArguments(f, random);
}

void testChecks(const Function& f, const Level& level)
{
    setThreads({1});
    void* address = find(level, f.name);
    Random random(f.name + "checks", 0);
    int calls = 0;
    const auto check = [&](const std::vector<Value>& values) {
        const int expected = f.expected(values);
        if (expected == Ok) return; // such a call would use its operands: see the values
        int status = Ok;
        const bool ended = survives([&] { status = call(f, address, values); });
        EXPECT_TRUE(ended) << print(f, values) << " touched its operands before it returned " << expected;
        EXPECT_TRUE(!ended || status == expected) << print(f, values) << " returned " << status << ", expected " << expected;
        ++calls;
    };
    const auto with = [&](std::vector<Value> values, std::initializer_list<Fault> list) {
        for (const Fault& fault : list) values[fault.argument] = fault.value;
        return values;
    };
    for (int count : {1, 2}) { // stride0 may be tested only from two objects on
        std::vector<Value> valid = validArguments(f, random);
        if (f.array) valid[size_t(f.at("count"))].i = count;
        ASSERT_EQ(f.expected(valid), Ok) << print(f, valid);
        const std::vector<Fault> list = faults(f, valid);
        for (size_t i = 0; i < list.size(); ++i) {
            check(with(valid, {list[i]}));
            for (size_t j = 0; j < i && !testing::Test::HasFailure(); ++j) check(with(valid, {list[i], list[j]}));
        }
        for (int n = 0; n < cases(2000) && !testing::Test::HasFailure(); ++n) { // any number of faults
            std::vector<Value> values = valid;
            for (const Fault& fault : list)
                if (random.chance(int(100 / list.size()) + 2)) values[fault.argument] = fault.value;
            check(values);
        }
        if (!f.array) break;
    }
    EXPECT_GT(calls, 0);
    EXPECT_EQ(watch.asked, 0) << "a call that fails its checks asks for no threads";
}
