// keslmx_hashes LIBRARY [REGEX]: what one library file computes, as text for diff.
//
// A line for each function and group of sizes: name, group, hash of the statuses and of all destination elements, over
// the cases of the test kit: every layout, stride form, failing objects, operands in place. Two builds, levels or
// compilers that compute the same print the same. With --cases a line for each case, to find the one that differs.
#include "../case.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <regex>
#include <unistd.h>

namespace {
class Hash { // FNV-1a of words
public:
    void add(uint64_t word) { value = (value ^ word) * 0x100000001b3; }
    void add(const std::vector<char>& elements)
    {
        uint32_t word;
        for (size_t i = 0; i < elements.size(); i += sizeof word)
            std::memcpy(&word, &elements[i], sizeof word), add(uint64_t{word});
    }
    unsigned long long operator()() const { return value; }

private:
    uint64_t value = 0xcbf29ce484222325;
};

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

class Printer {
public:
    Printer(const Function& function, bool showCases) : f(function), cases(showCases) {}

    void add(const std::string& group, const Case& c, int status)
    {
        Hash own;
        own.add(uint64_t(status)), own.add(c.results());
        hashes[group].add(own());
        faults += !c.fault.empty();
        if (cases)
            std::printf("%s %s case %d: count %d, status %d, %016llx\n", f.name.c_str(), group.c_str(), c.number, c.count,
                        status, own());
    }
    ~Printer()
    {
        for (const auto& [group, hash] : hashes) std::printf("%-42s %-6s %016llx\n", f.name.c_str(), group.c_str(), hash());
        if (faults) std::printf("%-42s %d calls touched memory that is not theirs\n", f.name.c_str(), faults);
    }

private:
    const Function& f;
    const bool cases;
    std::map<std::string, Hash> hashes;
    int faults = 0;
};

// Any sizes and strides; contiguous elements, which have most of the code; and these with the orders that matter most.
void onOneThread(const Function& f, const Reference& reference, const Level& library, Printer& print)
{
    setThreads({1});
    for (int number = 0; number < 240; ++number) {
        Wish wish;
        if (number % 3) wish.elements = Elements::contiguous;
        if (number % 3 == 2) wish.dims = allEqual(f, 3 + number / 3 % 4);
        if (number % 60 == 0) wish.dims = allEqual(f, 13 + number / 60);
        Case c(f, reference, number, wish);
        const int status = c.run(library);
        print.add(groupOf(f, c.dims), c, status);
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
void inTeams(const Function& f, const Reference& reference, const Level& library, Printer& print)
{
    int number = 1000000;
    for (bool contiguous : {true, true, true, false})
        for (int order : {3, 4, 5, 6}) {
            Wish wish;
            wish.plain = true, wish.dims = allEqual(f, order), wish.failing = number % 2 ? 100 : 0;
            wish.elements = contiguous ? Elements::contiguous : Elements::general;
            wish.count = countForTeam(f, wish.dims, contiguous, number % 5);
            for (int threads : {1, 3}) {
                Case c(f, reference, number, wish);
                setThreads({threads});
                const int status = c.run(library);
                print.add("team", c, threads == 1 ? status : status == Ok);
            }
            ++number;
        }
}

int run(int argc, char** argv)
{
    std::vector<std::string> words(argv + 1, argv + argc);
    const bool showCases = std::erase(words, "--cases") > 0;
    if (words.empty() || words.size() > 2) {
        std::fprintf(stderr, "usage: %s LIBRARY [REGEX] [--cases]\n", argv[0]);
        return 2;
    }
    const Level library{"given", words[0], true};
    const std::regex chosen(words.size() > 1 ? words[1] : ".");
    installTrap();
    int found = 0;
    for (const auto& [name, f] : functions()) {
        if (!std::regex_search(name, chosen)) continue;
        const Reference* reference = findReference(f);
        if (!find(library, name) || !reference) {
            std::printf("%-42s absent\n", name.c_str());
            continue;
        }
        ++found;
        Printer print(f, showCases);
        onOneThread(f, *reference, library, print);
        if (f.threaded()) inTeams(f, *reference, library, print);
    }
    std::fprintf(stderr, "%d functions, %ld calls\n", found, callsMade);
    return found ? 0 : 1;
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
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
