#!/usr/bin/env python3
"""Does a Fortran module say of each C function what its header says?

prototypes.py COMPILER MODULE.f90 HEADER LIBRARY

The compiler tells which prototypes of C it understands the module's interfaces to be. They must be those of the header, in
the names of the parameters too, and be there for everything that the library exports. Fortran knows an address when it is
passed by itself or in a list, but not what lies there; and it ignores case.
"""
import re
import subprocess
import sys

compiler, module, header, library = sys.argv[1:]
ALIKE = {"ptrdiff_t": "long", "size_t": "unsigned long", "KeslStatus": "int"}


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def kind(text, is_loose):
    word = text.replace("const", "").replace("*", " ").strip()
    word = ALIKE.get(word, word).replace("unsigned ", "")
    depth = text.count("*")
    return word if not depth else "address" if depth == 2 or is_loose or word in ("void", "KeslVersionRecord") else word + " *"


def prototypes(text, is_loose):
    text = re.sub(r"/\*.*?\*/", "", text, flags=re.S)
    found = {}
    for result, name, listed in re.findall(r"^(\w[\w *]*?)(\w+) ?\(([^()]*)\);", text, re.M):
        parameters = re.findall(r"\s*([\w\s*]*?)(\w+)\s*(?:,|$)", listed)
        found[name] = (kind(result, is_loose), [(kind(k, is_loose), p.lower()) for k, p in parameters if p != "void"])
    return found


is_loose = header.endswith("kesl.h")
bound = prototypes(output(compiler, "-fc-prototypes", "-fsyntax-only", module), is_loose)
declared = prototypes(open(header).read(), is_loose)
exported = [line.split()[-1] for line in output("nm", "-D", "--defined-only", library).splitlines()]
faults = [f"{name} is not in the module" for name in exported if name not in bound]
faults += [f"{name} is not exported" for name in declared if name not in exported]
faults += [f"{name}: {bound[name]} in the module, {declared.get(name)} in the header"
           for name in exported if name in bound and bound[name] != declared.get(name)]
print(len(exported), "functions")
sys.exit("\n".join(faults) or 0 if exported else "nothing is exported")
