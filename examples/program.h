// What the programs on meshes have in common: their options, main, and the timing of a piece of work.
#pragma once
#include "progress.h"
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>

struct Options {
    std::string mesh = DEFAULT_MESH, picture;
    int size = 480; // of each view, in pixels
    bool help = false;
};

inline Options parse(const std::string& picture, int argc, char** argv)
{
    Options options;
    options.picture = picture;
    bool named = false;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const auto value = [&] {
            if (++i == argc) throw std::runtime_error(word + " wants a value; see --help");
            return std::string(argv[i]);
        };
        if (word == "--help" || word == "-h") {
            options.help = true;
        } else if (word == "-o") {
            options.picture = value();
        } else if (word == "--size") {
            const std::string text = value();
            const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), options.size);
            if (error != std::errc() || *stop || options.size < 16 || options.size > 4096)
                throw std::runtime_error("--size wants a number from 16 to 4096, not '" + text + "'");
        } else if (word.starts_with('-') || named) {
            throw std::runtime_error("unexpected argument '" + word + "'; see --help");
        } else {
            options.mesh = word;
            named = true;
        }
    }
    return options;
}

// main: any failure ends in one line on standard error. The picture's default name is that of the program.
inline int program(const char* name, const char* usage, void (*run)(const Options&), int argc, char** argv)
{
    try {
        const Options options = parse(std::string(name) + ".png", argc, argv);
        if (options.help) std::fputs(usage, stdout);
        else run(options);
        if (std::fflush(stdout)) throw std::runtime_error(std::string("standard output: ") + std::strerror(errno));
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "%s: out of memory\n", name);
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", name, error.what());
        return 1;
    }
    return 0;
}

template <class Work> double secondsOfBest(Progress& progress, Work work)
{
    using clock = std::chrono::steady_clock;
    double best = std::numeric_limits<double>::infinity(), spent = 0;
    for (int runs = 0, batch = 1; runs < 3 || (runs < 50 && spent < 0.1);) {
        const auto start = clock::now();
        for (int i = 0; i < batch; ++i) work();
        const double seconds = std::chrono::duration<double>(clock::now() - start).count();
        spent += seconds;
        if (seconds < 1e-4) { // too short to be measured
            batch *= 2;
        } else {
            best = std::min(best, seconds / batch);
            ++runs;
        }
    }
    progress.step();
    return best;
}
