#pragma once
// Hashes of what functions compute, as a table: a line for each function, a column for each group of sizes.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

class Hash { // FNV-1a of words
public:
    void add(uint64_t word) { value = (value ^ word) * 0x100000001b3; }
    void add(const std::vector<char>& elements); // of four bytes each
    uint64_t operator()() const { return value; }

private:
    uint64_t value = 0xcbf29ce484222325;
};

class Table {
public:
    explicit Table(std::vector<std::string> groups) : columns(std::move(groups)) {}
    void set(const std::string& function, const std::string& group, const std::string& cell);
    void set(const std::string& function, const std::string& group, const Hash&);
    void print() const;
    // Says what is not as in the file, of the functions that the table has; how many cells.
    int differences(const std::string& file) const;

private:
    std::vector<std::string> text() const;
    const std::vector<std::string> columns;
    std::map<std::string, std::map<std::string, std::string>> lines;
};
