#include "table.h"

#include <cstring>
#include <functional>
#include <sstream>
#include <stdexcept>

namespace {
std::vector<std::string> words(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> result;
    for (std::string word; stream >> word;) result.push_back(word);
    return result;
}

bool among(const std::string& word, const std::string& list)
{
    return (' ' + list + ' ').find(' ' + word + ' ') != std::string::npos;
}

// clang-format off

// ---- Arguments ------------------------------------------------------------------------------------------------------
// A shape is the letters of its sources; where these do not tell the operands, "shape=letters".
// Arguments in order. name:rc an operand with strides, r by c logically; name! packed elements, name# packed int,
// name* scratch, so many elements for the whole call. "name=prefix" names the strides after the prefix. Other words are
// sizes; count is there where the function has an array; val stands here as an array and at the end as a value.
struct Family { const char *operation, *shapes, *arguments; };
const Family families[] = {
    { "Add",   "mm tm tt mam mat tam tat mama tama tata",                                "src1:hw src2:hw dst:hw width height count" },
    { "Sub",   "mm mt tm tt mam mat tam tat mma mta tma tta mama mata tama tata",        "src1:hw src2:hw dst:hw width height count" },
    { "Add",   "vv vav vava",                                                            "src1:l src2:l dst:l len count" },
    { "Sub",   "vv vav vva vava",                                                        "src1:l src2:l dst:l len count" },
    { "Add",   "vc vac vaca vca",                                                        "src:l val dst:l len count" },
    { "Sub",   "vc cv vac cva vaca cava vca cav",                                        "src:l val dst:l len count" },
    { "Mul",   "mc tc mac tac",                                                          "src:hw val dst:hw width height count" },
    { "Mul",   "vc vac vca vaca",                                                        "src:l val dst:l len count" },
    { "Saxpy", "vv=vvc vav=vavc vva=vvac vava=vavac",                                    "src1:l src2:l dst:l len count val" },
    { "LComb", "vv=vvcc vav=vavcc vava=vavacc",                                          "src1:l src2:l dst:l len count val1 val2" },
    { "Mul",   "mm tm mt tt mam mat tam tat mma mta tma tta mama mata tama tata",        "src1:MK src1Width src1Height src2:KN src2Width src2Height dst:MN count" },
    { "Mul",   "mv tv mav tav mva tva mava tava",                                        "src1:MK src1Width src1Height src2:K src2Len dst:M count" },
    { "Gaxpy", "mv=mvv mva=mvava mvav",                                                  "src1:MK src1Width src1Height src2:K src2Len src3:M src3Len dst:M count" },
    { "DotProduct",   "vv vav vava",                                                     "src1:l src2:l dst!1 len count" },
    { "CrossProduct", "vv vav vva vava",                                                 "src1:3 src2:3 dst:3 count" },
    { "L2Norm",       "v va",                                                            "src:l dst!1 len count" },
    { "FrobNorm",     "m ma",                                                            "src:hw width height dst!1 count" },
    { "Trace",        "m ma",                                                            "src:nn widthHeight dst!1 count" },
    { "Copy",         "ma",                                                              "src:hw dst:hw width height count" },
    { "Copy",         "va",                                                              "src:l dst:l len count" },
    { "Extract",      "m t ma ta",                                                       "src:hw dst!hw width height count" },
    { "Extract",      "v va",                                                            "src:l dst!l len count" },
    { "LoadIdentity", "ma=",                                                             "dst:hw width height count" },
    { "Transpose",    "m ma",                                                            "src:hw width height dst:wh count" },
    { "LUDecomp",     "m ma",                                                            "src:nn dstIndex#n dst:nn widthHeight count" },
    { "LUBackSubst",  "mv mva mava",                                                     "src1:nn srcIndex#n src2:n dst:n widthHeight count" },
    { "CholeskyDecomp",    "m ma",                                                       "src:nn dst:nn widthHeight count" },
    { "CholeskyBackSubst", "mv mva mava",                                                "src1:nn src2:n dst:n widthHeight count" },
    { "QRDecomp",          "m ma",                                                       "src:hw buffer*h dst:hw width height count" },
    { "QRBackSubst",       "mv mva mava",                                                "src1:hw buffer*h src2:h dst:w width height count" },
    { "Det",               "m ma",                                                       "src:nn widthHeight buffer*nn+n dst!1 count" },
    { "Invert",            "m ma",                                                       "src:nn buffer*nn+n dst:nn widthHeight count" },
    { "EigenValuesSym",          "m ma",                                                 "src=:nn buffer*nn dst!n widthHeight count" },
    { "EigenValuesVectorsSym",   "m ma",                                                 "src:nn buffer*nn dstVectors=dst:nn dstValues!n widthHeight count" },
    { "EigenValues",             "m ma",                                                 "src=:nn dstRe!n dstIm!n widthHeight count buffer*nn+5n" },
    { "EigenValuesVectors",      "m ma",                                                 "src:nn dstVectorsRight:nn dstVectorsLeft:nn dstRe!n dstIm!n widthHeight count buffer*3nn+5n" },
    { "EigenValuesVectorsRight", "m ma",                                                 "src:nn dstVectors=dst:nn dstRe!n dstIm!n widthHeight count buffer*3nn+5n" },
    { "EigenValuesVectorsLeft",  "m ma",                                                 "src:nn dstVectors=dst:nn dstRe!n dstIm!n widthHeight count buffer*3nn+5n" },
    { "EigenValuesGetBufSize",        "=",                                               "widthHeight bufSize#1" },
    { "EigenValuesVectorsGetBufSize", "=",                                               "widthHeight bufSize#1" },
    { "AffineTransform3DH",           "mva",                                             "src1:44 src2:3 dst:3 count" },
};

// ---- Checks ---------------------------------------------------------------------------------------------------------
// N pointers, C count, S sizes, M sizes that must match, B strides, R shifts; b stride0 where count > 1 (and then B is
// the others); r, s: shifts, strides of the sources alone. What is not listed follows standardChecks.
struct Checks { const char *functions, *standard, *L, *P; };
const Checks exceptions[] = {
    { "Add_vca_64f Sub_cav_32f",                                                                "NCSB",  "NCSBR",  "NCSB"   },
    { "Add_mam Sub_mam Sub_mma",                                                                "NCBS",  "NCSBR",  "NCSBR"  },
    { "Add_vav Sub_vav",                                                                        "NSBC",  "NSBRC",  "NSBCR"  },
    { "CholeskyBackSubst_mva",                                                                  "NCSB",  "NBRSC",  "NCSBR"  },
    { "CrossProduct_vv",                                                                        "NB",    "",       "NR"     },
    { "CrossProduct_vav",                                                                       "NBC",   "NBRC",   "NBCR"   },
    { "CrossProduct_vva CrossProduct_vava",                                                     "NCB",   "NCBR",   "NCBR"   },
    { "AffineTransform3DH_mva",                                                                 "NCB",   "",       ""       },
    { "QRDecomp_m QRBackSubst_mv",                                                              "NSBM",  "",       "NSRM"   },
    { "QRDecomp_ma QRBackSubst_mva QRBackSubst_mava",                                           "NCSBM", "NCSBRM", "NCSBRM" },
    { "EigenValues_ma EigenValuesSym_ma EigenValuesVectorsSym_ma",                              "NSCB",  "NSCRB",  "NSCRB"  },
    { "EigenValuesVectors_ma EigenValuesVectorsLeft_ma EigenValuesVectorsRight_ma",             "NSCB",  "NSCrsRB", "NSCrsRB" },
    { "EigenValuesGetBufSize EigenValuesVectorsGetBufSize",                                     "NS",    "",       ""       },
    { "Extract_m Extract_t",                                                                    "NSB",   "",       "SNR"    },
    { "Extract_v_32f",                                                                          "NSB",   "",       "NSR"    },
    { "Extract_v_64f",                                                                          "NSB",   "",       "SNR"    },
    { "Extract_ma Extract_ta Extract_va",                                                       "NSCB",  "NSCRB",  "NSCRB"  },
    { "LoadIdentity_ma_32f",                                                                    "NSCBb", "NSCBR",  "NSRCb"  },
    { "LoadIdentity_ma_64f",                                                                    "NSCBb", "NSCBR",  "NSCRb"  },
};
struct CopyChecks { const char *suffix, *ma, *va32, *va64; };
const CopyChecks copies[] = {
    { "SS", "NSCBb",  "NSCBb",  "NSCBb"  },
    { "SL", "NSCBRb", "NSCBRb", "NSCBRb" },
    { "SP", "NSCBRb", "NSCRBb", "NSCBRb" },
    { "LS", "NSCBRb", "NSCBRb", "NSCBRb" },
    { "LL", "NSCBR",  "NSCBR",  "NSCBR"  },
    { "LP", "NSCBRb", "NSCRBb", "NSCBRb" },
    { "PS", "NSCBRb", "NSCBRb", "NSCBRb" },
    { "PL", "NSCBRb", "NSCBRb", "NSCBRb" },
    { "PP", "NSCRb",  "NSCRb",  "NSCRb"  },
};

// ---- When a call goes parallel --------------------------------------------------------------------------------------
struct Threshold { const char *set; int type, standard, S2, L, LS2, P; };
const Threshold thresholds[] = {
    // set          type  standard    S2     L    LS2      P    S2, LS2: some stride2 is not the element size
    { "A",             0,    36864, 18432, 18432, 18432,  9216 },
    { "B",             0,    36865, 18433, 18433, 18433,  9217 },
    { "B1",            0,    36865, 36865, 18433, 18433,  9217 },
    { "V",            32,    20001, 20001, 40001, 40001, 20001 },
    { "V",            64,    20001, 20001, 20001, 20001, 20001 },
    { "W",            32,    20001, 20001, 40001, 20001, 20001 },
    { "W",            64,    20001, 20001, 20001, 20001, 20001 },
    { "X",            32,    40001, 20001, 40001, 20001, 20001 },
    { "X",            64,    40001, 20001, 40001, 20001, 40001 },
    { "K",            32,    35001, 35001, 35001, 15001, 17001 },
    { "K",            64,    35001, 35001, 35001, 35001, 17001 },
    { "Q",             0,     2801,  2801,  1801,  1801,  1801 },
    { "Cholesky",     32,     7501,  7501,  2001,  2001,  2001 },
    { "Cholesky",     64,     2001,  2001,   721,  2001,  2001 },
    { "CholeskyMva",  32,     1201,  1201,   721,   721,   721 },
    { "CholeskyMva",  64,      721,   721,   721,   721,   721 },
    { "CholeskyMava", 32,     2051,  1701,  1701,  1701,  1701 },
    { "CholeskyMava", 64,     1701,  1701,  1701,  1701,  2051 },
    { "1701",          0,     1701,  1701,  1701,  1701,  1701 },
    { "2001",          0,     2001,  2001,  2001,  2001,  2001 },
    { "5001",          0,     5001,  5001,  5001,  5001,  5001 },
    { "7001",          0,     7001,  7001,  7001,  7001,  7001 },
    { "10001",         0,    10001, 10001, 10001, 10001, 10001 },
    { "20001",         0,    20001, 20001, 20001, 20001, 20001 },
    { "40001",         0,    40001, 40001, 40001, 40001, 40001 },
};

} // namespace
struct Sizes { uint32_t w, h, w1, h1, w2, h2, wh, len, count; };
struct Measure { const char *operations, *shapes; uint32_t (*measure)(const Sizes&); const char* set; };
namespace
{
#define MEASURE(expression) [](const Sizes& s) -> uint32_t { \
    [[maybe_unused]] const auto [w, h, w1, h1, w2, h2, wh, len, count] = s; return expression; }
const Measure measures[] = {
    { "Add Sub",      "mam mat tam tat mma mta tma tta", MEASURE(w * h * (2 * count + 1)),               "A" },
    { "Add Sub",      "mama mata tama tata",             MEASURE(3 * w * h * count),                     "A" },
    { "Add Sub",      "vav vac vva",                     MEASURE(len * (2 * count + 1)),                 "V" },
    { "Sub",          "cva",                             MEASURE(2 * count + 1),                         "V" },
    { "Add Sub",      "vava",                            MEASURE(3 * len * count),                       "V" },
    { "Add Sub",      "vaca cava",                       MEASURE(count * (2 * len + 1)),                 "V" },
    { "Add Sub",      "vca cav",                         MEASURE(len * count + len + count),             "V" },
    { "Mul",          "mac tac",                         MEASURE(2 * w * h * count),                     "K" },
    { "Mul",          "vac",                             MEASURE(2 * len * count),                       "B" },
    { "Mul",          "vaca",                            MEASURE(count * (2 * len + 1)),                 "B1" },
    { "Mul",          "vca",                             MEASURE(len * count + len + count),             "B1" },
    { "Mul",          "mam",                             MEASURE(w2 * h2 + (w2 + w1) * h1 * count),      "B" },
    { "Mul",          "mat",                             MEASURE(w2 * h2 + (h2 + w1) * h1 * count),      "B" },
    { "Mul",          "tam",                             MEASURE(w2 * h2 + (w2 + h1) * w1 * count),      "B" },
    { "Mul",          "tat",                             MEASURE(w2 * h2 + (h2 + h1) * w1 * count),      "B" },
    { "Mul",          "mama",                            MEASURE(((w1 + w2) * h1 + w2 * h2) * count),    "B" },
    { "Mul",          "mata",                            MEASURE(((w1 + h2) * h1 + w2 * h2) * count),    "B" },
    { "Mul",          "tama",                            MEASURE(((h1 + w2) * w1 + w2 * h2) * count),    "B" },
    { "Mul",          "tata",                            MEASURE(((h1 + h2) * w1 + w2 * h2) * count),    "B" },
    { "Mul",          "mma",                             MEASURE(w1 * h1 + (h1 + h2) * w2 * count),      "B" },
    { "Mul",          "mta",                             MEASURE(w1 * h1 + (h1 + w2) * h2 * count),      "B" },
    { "Mul",          "tma",                             MEASURE(w1 * h1 + (w1 + h2) * w2 * count),      "B" },
    { "Mul",          "tta",                             MEASURE(w1 * h1 + (w1 + w2) * h2 * count),      "B" },
    { "Mul",          "mav",                             MEASURE(h * (w + 1) * count + w),               "B" },
    { "Mul",          "tav",                             MEASURE(w * (h + 1) * count + h),               "B" },
    { "Mul",          "mava tava",                       MEASURE((w * (h + 1) + h) * count),             "B" },
    { "Mul",          "mva tva",                         MEASURE(w * h + (w + h) * count),               "B" },
    { "Gaxpy",        "mva",                             MEASURE((w + 2 * h) * count),                   "5001" },
    { "Gaxpy",        "mvav",                            MEASURE((w + h) * count + h),                   "5001" },
    { "DotProduct",   "vav",                             MEASURE(len * (count + 1)),                     "X" },
    { "DotProduct",   "vava",                            MEASURE(2 * len * count),                       "X" },
    { "CrossProduct", "vav vva",                         MEASURE(2 * count + 1),                         "V" },
    { "CrossProduct", "vava",                            MEASURE(3 * count),                             "V" },
    { "L2Norm",       "va",                              MEASURE(len * count),                           "20001" },
    { "FrobNorm",     "ma",                              MEASURE(w * h * count),                         "W" },
    { "Trace Det",    "ma",                              MEASURE(wh * count),                            "W" },
    { "Invert",       "ma",                              MEASURE(2 * wh * count),                        "W" },
    { "LUDecomp",     "ma",                              MEASURE(wh * wh * count),                       "W" },
    { "EigenValuesSym", "ma",                            MEASURE(wh * (wh + 1) * count),                 "W" },
    { "LComb",        "vav",                             MEASURE(len * (2 * count + 1)),                 "W" },
    { "LComb",        "vava",                            MEASURE(3 * len * count),                       "W" },
    { "Saxpy",        "vav vva",                         MEASURE(len * (2 * count + 1)),                 "40001" },
    { "Saxpy",        "vava",                            MEASURE(3 * len * count),                       "40001" },
    { "LUBackSubst",  "mva",                             MEASURE((wh + 2 * count) * wh),                 "1701" },
    { "LUBackSubst",  "mava",                            MEASURE((wh + 2) * wh * count),                 "1701" },
    { "CholeskyDecomp",    "ma",                         MEASURE(wh * wh * count),                       "Cholesky" },
    { "CholeskyBackSubst", "mva",                        MEASURE((wh + 2 * count) * wh),                 "CholeskyMva" },
    { "CholeskyBackSubst", "mava",                       MEASURE((wh + 2) * wh * count),                 "CholeskyMava" },
    { "QRDecomp",     "ma",                              MEASURE(2 * w * h * count),                     "Q" },
    { "QRBackSubst",  "mva",                             MEASURE(w * h + (w + h) * count),               "Q" },
    { "QRBackSubst",  "mava",                            MEASURE((w * (h + 1) + h) * count),             "Q" },
    { "EigenValues",  "ma",                              MEASURE(wh * (wh + 1) * count),                 "10001" },
    { "EigenValuesVectors EigenValuesVectorsLeft EigenValuesVectorsRight", "ma", MEASURE(wh * (3 * wh + 1) * count), "7001" },
    { "EigenValuesVectorsSym", "ma",                     MEASURE(wh * (2 * wh + 1) * count),             "1701" },
    { "AffineTransform3DH", "mva",                       MEASURE(6 * count + 16),                        "2001" },
};

// These compute their measure, and then call the same serial kernel on both outcomes.
const char* const measuredOnly = "keslSub_vva_64f_P keslCrossProduct_vva_64f_P";
// A call of order 1 ends before any measure is taken.
const char* const earlyAtOrder1 = "Invert";

// ---- What else sets operations apart -----------------------------------------------------------------------------------
// Width is at most height.
const char* const tall = "QRDecomp QRBackSubst";
// Threads take the scratch that eigenvectors need, though values need less.
const char* const scratchOfVectors = "EigenValues";
// Bits arrive unchanged.
const char* const moving = "Copy Extract LoadIdentity Transpose";
// clang-format on

void addOperand(Function& f, const std::string& token, char letter = 0, bool array = false)
{
    const size_t mark = token.find_first_of(":!#*");
    const size_t equals = token.find('=');
    Operand o;
    o.name = token.substr(0, std::min(mark, equals));
    o.prefix = equals == std::string::npos ? o.name : token.substr(equals + 1, mark - equals - 1);
    o.extents = mark == std::string::npos ? "1" : token.substr(mark + 1);
    o.scratch = mark != std::string::npos && token[mark] == '*';
    o.integer = mark != std::string::npos && token[mark] == '#';
    o.dense = o.integer || o.scratch || (mark != std::string::npos && token[mark] == '!');
    o.destination = o.name.substr(0, 3) == "dst" || o.name == "bufSize";
    o.letter = letter ? letter : o.extents.size() == 2 ? 'm' : 'v';
    // The index table of one shared matrix is shared as well.
    o.array = letter ? array : o.name == "srcIndex" ? f.operands[0].array : f.array && !o.scratch;
    if (!o.dense) {
        o.layout = f.layout.empty() ? 'S' : f.layout.size() == 2 ? f.layout[o.destination] : f.layout[0];
        if (o.layout == 'L' && !o.array) o.layout = 'S';
        if (o.layout == 'P' && o.letter == 'c') o.layout = 'S';
    }
    f.operands.push_back(o);
}

void describe(Function& f, int operand)
{
    const Operand& o = f.operands[size_t(operand)];
    const std::string type = o.integer ? "int" : f.type();
    const auto add = [&](Role role, const char* ending) {
        std::string name = o.prefix + ending;
        name[0] = char(std::tolower(name[0]));
        f.arguments.push_back({role, operand, name, "int "});
    };
    if (o.byValue()) {
        f.arguments.push_back({Role::constant, operand, o.name, type + ' '});
        return;
    }
    const std::string constant = o.destination || o.scratch ? "" : "const ";
    f.arguments.push_back(
        {Role::pointer, operand, o.name, o.list() ? constant + type + " *const *" : constant + type + " *"});
    if (o.list()) add(Role::shift, "RoiShift");
    if (o.dense) return;
    if (o.array && o.layout != 'L') add(Role::stride0, "Stride0");
    if (o.layout != 'P' && (o.letter == 'm' || o.letter == 't')) add(Role::stride1, "Stride1");
    if (o.layout != 'P' && o.letter != 'c') add(Role::stride2, "Stride2");
}

std::string checksOf(const Function& f)
{
    const std::string typed = f.operation + (f.shape.empty() ? "" : "_" + f.shape) + (f.elemSize == 4 ? "_32f" : "_64f");
    const std::string untyped = typed.substr(0, typed.size() - 4);
    for (const CopyChecks& c : copies)
        if (f.operation == "Copy" && f.layout == c.suffix) return f.shape == "ma" ? c.ma : f.elemSize == 4 ? c.va32 : c.va64;
    for (const Checks& c : exceptions)
        if (among(typed, c.functions) || among(untyped, c.functions))
            return f.layout.empty() ? c.standard : f.layout == "L" ? c.L : c.P;
    const bool match = f.at("src2Width") >= 0 || f.at("src2Len") >= 0;
    return std::string(f.array ? "NCS" : "NS") + (match ? "M" : "") +
           (f.array            ? f.layout.empty() ? "B" : "BR"
            : f.layout.empty() ? "B"
                               : "R");
}

Function make(const Family& family, const std::string& shape, const std::string& kinds, int elemSize,
              const std::string& layout)
{
    Function f;
    f.operation = family.operation, f.shape = shape, f.layout = layout, f.elemSize = elemSize;
    f.name = "kesl" + f.operation + (shape.empty() ? "" : "_" + shape) + (elemSize == 4 ? "_32f" : "_64f") +
             (layout.empty() ? "" : "_" + layout);
    f.array = shape.find('a') != std::string::npos;
    std::vector<std::pair<char, bool>> letters; // and whether an array
    for (char c : kinds)
        if (c == 'a') letters.back().second = true;
        else letters.push_back({c, false});

    // Operands stand in the order of the letters, which the arguments need not follow: in cav the constant comes first.
    std::vector<std::string> sources, constants, rest, order;
    for (const std::string& token : words(family.arguments)) {
        const bool operand = token.find_first_of(":!#*") != std::string::npos;
        if (token.substr(0, 3) == "val") constants.push_back(token);
        else if (operand && token.substr(0, 3) == "src" && token.find(':') != std::string::npos) sources.push_back(token);
        else if (operand) rest.push_back(token);
        order.push_back(token);
    }
    for (auto [letter, array] : letters) {
        auto& tokens = letter == 'c' ? constants : sources;
        addOperand(f, tokens.front(), letter, array);
        tokens.erase(tokens.begin());
    }
    for (const std::string& token : rest) addOperand(f, token);

    std::vector<int> last; // constants passed by value come behind everything
    for (const std::string& token : order) {
        const std::string name = token.substr(0, token.find_first_of("=:!#*"));
        int operand = -1;
        for (size_t i = 0; i < f.operands.size(); ++i)
            if (f.operands[i].name == name) operand = int(i);
        if (operand >= 0 && f.operands[size_t(operand)].byValue()) last.push_back(operand);
        else if (operand >= 0) describe(f, operand);
        else if (name == "count" ? f.array : name.substr(0, 3) != "val")
            f.arguments.push_back({name == "count" ? Role::count : Role::size, -1, name, "int "});
    }
    for (int operand : last) describe(f, operand);
    f.sequence = checksOf(f);

    for (const Measure& m : measures)
        if (among(f.operation, m.operations) && among(f.shape, m.shapes)) f.work = &m;
    const auto either = [&](const char* first, const char* second) { return f.at(first) >= 0 ? f.at(first) : f.at(second); };
    const int places[] = {either("width", "src1Width"),
                          either("height", "src1Height"),
                          f.at("src1Width"),
                          f.at("src1Height"),
                          f.at("src2Width"),
                          f.at("src2Height"),
                          f.at("widthHeight"),
                          f.at("len"),
                          f.at("count")};
    std::copy(std::begin(places), std::end(places), f.sizeArguments);
    return f;
}

std::map<std::string, Function> makeAll()
{
    std::map<std::string, Function> all;
    for (const Family& family : families)
        for (const std::string& word : words(family.shapes)) {
            const size_t equals = word.find('=');
            const std::string shape = word.substr(0, equals);
            const std::string kinds = equals == std::string::npos ? word : word.substr(equals + 1);
            const std::string operation = family.operation;
            std::string layouts = shape.find('a') == std::string::npos ? "S P" : "S L P";
            if (operation == "Copy") layouts = "SS SL SP LS LL LP PS PL PP";
            if (shape.empty() || operation == "AffineTransform3DH") layouts = "S";
            for (int elemSize : {4, 8})
                for (const std::string& layout : words(layouts)) {
                    if (operation == "AffineTransform3DH" && elemSize == 8) continue;
                    Function f = make(family, shape, kinds, elemSize, layout == "S" ? "" : layout);
                    if (!all.emplace(f.name, f).second) throw std::logic_error("twice in the table: " + f.name);
                }
        }
    return all;
}
} // namespace

const std::map<std::string, Function>& functions()
{
    static const auto all = makeAll();
    return all;
}

int product(const std::string& sum, const Dims& d)
{
    int result = 0, term = 1;
    for (char c : sum + '+')
        if (c == '+') result += term, term = 1;
        else term *= d[c];
    return result;
}

std::string Function::prototype() const
{
    std::string text = "KeslStatus " + name + "(";
    for (const Argument& a : arguments) text += (text.back() == '(' ? "" : ", ") + a.type + a.name;
    return text + ");";
}

std::string Function::letters() const
{
    std::string result;
    for (const Operand& o : operands)
        for (char c : o.extents)
            if (std::isalpha(c) && result.find(c) == std::string::npos) result += c;
    if (shape.empty()) result += 'n';
    return result;
}

int Function::size(const std::string& argument, const Dims& d) const
{
    if (argument == "width") return d['w'];
    if (argument == "height") return d['h'];
    if (argument == "len") return d['l'];
    if (argument == "widthHeight") return d['n'];
    for (const Operand& o : operands) { // src1Width and its like: the operand as it is stored
        if (argument == o.name + "Width") return o.storedColumns(d);
        if (argument == o.name + "Height") return o.storedRows(d);
        if (argument == o.name + "Len") return o.columns(d);
    }
    throw std::logic_error("no such size: " + argument);
}

int Function::at(const std::string& argument) const
{
    for (size_t i = 0; i < arguments.size(); ++i)
        if (arguments[i].name == argument) return int(i);
    return -1;
}

bool Function::contiguous(const std::vector<Value>& values) const
{
    for (size_t i = 0; i < arguments.size(); ++i)
        if (arguments[i].role == Role::stride2 && values[i].i != elemSize) return false;
    return true;
}

bool Function::tested(const Argument& a) const
{
    // The source of this one member, and of no sibling, may have any stride0.
    if (name == "keslAdd_vaca_32f_P" && a.name == "srcStride0") return false;
    const auto has = [&](char c) { return sequence.find(c) != std::string::npos; };
    if (a.role == Role::shift) return has('R');
    if (a.role == Role::stride0) return has('b') || has('B');
    return true;
}

int Function::expected(const std::vector<Value>& values) const
{
    const bool deferred = sequence.find('b') != std::string::npos;
    const auto value = [&](const char* argument) { return values[size_t(at(argument))].i; };
    const auto any = [&](auto&& fault) {
        for (size_t i = 0; i < arguments.size(); ++i)
            if (tested(arguments[i]) && fault(arguments[i], values[i])) return true;
        return false;
    };
    const auto uneven = [&](int bytes) { return (bytes & (elemSize - 1)) != 0; };
    const auto stride = [](const Argument& a) {
        return a.role == Role::stride0 || a.role == Role::stride1 || a.role == Role::stride2;
    };
    const auto source = [&](const Argument& a) { return a.operand >= 0 && !operands[size_t(a.operand)].destination; };
    const auto badStride = [&](const Argument& a, Value v) { return stride(a) && (uneven(v.i) || v.i < 1); };
    const auto badShift = [&](const Argument& a, Value v) { return a.role == Role::shift && (uneven(v.i) || v.i < 0); };
    const auto mismatch = [&] {
        if (tallOnly()) return value("width") > value("height");
        const int inner = shape[0] == 't' ? value("src1Height") : value("src1Width");
        if (at("src2Len") >= 0)
            return inner != value("src2Len") || (at("src3Len") >= 0 && value("src1Height") != value("src3Len"));
        const char second = shape.substr(1, 1) == "a" ? shape[2] : shape[1];
        return inner != (second == 't' ? value("src2Width") : value("src2Height"));
    };
    for (char c : sequence) switch (c) {
        case 'N':
            if (any([](const Argument& a, Value v) { return a.role == Role::pointer && !v.p; })) return NullPointer;
            break;
        case 'C':
            if (any([](const Argument& a, Value v) { return a.role == Role::count && v.i < 1; })) return BadCount;
            break;
        case 'S':
            if (any([](const Argument& a, Value v) { return a.role == Role::size && v.i < 1; })) return BadSize;
            break;
        case 'M':
            if (mismatch()) return SizeMismatch;
            break;
        case 'B':
            if (any([&](const Argument& a, Value v) { return badStride(a, v) && !(deferred && a.role == Role::stride0); }))
                return BadStride;
            break;
        case 'b':
            if (value("count") > 1 &&
                any([&](const Argument& a, Value v) { return badStride(a, v) && a.role == Role::stride0; }))
                return BadStride;
            break;
        case 'R':
            if (any(badShift)) return BadRoiShift;
            break;
        case 's':
            if (any([&](const Argument& a, Value v) { return badStride(a, v) && source(a); })) return BadStride;
            break;
        case 'r':
            if (any([&](const Argument& a, Value v) { return badShift(a, v) && source(a); })) return BadRoiShift;
            break;
        default: throw std::logic_error("no such check");
        }
    return Ok;
}

bool Function::raises(const std::vector<Value>& values) const
{
    if (among(operation, "Add Sub Saxpy LComb") || (operation == "Mul" && shape.find('c') != std::string::npos)) return true;
    const int count = at("count");
    return (count < 0 || values[size_t(count)].i == 1) && operation.find("EigenValues") != 0;
}
bool Function::threaded() const { return measured() && !among(name, measuredOnly); }

int Function::measure(const std::vector<Value>& values) const
{
    uint32_t v[9];
    for (int i = 0; i < 9; ++i) v[i] = sizeArguments[i] < 0 ? 0 : uint32_t(values[size_t(sizeArguments[i])].i);
    return int(work->measure({v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8]}));
}

int Function::threshold(bool contiguousElements) const
{
    for (const Threshold& t : thresholds)
        if (std::string(t.set) == work->set && (!t.type || t.type == elemSize * 8)) {
            if (layout == "P") return t.P;
            if (layout == "L") return contiguousElements ? t.L : t.LS2;
            return contiguousElements ? t.standard : t.S2;
        }
    throw std::logic_error("no such threshold set");
}

std::string Function::scratch() const
{
    if (among(operation, scratchOfVectors)) return "3nn+5n";
    for (const Operand& o : operands)
        if (o.scratch) return o.extents;
    return "";
}

bool Function::tallOnly() const { return among(operation, tall); }

bool Function::beforeMeasure(int order) const { return order == 1 && among(operation, earlyAtOrder1); }

bool Function::movesData() const { return among(operation, moving); }
