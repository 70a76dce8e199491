#include "mesh.h"
#include "progress.h"
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace {

std::string readFile(const std::string& path)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    std::string text;
    if (file) {
        char block[1 << 16];
        while (const size_t n = std::fread(block, 1, sizeof block, file.get())) text.append(block, n);
    }
    if (!file || std::ferror(file.get())) throw std::runtime_error(path + ": " + std::strerror(errno));
    return text;
}

// What an OBJ file may hold besides v, vt, vn and f: read over. Any other word means that this is no OBJ file.
constexpr std::string_view ignored[] = {"vp",    "cstype", "deg",    "bmat",       "step",      "p",        "l",
                                        "curv",  "curv2",  "surf",   "parm",       "trim",      "hole",     "scrv",
                                        "sp",    "end",    "con",    "g",          "s",         "mg",       "o",
                                        "bevel", "lod",    "usemap", "ctech",      "maplib",    "csh",      "call",
                                        "stech", "usemtl", "mtllib", "shadow_obj", "trace_obj", "c_interp", "d_interp"};

class ObjReader {
public:
    ObjReader(const std::string& file, std::string_view content) : path(file), text(content) {}

    Mesh read()
    {
        Progress progress("reading", double(text.size()));
        for (size_t at = 0; at < text.size();) {
            std::string line;
            do { // a backslash at its end carries a line on
                if (!line.empty()) line.back() = ' ';
                const size_t end = std::min(text.find('\n', at), text.size());
                line += text.substr(at, end - at);
                at = end + 1;
                ++lineNumber;
                if (line.ends_with('\r')) line.pop_back();
            } while (line.ends_with('\\') && at < text.size());
            statement(line);
            progress.step(double(line.size() + 1));
        }
        for (int kind = 0; kind < 3; ++kind)
            if (largest[kind].index > counts[kind]) {
                lineNumber = largest[kind].line;
                outOfRange(largest[kind].index, kind);
            }
        if (mesh.vertices.empty()) throw std::runtime_error(path + ": no vertices, so this is no mesh");
        if (mesh.triangles.empty()) throw std::runtime_error(path + ": no faces, so there is nothing to draw");
        return std::move(mesh);
    }

private:
    const std::string& path;
    std::string_view text;
    Mesh mesh;
    long lineNumber = 0;
    static constexpr const char* kinds[] = {"vertices", "texture vertices", "normals"};
    long counts[3] = {}; // of each kind, so far
    struct {
        long index, line;
    } largest[3] = {}; // a face may stand before its vertices, so indices from 1 up are judged at the end

    [[noreturn]] void fail(const std::string& what) const
    {
        throw std::runtime_error(path + ", line " + std::to_string(lineNumber) + ": " + what);
    }
    [[noreturn]] void outOfRange(long index, int kind) const
    {
        fail("index " + std::to_string(index) + " is out of range, of " + std::to_string(counts[kind]) + " " + kinds[kind]);
    }

    // As it may be shown in a message: short, and no control characters that would upset a terminal.
    static std::string quote(std::string_view word)
    {
        std::string shown(word.substr(0, 40));
        std::ranges::replace_if(
            shown, [](unsigned char c) { return c < ' ' || c > '~'; }, '?');
        return "'" + shown + "'";
    }

    static std::string_view nextWord(std::string_view& line)
    {
        const size_t from = std::min(line.find_first_not_of(" \t"), line.size());
        const size_t to = std::min(line.find_first_of(" \t", from), line.size());
        const std::string_view word = line.substr(from, to - from);
        line.remove_prefix(to);
        return word;
    }

    template <class T> T number(std::string_view word) const
    {
        T value{};
        const char* const end = word.data() + word.size();
        const bool plus = word.size() > 1 && word[0] == '+' && word[1] != '-'; // from_chars knows no plus
        const auto [stop, error] = std::from_chars(word.data() + plus, end, value);
        if (error != std::errc() || stop != end) fail(quote(word) + " is not a number");
        return value;
    }

    float coordinate(std::string_view word) const
    {
        if (word.empty()) fail("a vertex of less than three coordinates");
        const float value = float(number<double>(word));
        if (!std::isfinite(value)) fail(quote(word) + " is not a finite number");
        return value;
    }

    void statement(std::string_view line)
    {
        line = line.substr(0, line.find('#'));
        const std::string_view word = nextWord(line);
        if (word.empty()) return;
        if (word == "v") {
            const float x = coordinate(nextWord(line)), y = coordinate(nextWord(line)), z = coordinate(nextWord(line));
            mesh.vertices.push_back({x, y, z});
            if (++counts[0] > INT_MAX) fail("more vertices than one call takes");
        } else if (word == "vt") {
            ++counts[1];
        } else if (word == "vn") {
            ++counts[2];
        } else if (word == "f") {
            face(line);
        } else if (std::ranges::find(ignored, word) == std::end(ignored)) {
            fail(quote(word) + " begins no line of an OBJ file");
        }
    }

    void face(std::string_view line)
    {
        unsigned first = 0, before = 0, corners = 0;
        for (std::string_view word; !(word = nextWord(line)).empty(); ++corners) {
            const unsigned corner = vertexOf(word);
            if (corners == 0) first = corner;
            if (corners >= 2) mesh.triangles.push_back({first, before, corner});
            before = corner;
        }
        if (corners < 3) fail("a face of less than three corners");
    }

    // v, v/t, v//n or v/t/n, each counted from 1, or back from the latest by negative numbers.
    unsigned vertexOf(std::string_view word)
    {
        const std::string_view whole = word;
        unsigned vertex = 0;
        for (int kind = 0; kind < 3; ++kind) {
            const size_t slash = std::min(word.find('/'), word.size());
            const std::string_view part = word.substr(0, slash);
            if (kind == 0 || !part.empty()) {
                const long given = number<long>(part);
                const long index = given < 0 ? counts[kind] + 1 + given : given;
                if (index < 1) outOfRange(given, kind);
                if (index > largest[kind].index) largest[kind] = {index, lineNumber};
                if (kind == 0) vertex = unsigned(std::min<long>(index - 1, INT_MAX));
            }
            if (slash == word.size()) return vertex;
            word.remove_prefix(slash + 1);
        }
        fail(quote(whole) + " is not a corner of a face");
    }
};

} // namespace

Mesh readObj(const std::string& path)
{
    const std::string text = readFile(path);
    return ObjReader(path, text).read();
}
