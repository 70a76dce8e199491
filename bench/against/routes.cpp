#include "routes.h"

#include <dlfcn.h>
#include <stdexcept>

// ROUTE(name, its number) for every function that the library exports; made from the list that the linker reads.
#define ROUTE(name, number)                                                                                                 \
    asm(".globl " #name "\n.type " #name ", @function\n" #name ":\n\tmovq keslRoutes(%rip), %r11\n\tjmpq *8*" #number       \
        "(%r11)");
#include "routes.inc"
#undef ROUTE

extern "C" [[gnu::visibility("hidden")]] void* const* keslRoutes;
void* const* keslRoutes;

namespace {
const char* const names[] = {
#define ROUTE(name, number) #name,
#include "routes.inc"
#undef ROUTE
};
} // namespace

namespace bench {

Build::Build(const std::string& file)
{
    void* const library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) throw std::runtime_error(dlerror());
    for (const char* name : names) {
        functions.push_back(dlsym(library, name));
        if (!functions.back()) throw std::runtime_error(file + " lacks " + name);
    }
}

void Build::use() const { keslRoutes = functions.data(); }

} // namespace bench
