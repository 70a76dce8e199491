// The tables of the tests against what is known of the whole, against the header and against the list of exports.
#include "special.h"

#include <climits>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

TEST(tables, have_all_functions)
{
    std::map<std::string, int> counts;
    for (const auto& [name, f] : functions()) {
        std::string family = f.operation;
        const bool matrices = f.shape.find_first_of("mt") != std::string::npos;
        const bool vectors = f.shape.find('v') != std::string::npos, constants = f.shape.find('c') != std::string::npos;
        if (family == "Add" || family == "Sub") family += matrices ? " matrices" : " vectors";
        if (family == "Mul") family += constants ? " constants" : vectors ? " vectors" : " matrices";
        ++counts[family];
    }
    const std::map<std::string, int> expected = {{"Add matrices", 54},
                                                 {"Sub matrices", 88},
                                                 {"Add vectors", 38},
                                                 {"Sub vectors", 66},
                                                 {"Mul constants", 42},
                                                 {"Saxpy", 22},
                                                 {"LComb", 16},
                                                 {"Mul matrices", 88},
                                                 {"Mul vectors", 44},
                                                 {"Gaxpy", 16},
                                                 {"DotProduct", 16},
                                                 {"CrossProduct", 22},
                                                 {"L2Norm", 10},
                                                 {"FrobNorm", 10},
                                                 {"Trace", 10},
                                                 {"Copy", 36},
                                                 {"Extract", 30},
                                                 {"LoadIdentity", 6},
                                                 {"Transpose", 10},
                                                 {"LUDecomp", 10},
                                                 {"LUBackSubst", 16},
                                                 {"CholeskyDecomp", 10},
                                                 {"CholeskyBackSubst", 16},
                                                 {"QRDecomp", 10},
                                                 {"QRBackSubst", 16},
                                                 {"Det", 10},
                                                 {"Invert", 10},
                                                 {"EigenValuesSym", 10},
                                                 {"EigenValuesVectorsSym", 10},
                                                 {"EigenValues", 10},
                                                 {"EigenValuesGetBufSize", 2},
                                                 {"EigenValuesVectors", 10},
                                                 {"EigenValuesVectorsRight", 10},
                                                 {"EigenValuesVectorsLeft", 10},
                                                 {"EigenValuesVectorsGetBufSize", 2},
                                                 {"AffineTransform3DH", 1}};
    EXPECT_EQ(counts, expected);
    EXPECT_EQ(functions().size(), 787u);
}

// Every array function has a measure, but for the families that always run on the calling thread.
TEST(tables, have_all_measures)
{
    const std::set<std::string> serial = {"Copy", "Extract", "LoadIdentity", "Transpose"};
    for (const auto& [name, f] : functions()) {
        EXPECT_EQ(f.measured(), f.array && !serial.count(f.operation)) << name;
        if (f.measured()) {
            EXPECT_GT(f.threshold(true), 0) << name;
            EXPECT_GT(f.threshold(false), 0) << name;
        }
        EXPECT_FALSE(f.sequence.empty()) << name;
    }
}

TEST(tables, agree_with_the_header)
{
    std::ifstream file(KESLMX_HEADER);
    std::stringstream text;
    text << file.rdbuf();
    std::string header = std::regex_replace(text.str(), std::regex(R"(/\*[^]*?\*/)"), " ");
    header = std::regex_replace(header, std::regex(R"(\s+)"), " ");

    std::set<std::string> declared;
    const std::regex declaration(R"(KeslStatus (kesl\w+) ?\([^)]*\) ?;)");
    for (std::sregex_iterator it(header.begin(), header.end(), declaration), end; it != end; ++it) {
        const std::string name = (*it)[1];
        EXPECT_TRUE(declared.insert(name).second) << name << " is declared twice";
        const auto known = functions().find(name);
        ASSERT_NE(known, functions().end()) << name;
        EXPECT_EQ(it->str(), known->second.prototype());
    }
    std::set<std::string> names(exported().begin(), exported().end());
    EXPECT_EQ(names.erase("keslGetLibVersion"), 1u);
    EXPECT_EQ(declared, names) << "what is declared is exported, and the other way round";
    EXPECT_NE(header.find("const KeslVersionRecord *keslGetLibVersion(void);"), std::string::npos);
}

TEST(tables, agree_with_the_status_codes)
{
    EXPECT_EQ(int(Ok), keslStatusOk);
    EXPECT_EQ(int(Failed), keslStatusFailed);
    EXPECT_EQ(int(BadSize), keslStatusBadSize);
    EXPECT_EQ(int(NullPointer), keslStatusNullPointer);
    EXPECT_EQ(int(DivideByZero), keslStatusDivideByZero);
    EXPECT_EQ(int(NotPositiveDefinite), keslStatusNotPositiveDefinite);
    EXPECT_EQ(int(BadStride), keslStatusBadStride);
    EXPECT_EQ(int(Singular), keslStatusSingular);
    EXPECT_EQ(int(BadRoiShift), keslStatusBadRoiShift);
    EXPECT_EQ(int(BadCount), keslStatusBadCount);
    EXPECT_EQ(int(SizeMismatch), keslStatusSizeMismatch);
    EXPECT_EQ(int(NoConvergence), keslStatusNoConvergence);
    EXPECT_EQ(sizeof(KeslStatus), 4u);
}

namespace {
// The families of the header's table of contents, by the operands where several have one name.
std::string familyOf(const Function& f)
{
    const bool matrices = f.shape.find_first_of("mt") != std::string::npos;
    if (f.operation == "Add" || f.operation == "Sub") return matrices ? "Add, matrices" : "Add, constants";
    if (f.operation == "Mul")
        return f.at("src2Width") >= 0 ? "Mul, matrices" : f.at("src2Len") >= 0 ? "Mul, vectors" : "Mul, constants";
    return std::regex_replace(f.operation, std::regex("GetBufSize|Right$|Left$"), "");
}

// The smallest count from which a call on matrices of order 3 and vectors of length 3 asks for threads.
int threadedFrom(const Function& f, bool contiguous)
{
    Dims dims;
    for (char c : f.letters()) dims[c] = 3;
    std::vector<Value> values(f.arguments.size());
    for (size_t i = 0; i < values.size(); ++i)
        if (f.arguments[i].role == Role::size) values[i].i = f.size(f.arguments[i].name, dims);
    int& count = values[size_t(f.at("count"))].i;
    for (count = 1; f.measure(values) < f.threshold(contiguous);) ++count;
    return count;
}
} // namespace

TEST(tables, agree_with_the_table_of_contents)
{
    std::map<std::string, int> expected; // 0: never threaded
    for (const auto& [name, f] : functions()) {
        int& least = expected[familyOf(f)];
        for (bool contiguous : {true, false})
            if (f.threaded()) least = std::min(least ? least : INT_MAX, threadedFrom(f, contiguous));
    }
    std::map<std::string, int> listed;
    std::ifstream file(KESLMX_HEADER);
    const std::regex line(R"( \*     kesl(\w+).* {2,}.*(\b\w+) +(\d+|never))");
    std::smatch m;
    for (std::string text; std::getline(file, text) && text != " */";)
        if (std::regex_match(text, m, line)) {
            const std::string name = m[1];
            const bool several = name == "Add" || name == "Mul";
            listed[several ? name + ", " + m[2].str() : name] = m[3] == "never" ? 0 : std::stoi(m[3]);
        }
    EXPECT_EQ(listed, expected);
}
