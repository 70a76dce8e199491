#include "level.h"

#include <dlfcn.h>
#include <map>
#include <sstream>
#include <stdexcept>
#include <sys/platform/x86.h>

namespace {
bool supported(const std::string& level)
{
    const bool v3 = CPU_FEATURE_ACTIVE(AVX) && CPU_FEATURE_ACTIVE(AVX2) && CPU_FEATURE_ACTIVE(BMI1) &&
                    CPU_FEATURE_ACTIVE(BMI2) && CPU_FEATURE_ACTIVE(F16C) && CPU_FEATURE_ACTIVE(FMA) &&
                    CPU_FEATURE_ACTIVE(LZCNT) && CPU_FEATURE_ACTIVE(MOVBE);
    const bool v4 = v3 && CPU_FEATURE_ACTIVE(AVX512F) && CPU_FEATURE_ACTIVE(AVX512BW) && CPU_FEATURE_ACTIVE(AVX512CD) &&
                    CPU_FEATURE_ACTIVE(AVX512DQ) && CPU_FEATURE_ACTIVE(AVX512VL);
    return level == "plain" || (level == "v3" && v3) || (level == "v4" && v4);
}

void* open(const Level& level)
{
    static std::map<std::string, void*> handles;
    void*& handle = handles[level.path];
    if (!handle) handle = dlopen(level.path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) throw std::runtime_error(dlerror());
    return handle;
}
} // namespace

std::vector<Level> levelsOf(const std::string& list)
{
    std::vector<Level> result;
    std::istringstream stream(list);
    for (std::string item; std::getline(stream, item, '|');) {
        const size_t equals = item.find('=');
        const std::string name = item.substr(0, equals);
        result.push_back({name, item.substr(equals + 1), supported(name)});
    }
    return result;
}

void* find(const Level& level, const std::string& function) { return dlsym(open(level), function.c_str()); }
