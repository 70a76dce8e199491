#include "table.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <stdexcept>

void Hash::add(const std::vector<char>& elements)
{
    uint32_t word;
    for (size_t i = 0; i < elements.size(); i += sizeof word)
        std::memcpy(&word, &elements[i], sizeof word), add(uint64_t{word});
}

void Table::set(const std::string& function, const std::string& group, const std::string& cell)
{
    lines[function][group] = cell;
}

void Table::set(const std::string& function, const std::string& group, const Hash& hash)
{
    char cell[9];
    std::snprintf(cell, sizeof cell, "%08x", unsigned(hash() ^ hash() >> 32));
    set(function, group, cell);
}

std::vector<std::string> Table::text() const
{
    std::vector<std::string> result;
    const auto line = [&](const std::string& name, const auto& cellOf) {
        std::ostringstream text;
        text << std::left << std::setw(36) << name;
        for (const std::string& column : columns) text << ' ' << std::setw(8) << cellOf(column);
        result.push_back(text.str().substr(0, text.str().find_last_not_of(' ') + 1));
    };
    line("function", [](const std::string& column) { return column; });
    for (const auto& entry : lines)
        line(entry.first, [&](const std::string& column) {
            const auto cell = entry.second.find(column);
            return cell == entry.second.end() ? "-" : cell->second;
        });
    return result;
}

void Table::print() const
{
    for (const std::string& line : text()) std::puts(line.c_str());
}

int Table::differences(const std::string& file) const
{
    const auto words = [](const std::string& line) {
        std::istringstream stream(line);
        return std::vector<std::string>(std::istream_iterator<std::string>(stream), {});
    };
    std::map<std::string, std::vector<std::string>> known;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) known[words(line).at(0)] = words(line);
    if (known.empty()) throw std::runtime_error("nothing in " + file);
    int count = 0;
    for (const std::string& line : text()) {
        const std::vector<std::string> now = words(line), before = known[now[0]];
        if (before.size() != now.size()) ++count, std::printf("%s is not in %s\n", now[0].c_str(), file.c_str());
        for (size_t i = 1; i < now.size() && i < before.size(); ++i)
            if (now[i] != before[i])
                ++count, std::printf("%s, %s: %s instead of %s\n", now[0].c_str(), columns[i - 1].c_str(), now[i].c_str(),
                                     before[i].c_str());
    }
    return count;
}
