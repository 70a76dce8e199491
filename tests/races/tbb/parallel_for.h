#pragma once
#include <thread>
#include <vector>

namespace tbb {
template <class F> void parallel_for(int first, int last, const F& f)
{
    std::vector<std::thread> threads;
    for (int i = first; i < last; ++i) threads.emplace_back([&f, i] { f(i); });
    for (std::thread& thread : threads) thread.join();
}
} // namespace tbb
