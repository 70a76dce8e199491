// What comes out: ratios and goals, as tables, JSON and the data of the plot.
#pragma once
#include "row.h"

#include <algorithm>
#include <cmath>

namespace bench {

struct Library { // that was loaded
    std::string file, level = "plain";
    Library();
};

struct Result {
    Row row;
    int count = 0;
    std::vector<std::string> names;
    std::vector<double> ns; // per object; the library first
    double single = NAN;    // the library on one thread, in rows of more
    double flat = NAN;      // a flat add of the same bytes, in streaming rows
    double bytes = 0;       // per object
    double goal = NAN;
    bool missed = false;
    double limit = NAN; // the time that its bytes or its operations take at least

    std::vector<double> asideErrors; // NaN for those that are not aside

    double best() const
    {
        double least = NAN;
        for (std::size_t i = 1; i < ns.size(); ++i)
            if (std::isnan(asideErrors[i])) least = std::fmin(least, ns[i]);
        return least;
    }
    double ratio() const { return best() / ns[0]; }
    double share() const { return limit / ns[0]; }
    double at(const char* name) const
    {
        const auto i = std::find(names.begin(), names.end(), name);
        return i == names.end() ? NAN : ns[std::size_t(i - names.begin())];
    }
};

class Goals {
    struct Line {
        std::string family, orders, goal[2];
    };
    std::vector<Line> lines;

public:
    Goals(const std::string& file, const std::string& level);
    double operator()(const Row&) const; // NaN: none
};

class Operations { // of an object
    struct Line {
        std::string family, orders;
        double coefficients[4];
    };
    std::vector<Line> lines;

public:
    explicit Operations(const std::string& file); // none: nothing is known
    double operator()(const Row&) const;          // NaN: not known
};

void judge(std::vector<Result>&, const Goals&);

void progress(std::size_t i, std::size_t n, const Result&);
void tables(const std::vector<Result>&);
void writeJson(const std::string& path, const std::vector<Result>&, const Library&);
void writePlot(const std::string& path, const std::vector<Result>&);

} // namespace bench
