// kesl_hashes LIBRARY [--against FILE]: what one library file computes, as hashes.
//
// A cell is made of the infos and of all results for several kinds of data, in the packed layout. Another layout and,
// for the last column, three threads must give the same; where they do not, the cell says so.
#include "../memory.h"
#include "../stacks/problems.h"
#include "table.h"

#include <cmath>
#include <cstdio>
#include <exception>
#include <stdexcept>

namespace {
using namespace stacks;

// NaN has one form here: only that it is one is promised.
Hash hashOf(const Outcome& outcome)
{
    if (!outcome.fault.empty()) throw std::runtime_error(outcome.fault);
    Hash hash;
    hash.add(uint64_t(outcome.status));
    for (int info : outcome.info) hash.add(uint64_t(info));
    for (Values v : outcome.results) {
        const auto unify = [&]<class T>(T) {
            for (T* x = v.object<T>(0); x != v.object<T>(v.count); ++x)
                if (*x != *x) *x = T(NAN);
        };
        if (!v.integers && v.bytes == 4) unify(float{});
        if (!v.integers && v.bytes == 8) unify(double{});
        hash.add(v.data);
    }
    return hash;
}

enum class Kind { ordinary, graded, integers };

// Graded elements lie up to 2^30 apart; small integers make ties, zeros and singular matrices. Some objects fail.
Problem problemOf(const Function& f, char type, const Sizes& sizes, std::ptrdiff_t count, Kind kind, Random& random)
{
    Problem p = makeProblem(f, type, sizes, count, random);
    for (Values& v : p.sources) {
        if (v.integers || kind == Kind::ordinary) continue;
        withType(type, [&]<class T>(T) {
            for (T* x = v.object<T>(0); x != v.object<T>(count); ++x)
                *x = kind == Kind::graded ? std::ldexp(*x, random.between(-15, 15)) : std::rint(2 * *x);
        });
    }
    for (Way way : waysToFail(f)) spoil(p, random.below(int(count)), way, random);
    return p;
}

Placement allIn(const Function& f, const Layout& layout)
{
    return {.layouts = std::vector<Layout>(f.sources.size() + f.destinations.size(), layout)};
}

std::string groupOf(int order) { return order > 16 ? "17-32" : order > 8 ? "9-16" : std::to_string(order); }

// Every order up to 16 and some above, square and with other sizes at random.
void onOneThread(const Level& library, const Function& f, char type, const std::string& name, Table& table)
{
    setThreads(1);
    Random random(name, 0);
    std::map<std::string, Hash> hashes;
    std::map<std::string, std::string> differing;
    for (int order = 1; order <= (f.sizes.empty() ? 1 : limit); order += order < 16 ? 1 : 8)
        for (Kind kind : {Kind::ordinary, Kind::graded, Kind::integers})
            for (bool square : {true, false}) {
                Sizes sizes(f.sizes.size(), order);
                for (size_t i = 1; i < sizes.size() && !square; ++i) sizes[i] = random.between(1, order);
                const Problem p = problemOf(f, type, sizes, 19, kind, random);
                const uint64_t hash = hashOf(run(library, p, allIn(f, packed)))();
                const Layout& other = random.pick(layouts);
                if (hashOf(run(library, p, allIn(f, other)))() != hash) differing[groupOf(order)] = "layouts!";
                hashes[groupOf(order)].add(hash);
            }
    for (const auto& [group, hash] : hashes) table.set(name, group, hash);
    for (const auto& [group, text] : differing) table.set(name, group, text);
}

void inTeams(const Level& library, const Function& f, char type, const std::string& name, Table& table)
{
    Random random(name, 1);
    Hash all;
    bool differs = false;
    for (int order : {4, 10}) {
        const Sizes sizes(f.sizes.size(), order);
        const Problem p = problemOf(f, type, sizes, 400000 / (order * order * (order > 6 ? 4 : 1)), Kind::ordinary, random);
        setThreads(1);
        const uint64_t one = hashOf(run(library, p))();
        setThreads(3);
        differs |= hashOf(run(library, p))() != one;
        all.add(one);
    }
    if (differs) table.set(name, "team", "threads!");
    else table.set(name, "team", all);
}

int run(const std::vector<std::string>& words)
{
    if (words.size() != 1 && !(words.size() == 3 && words[1] == "--against")) {
        std::fprintf(stderr, "usage: kesl_hashes LIBRARY [--against FILE]\n");
        return 2;
    }
    const Level library{"given", words[0], true};
    installTrap();
    Table table({"1", "2", "3", "4", "5", "6", "7", "8", "9-16", "17-32", "team"});
    for (const Function& f : functions())
        forTypes([&](char type) {
            const std::string name = "kesl_" + f.name + (type == 'f' ? "_32f" : "_64f");
            onOneThread(library, f, type, name, table);
            inTeams(library, f, type, name, table);
        });
    if (words.size() == 3) return table.differences(words[2]) ? 1 : 0;
    table.print();
    return 0;
}
} // namespace

int main(int argc, char** argv)
{
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
