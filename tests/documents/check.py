#!/usr/bin/env python3
"""Compiles and runs the code in the pages, and follows their links.

check.py ROOT WORK CC CXX FC PYTHON LIBRARY...

Pages are README.md, CONTRIBUTING.md, CHANGELOG.md, docs/*.md and the README of each directory; code is what stands in blocks ```c,
```cpp and, if the command FC is not empty, ```fortran, and under EXAMPLES in the first comment of include/keslmx.h. A block with a
main is a program and must return 0. Any other is compiled as it is, or, behind a comment <!-- in: PARAMETERS -->, as the body of a
function with these parameters or, in Fortran, declarations. What is a source file beside its page is left to the build. Blocks
```python are programs, too, and run with the packages in the directory PYTHON if that is not empty.
Links and pictures of a page must lead to files, and to headings that they have.
"""
import glob, os, re, subprocess, sys

root, work, cc, cxx, fc, python, *libraries = sys.argv[1:]
os.makedirs(work, exist_ok=True)
faults = []


def compiled(name, language, code):
    """Compiles one block and runs it if it is a program."""
    source, program = os.path.join(work, name + "." + language), os.path.join(work, name)
    with open(source, "w") as file:
        file.write(code)
    isProgram = re.search(r"\bmain\(|^program ", code, re.M)
    command = {"c": [cc, "-std=c99"], "cpp": [cxx, "-std=c++17", "-isystem", "/usr/include/eigen3"],
               "f90": fc.split() + ["-std=f2018"]}[language]
    command += ["-pedantic", "-Wall", "-Wextra", "-Werror", "-I", os.path.join(root, "include"), source, "-o", program]
    if isProgram:
        command += libraries + ["-Wl,-rpath," + os.path.dirname(l) for l in libraries] + ["-lm"]
    else:
        command += ["-c", "-Wno-unused"]
    for step in [command] + ([[program]] if isProgram else []):
        done = subprocess.run(step, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if done.returncode:
            faults.append(f"{name}: {os.path.basename(step[0])} returns {done.returncode}\n{done.stdout}")
            return


def interpreted(name, code):
    done = subprocess.run([sys.executable, "-B", "-c", code], cwd=work, env=os.environ | {"PYTHONPATH": python},
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode:
        faults.append(f"{name}: python returns {done.returncode}\n{done.stdout}")


def anchors(path):
    """What links to the headings of a page call them."""
    text = re.sub(r"^```.*?^```", "", open(path).read(), flags=re.M | re.S)
    return {re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-") for heading in re.findall(r"^#+ (.*)$", text, re.M)}


def page(path):
    text = open(os.path.join(root, path)).read()
    name = path.replace("/", "_").replace(".md", "")
    programs = re.findall(r"^```python\n(.*?)^```", text, re.M | re.S)
    for number, code in enumerate(programs if python else [], 1):
        interpreted(f"{name}_python_{number}", code)
    blocks = re.findall(r"(?:<!-- in: (.*?) -->\n)?^```(c|cpp|fortran)\n(.*?)^```", text, re.M | re.S)
    beside = [open(file).read() for file in glob.glob(os.path.join(root, os.path.dirname(path), "*.[cf]*"))]
    for number, (parameters, language, code) in enumerate(blocks, 1):
        if code in beside or (language == "fortran" and not fc):
            continue
        if language == "fortran":
            language = "f90"
            if parameters:
                declarations = parameters.replace("; ", "\n")
                code = ("subroutine fragment()\nuse, intrinsic :: iso_c_binding\nuse kesl\nuse keslmx\nuse keslcorex\n"
                        f"implicit none\n{declarations}\n{code}end subroutine\n")
        elif parameters:
            function = f"void fragment({parameters})"
            code = f"#include <kesl.h>\n#include <keslmx.h>\n{function};\n{function}\n{{\n{code}}}\n"
        compiled(f"{name}_{number}", language, code)
    prose = re.sub(r"^```.*?^```|^ {4}.*?$|`[^`]*`", "", text, flags=re.M | re.S)
    for link, name in re.findall(r"\]\(([^)#]*)#?([^)]*)\)", prose):
        target = os.path.join(root, os.path.dirname(path), link) if link else os.path.join(root, path)
        if re.match(r"https?:", link):
            continue
        if not os.path.exists(target):
            faults.append(f"{path}: no such file: {link}")
        elif name and name not in anchors(target):
            faults.append(f"{path}: no such heading: {link}#{name}")
    return len(blocks) + len(programs)


def header():
    comment = open(os.path.join(root, "include/keslmx.h")).read().split("*/")[0]
    lines = re.search(r"^ \* EXAMPLES\.(.*?)^ \* [A-Z]{2}", comment, re.M | re.S)[1].splitlines()
    code = "\n".join(line[6:].split("//")[0] for line in lines if line.startswith(" *     "))
    compiled("header", "c", "#include <keslmx.h>\n" + re.sub(r"^KeslStatus", "static KeslStatus", code, flags=re.M))


listed = subprocess.run(["find", ".", "-name", "*.md", "-not", "-path", "./build/*", "-not", "-path", "./.*"], cwd=root, check=True,
                        stdout=subprocess.PIPE, text=True).stdout.split()
blocks = sum(page(os.path.normpath(path)) for path in sorted(listed))
header()
print(f"{len(listed)} pages, {blocks} blocks")
if blocks < 4:
    faults.append("hardly any code was found")
sys.exit("\n".join(faults) if faults else 0)
