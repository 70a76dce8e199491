#!/usr/bin/env python3
"""Writes the Fortran module of a public header: generate.py HEADER MODULE.f90

kesl.h becomes functions on arrays whose last dimension counts the objects, generic over both kinds: they take sizes and
strides from the arrays and call the C functions. The shapes of the operands are those in the header's comments, such as
(m,n) (m,k) -> (n,k). Any other header becomes interfaces of the same names and arguments.
"""
import pathlib
import re
import sys
import textwrap

TYPES = {"float": "real(c_float)", "double": "real(c_double)", "int": "integer(c_int)", "ptrdiff_t": "integer(c_ptrdiff_t)",
         "KeslStatus": "integer(c_int)"}


def flat(text):
    return " ".join(text.split())


def statement(depth, text):
    """A statement in lines of at most 120 characters."""
    indent = "    " * depth
    lines = textwrap.wrap(text, 118, initial_indent=indent, subsequent_indent=indent + "    ", break_long_words=False,
                          break_on_hyphens=False)
    return " &\n".join(lines)


def comment(depth, text):
    """A comment of C."""
    return "\n".join("    " * depth + ("! " + re.sub(r"^ \* ?| *\*/$|^/\* ", "", line)).rstrip() for line in text.splitlines())


def parameters(text):
    """(type, name) of each parameter in a prototype of C."""
    return [(flat(kind), name) for kind, name in re.findall(r"\s*([\w\s*]*?)(\w+)\s*(?:,|$)", text) if name != "void"]


def interface(name, binding, result, declared):
    """The interface of a C function. `declared` says what each parameter is, and its name."""
    lines = [statement(2, f'function {name}({", ".join(p for _, p in declared)}) bind(c, name="{binding}") result(returned)'),
             "            import"]
    for what in dict.fromkeys(what for what, _ in declared):
        shape = "(*)" if "intent" in what else ""
        lines.append(statement(3, f"{what} :: " + ", ".join(p + shape for w, p in declared if w == what)))
    return "\n".join(lines + [f"            {result} :: returned", "        end function"])


# ---------------------------------------------------------------------------------- keslmx.h and keslcorex.h, name for name

def as_it_is(kind):
    """An array of any size for a pointer, an array of addresses for a list of pointers."""
    if kind.count("*") == 2:
        return "type(c_ptr), intent(in)"
    element = TYPES[re.sub(r"const|\*", "", kind).strip()]
    return f"{element}, intent({'in' if 'const' in kind else 'inout'})" if "*" in kind else f"{element}, value"


def bindings(name, header):
    code = re.sub(r"/\*.*?\*/", "", header, flags=re.S)
    parts = [f"! {name}.h for Fortran: the same names and arguments. That header is the reference.",
             f"module {name}", "    use, intrinsic :: iso_c_binding", "    implicit none", ""]
    for constant, value in re.findall(r"(\w+)\s*=\s*(-?\d+)", code):
        parts.append(f"    integer(c_int), parameter :: {constant} = {value}")
    for fields, record in re.findall(r"typedef struct \w+ \{(.*?)\} (\w+);", code, re.S):
        parts += ["", f"    type, bind(c) :: {record}"]
        for kind, field, size in re.findall(r"(\w[\w *]*?)\s*(\w+)(\[\d+\])?;", fields):
            what = "type(c_ptr)" if "*" in kind else "character(c_char)" if kind == "char" else TYPES[kind]
            parts.append(f"        {what} :: {field}" + (size or "").replace("[", "(").replace("]", ")"))
        parts.append("    end type")
    parts += ["", "    interface"]
    for kind, function, text in re.findall(r"^(\w[\w *]*?)(\w+)\(([^()]*)\);", code, re.M):
        result = "type(c_ptr)" if "*" in kind else TYPES[kind.strip()]
        parts.append(interface(function, function, result, [(as_it_is(k), p) for k, p in parameters(text)]))
    return "\n".join(parts + ["    end interface", f"end module {name}", ""])


# ------------------------------------------------------------------------------------------------- kesl.h, arrays as operands

def dimensions(rank):
    return ", ".join(":" * rank)


def operand_of(kind, suffix, rank):
    """The function that makes an operand of an array."""
    def element(i):
        return "a(" + ", ".join("2" if d == i else "1" for d in range(1, rank + 1)) + ")"
    strides = "\n".join(f"        if (size(a, {i}, c_ptrdiff_t) > 1) o%stride({i % rank}) = distance(o%p, c_loc({element(i)}))"
                        for i in range(1, rank + 1))
    return f"""\
    function operand_{suffix}_{rank}(a, wanted, is_source) result(o)
        {TYPES[kind]}, target :: a({dimensions(rank)})
        integer(c_ptrdiff_t), intent(in) :: wanted({rank})
        logical, intent(in) :: is_source
        type(operand) :: o
        o%stride(1:2) = storage_size(a) / 8
        o%fits = fits(shape(a, c_ptrdiff_t), wanted, is_source)
        if (any(shape(a, c_ptrdiff_t) == 0)) return
        o%p = c_loc({element(0)})
{strides}
    end function
"""


class Operand:
    def __init__(self, place, kind, name, shape, text):
        self.place, self.name, self.shape, self.rank = place, name, shape, len(shape) + 1
        self.element = TYPES[re.sub(r"const|\*", "", kind).strip()]
        self.is_source = "const" in kind
        self.is_optional = re.search(rf"Either of (\w+ and )?{name}\b.* may be null", text)

    def declaration(self):
        intent = "" if self.is_source else ", intent(inout)"
        optional = ", optional" if self.is_optional else ""
        return f"        {self.element}, target{intent}{optional} :: {self.name}({dimensions(self.rank)})"

    def extent(self, dimension):
        return f"size({self.name}, {dimension}, c_ptrdiff_t)"

    def taken(self):
        wanted = ", ".join(f"{s}_c_ptrdiff_t" if s.isdigit() else s for s in self.shape + ["count"])
        present = f"if (present({self.name})) " if self.is_optional else ""
        return f"        {present}o_{self.name} = operand_of({self.name}, [{wanted}], .{str(self.is_source).lower()}.)"


def shapes_of(text):
    """[[m, n], [m, k], [n, k]] of a comment that says (m,n) (m,k) -> (n,k)."""
    shape = r"\(((?:\w+,?)*|min\(m,n\))\)"
    found = re.search(rf"(?:{shape} )+->(?: {shape})+", text)[0]
    both = {"min(m,n)": "min(m, n)"} | ({"p": "min(m, n)"} if "p = min(m,n)" in text else {})
    return [[both.get(size, size) for size in ([sizes] if "min" in sizes else sizes.split(",") if sizes else [])]
            for sizes in re.findall(shape, found)]


def procedure(name, suffix, arguments, text):
    """The function on arrays, and the interface of the C function."""
    pointers = [(place, kind, p) for place, (kind, p) in enumerate(arguments, 1) if "*" in kind and p != "info"]
    operands = [Operand(*pointer, shape, text) for pointer, shape in zip(pointers, shapes_of(text), strict=True)]
    sizes = [p for kind, p in arguments if kind == "ptrdiff_t" and "Stride" not in p]
    extents = {}
    for o in operands:
        for dimension, size in enumerate(o.shape, 1):
            extents.setdefault(size, o.extent(dimension))
        if not o.is_source:
            extents.setdefault("count", o.extent(o.rank))

    def passed(p):
        stride = re.fullmatch(r"(\w+)Stride(\d)", p)
        return f"o_{stride[1]}%stride({stride[2]})" if stride else f"o_{p}%p" if p in [o.name for o in operands] else p

    fits = [f"o_{o.name}%fits" for o in operands] + ["info_fits(info, count)"]
    places = [str(o.place) for o in operands] + [str(len(arguments))]
    code = [f"    function {name}_{suffix}({', '.join(o.name for o in operands)}, info) result(returned)",
            *(o.declaration() for o in operands),
            "        integer(c_int), intent(out), optional, contiguous :: info(:)",
            "        integer(c_ptrdiff_t) :: returned, " + ", ".join(sizes),
            "        type(operand) :: " + ", ".join(f"o_{o.name}" for o in operands),
            *(f"        {size} = {extents[size]}" for size in sizes),
            *(o.taken() for o in operands),
            statement(2, f"returned = misfit([{', '.join(fits)}], [{', '.join(places)}])"),
            statement(2, f"if (returned == 0) returned = c_{name}_{suffix}({', '.join(passed(p) for _, p in arguments)})"),
            "    end function\n"]
    declared = [("integer(c_int), intent(out), optional" if p == "info" else
                 "type(c_ptr), value" if "*" in kind else "integer(c_ptrdiff_t), value", p) for kind, p in arguments]
    return "\n".join(code), interface(f"c_{name}_{suffix}", f"kesl_{name}_{suffix}", "integer(c_ptrdiff_t)", declared)


def stacks(header):
    found = re.findall(r"(/\*(?:(?!\*/).)*\*/)\nptrdiff_t kesl_(\w+)_32f\(([^;]*)\);\nptrdiff_t kesl_\2_64f\(([^;]*)\);", header, re.S)
    procedures, generics, interfaces = [], [], []
    for text, name, *both in found:
        told = flat(re.sub(r"^ \*", "", text, flags=re.M))
        for suffix, arguments in zip(("32f", "64f"), both):
            code, c = procedure(name, suffix, parameters(arguments), told)
            procedures.append(code)
            interfaces.append(c)
        generics.append(f"{comment(1, text)}\n    interface kesl_{name}\n        procedure {name}_32f, {name}_64f\n"
                        f"    end interface\n    public :: kesl_{name}\n")
    ranks = [(kind, suffix, rank) for kind, suffix in (("float", "32f"), ("double", "64f")) for rank in (1, 2, 3)] + [("int", "int", 2)]
    parts = {"generics": generics, "interfaces": interfaces, "procedures": procedures, "operands": [operand_of(*r) for r in ranks]}
    text = pathlib.Path(__file__).with_name("kesl.f90.in").read_text()
    return re.sub(r"@(\w+)@", lambda m: "\n".join(parts[m[1]]).rstrip("\n"), text)


def main():
    header, module = map(pathlib.Path, sys.argv[1:])
    text = header.read_text()
    module.write_text(stacks(text) if header.stem == "kesl" else bindings(header.stem, text))


main()
