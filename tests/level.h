#pragma once
// The levels of a library under test, found by path.
#include <string>
#include <vector>

struct Level {
    std::string name, path; // plain, v3, v4
    bool supported;         // by this processor
};
std::vector<Level> levelsOf(const std::string& list); // "plain=path|v3=path|..."

// The function of one level by name; null if the level does not export it.
void* find(const Level&, const std::string& function);
