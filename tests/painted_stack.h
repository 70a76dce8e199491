// How much stack a call needs.
#pragma once
#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>

// The bytes of its stack that a thread changes which runs body(): the stack is painted before.
inline size_t stackOf(auto body)
{
    constexpr size_t size = 768 << 10;
    constexpr char paint = 0x5A;
    static char* const stack =
        static_cast<char*>(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    std::fill(stack, stack + size, paint);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack, size);
    pthread_t thread;
    const auto start = [](void* f) -> void* { return (*static_cast<decltype(body)*>(f))(), nullptr; };
    EXPECT_EQ(pthread_create(&thread, &attributes, start, &body), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    return size_t(stack + size - std::find_if(stack, stack + size, [](char c) { return c != paint; }));
}
