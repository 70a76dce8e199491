#pragma once
#include <cstdio>
#include <stdexcept>
#include <string>

static int failures = 0;

#define EXPECT(condition)                                                                                                   \
    if (!(condition)) std::printf("%s:%d: %s\n", __FILE__, __LINE__, #condition), ++failures
#define EXPECT_THROW(call, beginning)                                                                                       \
    try {                                                                                                                   \
        call;                                                                                                               \
        std::printf("%s:%d: %s does not throw\n", __FILE__, __LINE__, #call), ++failures;                                   \
    } catch (const std::invalid_argument& e) {                                                                              \
        if (std::string(e.what()).rfind(beginning, 0) != 0)                                                                 \
            std::printf("%s:%d: %s\n", __FILE__, __LINE__, e.what()), ++failures;                                           \
    }
