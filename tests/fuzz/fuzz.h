#pragma once
// What a fuzzer calls, and what it is told.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerInitialize(int*, char***);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

[[noreturn]] inline void report(const std::string& problem)
{
    std::fprintf(stderr, "%s\n", problem.c_str());
    std::abort();
}
