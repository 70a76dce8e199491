#!/usr/bin/env python3
"""Compares the types in a public header with the description in this directory, as abidiff sees them.

interface.py HEADER            exits 1 if a program that was compiled before would not fit any more, or a new function is not described
interface.py HEADER --write    writes the description, for a change on purpose

The libraries carry no debugging information, of which such descriptions are made; so a library of the same names with empty
bodies is compiled from the header, with it. That the real one has these names, and only these, is tested beside this.
"""
import os
import re
import subprocess
import sys
import tempfile

header, write = os.path.abspath(sys.argv[1]), sys.argv[2:] == ["--write"]
name = os.path.basename(header)
os.chdir(os.path.dirname(os.path.abspath(__file__)))
description = name.replace(".h", ".abi")

code = re.sub(r"/\*.*?\*/", "", open(header).read(), flags=re.S)
functions = re.findall(r"^(?!typedef)\w[\w *]*?\w+\([^()]*\)(?=;)", code, re.M)
source = f"#include <{name}>\n" + "".join(f + " { return 0; }\n" for f in functions)

with tempfile.TemporaryDirectory() as directory:
    os.symlink(os.path.dirname(header), os.path.join(directory, "include"))
    library = os.path.join(directory, "lib" + name.replace(".h", ".so"))
    subprocess.run([os.environ.get("CC", "gcc"), "-g", "-shared", "-fPIC", "-w", "-xc", "-", "-Iinclude", "-o", library], check=True,
                   text=True, input=source, cwd=directory)
    if write:
        subprocess.run(["abidw", "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--out-file", description, library], check=True)
        sys.exit()
    described = len(set(re.findall(r"<elf-symbol name='(\w+)'", open(description).read())))
    print(f"{len(functions)} functions in {name}, {described} in {description}")
    sys.exit(subprocess.run(["abidiff", description, library]).returncode or described != len(functions))
