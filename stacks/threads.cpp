#include "stacks/threads.h"

#include "keslcorex.h"

#include <algorithm>
#include <atomic>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

namespace kesl::stacks {

// Every thread takes the next chunk as long as there is one, so that a worker that gets no processor takes none.
std::ptrdiff_t sumOfChunks(std::ptrdiff_t chunks, std::ptrdiff_t (*chunk)(const void*, std::ptrdiff_t), const void* context)
{
    std::atomic<std::ptrdiff_t> next{0}, sum{0};
    const auto work = [&] {
        std::ptrdiff_t own = 0;
        for (std::ptrdiff_t i; (i = next.fetch_add(1, std::memory_order_relaxed)) < chunks;) own += chunk(context, i);
        sum.fetch_add(own, std::memory_order_relaxed);
    };
    const int threads = int(std::min<std::ptrdiff_t>(ownGetNumThreads(), chunks));
    if (threads > 1) try {
            // oneTBB would ignore what exceeds its own limit, and write a warning to the program's standard error output.
            const auto most = tbb::global_control::active_value(tbb::global_control::max_allowed_parallelism);
            const int team = int(std::min(std::size_t(threads), most));
            tbb::task_arena(team).execute([&] { tbb::parallel_for(0, team, [&](int) { work(); }); });
        } catch (...) { // no memory or no threads: this one does what is left
        }
    work();
    return sum;
}

} // namespace kesl::stacks
