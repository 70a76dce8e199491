// Every unacceptable argument has its number, and then nothing is touched: the operands lie where nobody may go.
#include "../memory.h"
#include "suites.h"

#include <fstream>
#include <regex>

namespace stacks {
namespace {

using Arguments = std::vector<std::ptrdiff_t>;

struct Fault {
    int argument; // from 1
    std::ptrdiff_t value;
};

// Good arguments, whose pointers lead nowhere.
Arguments goodArguments(const Function& f, const Sizes& sizes, std::ptrdiff_t count, char type)
{
    Arguments all(sizes);
    all.push_back(count);
    for (const auto* list : {&f.sources, &f.destinations})
        for (const Operand& o : *list) {
            const std::ptrdiff_t element = type == 'f' || o.integers ? 4 : 8;
            all.push_back(reinterpret_cast<std::ptrdiff_t>(forbidden()));
            all.push_back(element * rows(f, sizes, o) * cols(f, sizes, o));
            if (o.extents.size() == 1) all.push_back(element);
            if (o.extents.size() == 2) all.insert(all.end(), {element * cols(f, sizes, o), element});
        }
    all.push_back(reinterpret_cast<std::ptrdiff_t>(forbidden()));
    return all;
}

const Operand& operandOf(const Function& f, int index)
{
    const int sources = int(f.sources.size());
    return index < sources ? f.sources[size_t(index)] : f.destinations[size_t(index - sources)];
}

std::vector<Fault> faultsOf(const Function& f, const Arguments& good, char type)
{
    std::vector<Fault> faults;
    const std::vector<Argument> list = arguments(f);
    for (int number = 1; number <= int(list.size()); ++number) {
        const Argument& a = list[size_t(number - 1)];
        const bool destination = a.index >= int(f.sources.size());
        switch (a.role) {
        case Argument::size:
            faults.push_back({number, -1});
            faults.push_back({number, PTRDIFF_MIN});
            if (f.small[size_t(a.index)]) faults.insert(faults.end(), {{number, limit + 1}, {number, PTRDIFF_MAX}});
            if (f.tall && a.index == 1) faults.push_back({number, good[0] + 1});
            break;
        case Argument::count: faults.insert(faults.end(), {{number, -1}, {number, PTRDIFF_MIN}}); break;
        case Argument::pointer: {
            const Operand& o = operandOf(f, a.index);
            if (!(f.optional && destination && o.extents.size() == 2)) faults.push_back({number, 0});
            break;
        }
        case Argument::stride: {
            const std::ptrdiff_t element = type == 'f' || operandOf(f, a.index).integers ? 4 : 8;
            const std::ptrdiff_t stride = good[size_t(number - 1)];
            for (std::ptrdiff_t broken : {stride + 1, stride - 1, stride + element / 2, -stride + 2})
                faults.push_back({number, broken});
            if (destination) faults.push_back({number, 0});
            break;
        }
        case Argument::info: break;
        }
    }
    return faults;
}

std::ptrdiff_t statusOf(const Level& level, const Function& f, char type, const Arguments& arguments)
{
    std::ptrdiff_t status = -1000; // touched something
    survives([&] { status = callWith(level, f, type, arguments); });
    return status;
}

// A stride of 0 is refused of a destination that has more than one element along it, whatever the other sizes are.
void testStridesOfZero(const Level& level, const Function& f, char type)
{
    const std::vector<Argument> list = arguments(f);
    for (unsigned mask = 0; mask < 1u << f.sizes.size(); ++mask) {
        Sizes sizes;
        for (size_t i = 0; i < f.sizes.size(); ++i) sizes.push_back(mask >> i & 1 ? 3 : 1);
        if (f.tall && sizes[0] < sizes[1]) continue;
        const Arguments good = goodArguments(f, sizes, 3, type);
        for (size_t i = 0; i < list.size(); ++i) {
            const Argument& a = list[i];
            if (a.role != Argument::stride || a.axis == 0) continue;
            const Operand& o = operandOf(f, a.index);
            const bool destination = a.index >= int(f.sources.size());
            const int elements = a.axis == 1 ? rows(f, sizes, o) : cols(f, sizes, o);
            Arguments flat = good;
            flat[i] = 0;
            EXPECT_EQ(statusOf(level, f, type, flat), destination && elements > 1 ? -std::ptrdiff_t(i + 1) : -1000)
                << f.name << type << ", argument " << i + 1 << ", sizes by mask " << mask;
        }
    }
}

// Nothing to do: the operands, if any, are not touched, null pointers are good.
void testNothing(const Level& level, const Function& f, const Sizes& sizes, char type)
{
    const auto quiet = [&](const Sizes& s, std::ptrdiff_t count, const char* what) {
        Arguments arguments = goodArguments(f, s, count, type);
        EXPECT_EQ(statusOf(level, f, type, arguments), 0) << f.name << type << ' ' << what;
        const std::vector<Argument> list = stacks::arguments(f);
        for (size_t i = 0; i < list.size(); ++i)
            if (list[i].role == Argument::pointer || list[i].role == Argument::info) arguments[i] = 0;
        EXPECT_EQ(statusOf(level, f, type, arguments), 0) << f.name << type << ' ' << what << ", null pointers";
    };
    quiet(sizes, 0, "count 0");
    if (sizes.empty()) return;
    // Sizes of 0, where no destination has elements then.
    Sizes none(sizes.size(), 0);
    for (const Operand& o : f.destinations)
        if (rows(f, none, o) * cols(f, none, o) > 0) return;
    Arguments empty = goodArguments(f, none, 5, type);
    empty.back() = 0;
    EXPECT_EQ(statusOf(level, f, type, empty), 0) << f.name << type << " sizes 0";
    empty[sizes.size()] = (std::ptrdiff_t(1) << 40) + 1;
    EXPECT_EQ(statusOf(level, f, type, empty), 0) << f.name << type << " sizes 0 of very many";
    std::vector<int> info(100, 7);
    empty[sizes.size()] = std::ssize(info), empty.back() = reinterpret_cast<std::ptrdiff_t>(info.data());
    EXPECT_EQ(statusOf(level, f, type, empty), 0) << f.name << type << " sizes 0 of many";
    EXPECT_EQ(info, std::vector<int>(100)) << f.name << type << " sizes 0 of many";
}

// The sum of nothing is 0, the determinant of nothing 1.
template <class T> void testEmptySums(const Level& level, const Function& f, char type)
{
    const Sizes sizes(f.sizes.size(), 0);
    if (f.destinations[0].extents.empty() && !f.sizes.empty()) {
        T results[3] = {7, 7, 7};
        int info[3] = {7, 7, 7};
        Arguments arguments = goodArguments(f, sizes, 3, type);
        arguments[arguments.size() - 3] = reinterpret_cast<std::ptrdiff_t>(results);
        arguments[arguments.size() - 2] = sizeof(T);
        arguments.back() = reinterpret_cast<std::ptrdiff_t>(info);
        EXPECT_EQ(statusOf(level, f, type, arguments), 0) << f.name;
        for (int k = 0; k < 3; ++k) {
            EXPECT_EQ(results[k], T(f.name == "det")) << f.name;
            EXPECT_EQ(info[k], 0) << f.name;
        }
    }
    if (f.name == "matmul") {
        T results[4] = {7, 7, 7, 7};
        Arguments arguments = goodArguments(f, {2, 0, 2}, 1, type);
        arguments[12] = reinterpret_cast<std::ptrdiff_t>(results);
        arguments[14] = 2 * sizeof(T);
        arguments.back() = 0;
        EXPECT_EQ(statusOf(level, f, type, arguments), 0);
        for (T x : results) EXPECT_EQ(x, 0);
    }
}

// The prototype in the header has the arguments that the table says.
void testPrototype(const Function& f, char type)
{
    std::ifstream file(KESL_HEADER);
    const std::string header(std::istreambuf_iterator<char>(file), {});
    const std::string name = "kesl_" + f.name + (type == 'f' ? "_32f" : "_64f");
    std::smatch match;
    ASSERT_TRUE(std::regex_search(header, match, std::regex("ptrdiff_t " + name + "\\(([^)]*)\\);"))) << name;
    const std::string list = match[1];
    const std::regex comma(",\\s*");
    const std::vector<std::string> words(std::sregex_token_iterator(list.begin(), list.end(), comma, -1), {});
    const std::vector<Argument> known = arguments(f);
    ASSERT_EQ(words.size(), known.size()) << name;
    const std::string element = type == 'f' ? "float" : "double";
    std::string operand;
    for (size_t i = 0; i < known.size(); ++i) {
        const Argument& a = known[i];
        const bool source = a.index < int(f.sources.size());
        std::string expected;
        switch (a.role) {
        case Argument::size: expected = "ptrdiff_t " + f.sizes[size_t(a.index)]; break;
        case Argument::count: expected = "ptrdiff_t count"; break;
        case Argument::pointer:
            operand = words[i].substr(words[i].find('*') + 1);
            expected =
                std::string(source ? "const " : "") + (operandOf(f, a.index).integers ? "int" : element) + " *" + operand;
            break;
        case Argument::stride: expected = "ptrdiff_t " + operand + "Stride" + std::to_string(a.axis); break;
        case Argument::info: expected = "int *info"; break;
        }
        EXPECT_EQ(words[i], expected) << name << ", argument " << i + 1;
    }
}

} // namespace

void testArguments(const Level& level, const Function& f)
{
    setThreads(1);
    Sizes sizes(f.sizes.size(), 3);
    forTypes([&](char type) {
        const Arguments good = goodArguments(f, sizes, 3, type);
        ASSERT_EQ(statusOf(level, f, type, good), -1000) << f.name << ": good arguments are used";
        const std::vector<Fault> faults = faultsOf(f, good, type);
        for (const Fault& fault : faults) {
            Arguments bad = good;
            bad[size_t(fault.argument - 1)] = fault.value;
            EXPECT_EQ(statusOf(level, f, type, bad), -fault.argument) << f.name << type << ", value " << fault.value;
            for (const Fault& other : faults) { // the first one counts; sizes that decide about others apart
                if (other.argument <= int(sizes.size()) + 1 || other.argument == fault.argument) continue;
                Arguments worse = bad;
                worse[size_t(other.argument - 1)] = other.value;
                EXPECT_EQ(statusOf(level, f, type, worse), -std::min(fault.argument, other.argument))
                    << f.name << type << ", values " << fault.value << " and " << other.value << " of argument "
                    << other.argument;
            }
        }
        // One object, or one element along an axis, needs no stride.
        Arguments single = goodArguments(f, Sizes(f.sizes.size(), 1), 1, type);
        const std::vector<Argument> list = arguments(f);
        for (size_t i = 0; i < list.size(); ++i)
            if (list[i].role == Argument::stride && (f.name != "cross" || list[i].axis == 0)) single[i] = 0;
        EXPECT_EQ(statusOf(level, f, type, single), -1000) << f.name << type << ": a single element needs no strides";

        testStridesOfZero(level, f, type);
        testNothing(level, f, sizes, type);
        if (type == 'f') testEmptySums<float>(level, f, type);
        else testEmptySums<double>(level, f, type);
        testPrototype(f, type);
    });
}

} // namespace stacks
