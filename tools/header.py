#!/usr/bin/env python3
"""Keeps the prototypes of include/keslmx.h as the argument lists of the families say, made flat by the preprocessor.

header.py          writes the prototypes into the header; new ones are printed, to be placed under their comment
header.py --check  changes nothing; lists what differs and exits 1 if anything does
"""
import glob, os, re, subprocess, sys, textwrap

os.chdir(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
modules = [m for d in "frame elementwise products movement solvers eigen geometry".split() for m in sorted(glob.glob(d + "/*.cpp"))]
text = subprocess.run([os.environ.get("CXX", "g++"), "-std=gnu++20", "-E", "-P", "-I.", "-Iinclude", "-xc++", "-"], check=True, text=True,
                      stdout=subprocess.PIPE, input="".join(f'#include "{m}"\n' for m in modules if not m.endswith("_omp.cpp"))).stdout
flat = lambda s: re.sub(r"\s*([*,()])\s*", r"\1", " ".join(s.split()))
made = {m[2]: m[0] for m in re.finditer(r"(?<=\(\"default\"\)\]\])\s+((?:const )?\w+\s*\*?)\s*(kesl\w+)\s*\([^)]*\)", text)}

def laid_out(prototype):
    line = re.sub(r"(\w)(\*+)(const)?(\*?)(?=\w)", lambda m: f"{m[1]} {m[2]}{'const ' if m[3] else ''}{m[4]}", flat(prototype))
    words = re.sub(r",(?=\S)", ", ", line.replace(" ", "\0")) # lines break between arguments only
    return textwrap.fill(words + ";", 118, subsequent_indent="    ", break_long_words=False).replace("\0", " ")

path = "include/keslmx.h"
header = open(path).read()
declared, wrong = set(), []
def replaced(m):
    declared.add(m[2])
    if m[2] not in made or flat(m[0][:-1]) != flat(made[m[2]]): wrong.append(m[2])
    return laid_out(made[m[2]]) if m[2] in made else m[0]
new = re.sub(r"^((?:const )?\w+ \*?)(kesl\w+)\([^)]*\);", replaced, header, flags=re.M)
missing = [n for n in made if n not in declared]

for name in wrong: print("differs:" if name in made else "has no definition:", name)
for name in missing: print("" if "--check" not in sys.argv else "not declared: ", laid_out(made[name]), sep="")
if "--check" in sys.argv: sys.exit(bool(wrong or missing))
open(path, "w").write(new)
