// A case as C.
#include "case.h"

#include <cmath>
#include <set>

std::string Case::source(const std::string& problem) const
{
    std::string text = "\n/* " + name() + ": " + problem + " */\n";
    std::vector<std::string> data; // names of the storage
    for (size_t i = 0; i < placed.size(); ++i) {
        const Placed& p = placed[i];
        const Operand& o = f.operands[i];
        data.push_back(o.list() ? o.name + "Data" : o.name);
        if (o.byValue()) continue;
        const std::string type = o.integer ? "int" : f.type();
        const ptrdiff_t elements = (p.end - p.begin) / p.elemSize;
        const bool input = !o.destination && !o.scratch;
        for (size_t other = 0; other < i; ++other)
            if (placed[other].begin == p.begin) data[i] = data[other]; // in place
        if (data[i] == (o.list() ? o.name + "Data" : o.name)) {
            text += "static " + type + " " + data[i] + format("[%td]", elements) + (input ? " = {" : "");
            std::set<ptrdiff_t> offsets;
            for (int k = 0; k < p.objects && input; ++k)
                for (int r = 0; r < p.rows; ++r)
                    for (int column = 0; column < p.columns; ++column) {
                        const bool t = o.letter == 't';
                        const char* at =
                            reinterpret_cast<char*>(&view<char>(int(i), k, false)(t ? column : r, t ? r : column));
                        offsets.insert((at - p.begin) / p.elemSize);
                    }
            ptrdiff_t next = 0;
            for (ptrdiff_t e : offsets) {
                const char* at = p.begin + e * p.elemSize;
                const double value = o.integer         ? *reinterpret_cast<const int*>(at)
                                     : f.elemSize == 4 ? double(*reinterpret_cast<const float*>(at))
                                                       : *reinterpret_cast<const double*>(at);
                if (offsets.size() > 20000) {
                    text += "0 /* too many to print */";
                    break;
                }
                if (e != next) text += format("[%td] = ", e);
                text += std::isnan(value)   ? "NAN, "
                        : std::isinf(value) ? (value > 0 ? "INFINITY, " : "-INFINITY, ")
                        : o.integer         ? format("%d, ", int(value))
                                            : format("%a, ", value);
                next = e + 1;
            }
            text += input ? "};\n" : ";\n";
        }
        if (!o.list()) continue;
        text += "static " + type + " *" + o.name + "[] = {";
        for (char* entry : p.list) text += "(void *)((char *)" + data[i] + format(" + %td), ", entry - p.begin);
        text += "};\n";
    }
    text += "int status = " + f.name + "(";
    for (size_t i = 0; i < values.size(); ++i) {
        const Argument& a = f.arguments[i];
        if (i) text += ", ";
        if (a.role == Role::pointer) {
            const Operand& o = f.operands[size_t(a.operand)];
            text += (o.list() ? (o.destination ? "" : format("(const %s *const *)", f.type())) + o.name
                              : data[size_t(a.operand)]);
        } else if (a.role == Role::constant) text += format("%a", f.elemSize == 4 ? double(values[i].f) : values[i].d);
        else text += std::to_string(values[i].i);
    }
    return text + ");\n";
}
