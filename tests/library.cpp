#include "library.h"
#include "memory.h"

#include <cstring>
#include <dlfcn.h>
#include <ffi.h>
#include <fstream>
#include <mutex>
#include <omp.h>
#include <stdexcept>
#include <sys/mman.h>
#include <xmmintrin.h>

Watch watch;
bool refuseBlocks = false, strict = false;
long callsMade = 0;
bool regionsAreSeen = false;

namespace {
std::vector<int> answers = {1};
constexpr unsigned char untouched = 0xA5;
std::mutex blocksMutex;
std::map<void*, std::pair<char*, size_t>> blocks;
} // namespace

// Found before the companion's function, and before those of the OpenMP runtime, because the executable comes first.
extern "C" {
[[gnu::visibility("default")]] int ownGetNumThreads()
{
    const size_t i = size_t(watch.asked++);
    return answers[std::min(i, answers.size() - 1)];
}

// Scratch that ends at an inaccessible page, so that the threads cannot use more than there is.
[[gnu::visibility("default")]] void* omp_alloc(size_t bytes, omp_allocator_handle_t)
{
    if (refuseBlocks) {
        watch.bytes = bytes;
        return nullptr;
    }
    const size_t pages = (bytes + pageSize - 1) / pageSize + 1;
    char* begin =
        static_cast<char*>(mmap(nullptr, pages * pageSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    mprotect(begin + (pages - 1) * pageSize, pageSize, PROT_NONE);
    char* block = begin + (((pages - 1) * pageSize - bytes) & ~size_t(15));
    std::memset(block, untouched, bytes);
    const std::lock_guard lock(blocksMutex);
    ++watch.blocks, watch.bytes = bytes;
    blocks[block] = {begin, pages * pageSize};
    return block;
}

[[gnu::visibility("default")]] void omp_free(void* p, omp_allocator_handle_t)
{
    const std::lock_guard lock(blocksMutex);
    ++watch.freed;
    watch.used.clear();
    for (size_t i = 0; i < watch.bytes; ++i) watch.used.push_back(static_cast<unsigned char*>(p)[i] != untouched);
    munmap(blocks.at(p).first, blocks.at(p).second);
    blocks.erase(p);
}

[[gnu::visibility("default")]] void GOMP_parallel(void (*body)(void*), void* data, unsigned threads, unsigned flags)
{
    static const auto real = reinterpret_cast<decltype(&GOMP_parallel)>(dlsym(RTLD_NEXT, "GOMP_parallel"));
    ++watch.regions, watch.team = int(threads), regionsAreSeen = true;
    real(body, data, threads, flags);
}
}

void setThreads(std::vector<int> list)
{
    answers = std::move(list);
    watch = {};
    omp_get_max_threads(); // binds the runtime to the executable, where the stand-ins look for what they replace
}

const std::vector<Level>& levels()
{
    const char* others = std::getenv("KESLMX_LIBRARIES");
    static const std::vector<Level> all = levelsOf(others ? others : KESLMX_LIBRARIES);
    return all;
}

int call(const Function& f, void* address, const std::vector<Value>& values)
{
    struct Interface {
        ffi_cif cif;
        std::vector<ffi_type*> types;
    };
    static std::map<const Function*, Interface> interfaces;
    Interface& interface = interfaces[&f];
    if (interface.types.empty()) {
        for (const Argument& a : f.arguments)
            interface.types.push_back(a.role == Role::pointer    ? &ffi_type_pointer
                                      : a.role != Role::constant ? &ffi_type_sint32
                                      : f.elemSize == 4          ? &ffi_type_float
                                                                 : &ffi_type_double);
        ffi_prep_cif(&interface.cif, FFI_DEFAULT_ABI, unsigned(f.arguments.size()), &ffi_type_sint32,
                     interface.types.data());
    }
    void* pointers[40];
    for (size_t i = 0; i < values.size(); ++i) pointers[i] = const_cast<Value*>(&values[i]);
    ffi_arg status;
    ++callsMade;
    const bool unmasked = strict && !f.raises(values);
    const unsigned own = _mm_getcsr(), during = unmasked ? own & ~unsigned(_MM_MASK_MASK | _MM_EXCEPT_MASK) : own;
    _mm_setcsr(during);
    ffi_call(&interface.cif, FFI_FN(address), &status, pointers);
    watch.control = unmasked && _mm_getcsr() != during;
    _mm_setcsr(own);
    return int(status);
}

const std::vector<std::string>& exported()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> result;
        std::ifstream file(KESLMX_EXPORTS);
        for (std::string word; file >> word && word != "local:";)
            if (word.back() == ';') result.push_back(word.substr(0, word.size() - 1));
        return result;
    }();
    return names;
}
