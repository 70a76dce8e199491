// keslmx_hashes LIBRARY [--against FILE | --cases REGEX]: what one library file computes, as hashes.
//
// A cell is made of the statuses and of all destination elements of the cases of the test kit: every layout, stride form,
// failing objects, operands in place. Two builds, levels or compilers that compute the same print the same. With --cases
// a line for each case of the functions that the expression finds, to find the one that differs.
#include "../case.h"
#include "table.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <regex>
#include <stdexcept>
#include <unistd.h>

namespace {
std::string groupOf(const Function& f, const Dims& dims)
{
    const std::string letters = f.letters();
    const int n = letters.empty() ? 0 : dims[letters.front()];
    if (std::any_of(letters.begin(), letters.end(), [&](char c) { return dims[c] != n; })) return "mixed";
    return n > 6 ? "7+" : std::to_string(n);
}

Dims allEqual(const Function& f, int n)
{
    Dims dims;
    for (char c : f.letters()) dims[c] = n;
    return dims;
}

// The hashes of one function.
class Cells {
public:
    Cells(const Function& function, bool showCases) : f(function), cases(showCases) {}

    void add(const std::string& group, const Case& c, int status)
    {
        Hash own;
        own.add(uint64_t(status)), own.add(c.results());
        hashes[group].add(own());
        if (!c.fault.empty()) throw std::runtime_error(c.name() + ' ' + c.fault);
        if (cases)
            std::printf("%s %s case %d: count %d, status %d, %016llx\n", f.name.c_str(), group.c_str(), c.number, c.count,
                        status, static_cast<unsigned long long>(own()));
    }
    void enter(Table& table) const
    {
        for (const auto& [group, hash] : hashes) table.set(f.name, group, hash);
    }

private:
    const Function& f;
    const bool cases;
    std::map<std::string, Hash> hashes;
};

// Any sizes and strides; contiguous elements, which have most of the code; and these with the orders that matter most.
void onOneThread(const Function& f, const Reference& reference, const Level& library, Cells& cells)
{
    setThreads({1});
    for (int number = 0; number < 96; ++number) {
        Wish wish;
        if (number % 3) wish.elements = Elements::contiguous;
        if (number % 3 == 2) wish.dims = allEqual(f, 3 + number / 3 % 4);
        if (number % 48 == 0) wish.dims = allEqual(f, 13 + number / 48);
        Case c(f, reference, number, wish);
        const int status = c.run(library);
        cells.add(groupOf(f, c.dims), c, status);
    }
}

// The fewest objects of this order that go to a team, and a few more.
int countForTeam(const Function& f, const Dims& dims, bool contiguous, int more)
{
    std::vector<Value> values(f.arguments.size());
    for (size_t i = 0; i < values.size(); ++i)
        values[i].i = f.arguments[i].role == Role::size ? f.size(f.arguments[i].name, dims) : 0;
    int& count = values[size_t(f.at("count"))].i;
    for (count = 1; f.measure(values) < f.threshold(contiguous); ++count) {}
    return count + more;
}

// Large calls by three threads and by one. Which of several failures a team answers depends on which thread is first.
void inTeams(const Function& f, const Reference& reference, const Level& library, Cells& cells)
{
    int number = 1000000;
    for (int order : {3, 4, 5, 6}) {
        const bool contiguous = number % 4 != 3;
        Wish wish;
        wish.plain = true, wish.dims = allEqual(f, order), wish.failing = number % 2 ? 100 : 0;
        wish.elements = contiguous ? Elements::contiguous : Elements::general;
        wish.count = countForTeam(f, wish.dims, contiguous, number % 5);
        for (int threads : {1, 3}) {
            Case c(f, reference, number, wish);
            setThreads({threads});
            const int status = c.run(library);
            cells.add("team", c, threads == 1 ? status : status == Ok);
        }
        ++number;
    }
}

int run(const std::vector<std::string>& words)
{
    const std::string option = words.size() == 3 ? words[1] : "";
    if (words.empty() || words.size() == 2 || words.size() > 3 ||
        (words.size() == 3 && option != "--against" && option != "--cases")) {
        std::fprintf(stderr, "usage: keslmx_hashes LIBRARY [--against FILE | --cases REGEX]\n");
        return 2;
    }
    const bool showCases = option == "--cases";
    const Level library{"given", words[0], true};
    const std::regex chosen(showCases ? words[2] : ".");
    installTrap();
    Table table({"1", "2", "3", "4", "5", "6", "7+", "mixed", "team"});
    for (const auto& [name, f] : functions()) {
        if (!std::regex_search(name, chosen)) continue;
        const Reference* reference = findReference(f);
        if (!reference) throw std::runtime_error("no reference for " + name);
        if (!find(library, name)) {
            table.set(name, "1", "absent");
            continue;
        }
        Cells cells(f, showCases);
        onOneThread(f, *reference, library, cells);
        if (f.threaded()) inTeams(f, *reference, library, cells);
        cells.enter(table);
    }
    if (option == "--against") return table.differences(words[2]) ? 1 : 0;
    if (!showCases) table.print();
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    // More threads than processors must not spin; the OpenMP runtime reads this before main.
    if (setenv("OMP_WAIT_POLICY", "passive", 0) == 0 && !std::getenv("KESLMX_TESTS_STARTED")) {
        setenv("KESLMX_TESTS_STARTED", "1", 1);
        execv("/proc/self/exe", argv);
    }
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
