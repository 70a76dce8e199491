// Every function of the library, as a jump to one of the builds that were opened: so one program measures two of them, on
// the same data and with the same code around the calls.
#pragma once
#include <string>
#include <vector>

namespace bench {

class Build {
public:
    explicit Build(const std::string& file);
    void use() const; // by all calls from now on

private:
    std::vector<void*> functions;
};

} // namespace bench
