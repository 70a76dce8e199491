"""Checks a built library. Usage: check.py corex|v1|v3|v4 LIBRARY EXPORTS.MAP"""
import re
import subprocess
import sys
from collections import namedtuple

level, library, exports_map = sys.argv[1:]
companion = level == "corex"
faults = []


def check(what, good):
    if not good:
        faults.append(what)


def same(what, found, expected):
    for names, how in (found - expected, "too many"), (expected - found, "missing"):
        if names:
            faults.append(f"{what} names, {len(names)} {how}: {' '.join(sorted(names)[:10])}")


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


Symbol = namedtuple("Symbol", "type binding visibility section name")


def symbols(table):
    rows = (line.split() for line in run("readelf", "-W", table, library).splitlines())
    return [Symbol(*row[3:7], row[7].split("@")[0]) for row in rows if len(row) > 7 and row[0][:-1].isdigit()]


def internal_names(exported):
    """The names of all kernels and wrappers that belong to the exported functions."""
    names = set()
    for name in exported:
        if re.match("kesl(Copy|Extract|LoadIdentity|.*GetBufSize|GetLibVersion)", name):
            continue
        operation, operands, element, layout = re.fullmatch(r"kesl(\w+?)_([a-z]+)_(32f|64f)(_[LP])?", name).groups()
        names.add("own" + name)
        # General eigenproblems and the norm of a single matrix read through stride2 in their one kernel.
        one_kernel = re.fullmatch("EigenValues(Vectors(Left|Right)?)?_.*|FrobNorm_m", f"{operation}_{operands}")
        if not one_kernel and layout != "_P":
            names.add(f"ownkesl{operation}_{operands}_{element}_{'LS2' if layout else 'S2'}")
        serial = ("keslSub_vva_64f_P", "keslCrossProduct_vva_64f_P")  # unlike their twins
        if "a" in operands and operation != "Transpose" and name not in serial:
            names.add("ownOMP_" + name)
        if operands == "m" and operation in ("Invert", "LUDecomp"):
            plain = "_S" if operation == "LUDecomp" and not layout else ""
            names.add(f"own{name}{plain}_com")
            if not layout:
                names.add(f"own{name}_S2_com")
    return names


dynamic = run("readelf", "-dW", library)
needed = set(re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic))
openmp = needed & {"libgomp.so.1", "libomp.so.5"}
soname = "libkeslcorex64.so.6.1" if companion else "libkeslmx.so.6.1"
check(f"soname is not {soname}", re.findall(r"\(SONAME\).*\[(.*)\]", dynamic) == [soname])
check("may be unmapped while the OpenMP runtime's threads are in it", "NODELETE" in dynamic)
path = re.findall(r"\((?:RUNPATH|RPATH)\).*\[(.*)\]", dynamic)
check(f"libraries are sought in {path}", path in (["$ORIGIN"], ["$ORIGIN:$ORIGIN/../.."]))
check("not exactly one OpenMP runtime is needed", len(openmp) == 1)
same("needed", needed - openmp - {"libc.so.6", "libm.so.6", "ld-linux-x86-64.so.2"},
     set() if companion else {"libkeslcorex64.so.6.1"})

with open(exports_map) as text:
    exported = set(re.findall(r"^\s*(\w+);$", text.read(), re.M))
dyn = symbols("--dyn-syms")
same("exported", {s.name for s in dyn if s.section != "UND"}, exported)
undefined = {s.name for s in dyn if s.section == "UND"}
runtime = [name for name in undefined if re.match("_Z|__cxa_(?!finalize)|__gxx|_Unwind|__dynamic_cast", name)]
check(f"names of the C++ runtime: {runtime}", not runtime)

if not companion:
    check("ownGetNumThreads is not looked up at run time, so nobody could stand in for it",
          "ownGetNumThreads" in undefined and
          re.search(r"R_X86_64_(JUMP_SLO|GLOB_DA)T?\s.*\bownGetNumThreads\b", run("readelf", "-rW", library)))

    # .part.0, ._omp_fn.0 and their like, which have a dot, are pieces that the compiler cut off
    table = symbols("--syms")
    same("internal", {s.name for s in table if s.type == "FUNC" and s.section != "UND" and
                      (s.binding == "LOCAL" or s.visibility == "HIDDEN") and
                      re.fullmatch(r"own(OMP_)?kesl\w+", s.name)}, internal_names(exported))

    # No state: nothing to write but what the compiler brings itself, and nothing to run at loading.
    headers = re.findall(r"^\s*\[\s*(\d+)\] (\S+)\s+\S+\s+\S+ \S+ (\S+)", run("readelf", "-SW", library), re.M)
    section = {number: name for number, name, _ in headers}
    size = {name: int(size, 16) for _, name, size in headers}
    critical = {".gomp_critical_user_keslmx", ".gomp_critical_user_keslmx.var"}  # the lock of the critical section
    brought = {"completed.0", "__dso_handle", "__TMC_END__", *critical}
    for s in table:
        if s.type in ("OBJECT", "COMMON", "TLS") and s.name not in brought:
            check(f"{s.name} can be written",
                  not re.match(r"\.(data|l?bss|tdata|tbss)(?!\.rel\.ro)", section.get(s.section, "")))
    check("data without a name that can be written", size.get(".data", 0) <= 8 and
          size.get(".bss", 0) <= (64 if any(s.name in critical for s in table) else 8))
    check("data per thread", ".tdata" not in size and ".tbss" not in size)
    check("static constructor", size.get(".init_array", 0) <= 8 and not {".ctors", ".preinit_array"} & size.keys())

code = run("objdump", "-d", "--no-show-raw-insn", library)
fused = sorted(set(re.findall(r"\t(vfn?m(?:add|sub)\w*)", code)))
check(f"fused operations {fused}: a product must be rounded before it is added", not fused)
lacking = {"v1": r"%[yz]mm\d|\tv[a-z]", "v3": r"%zmm\d|%k[0-7]\b"}.get(level)
check("instructions that processors of this level lack", not lacking or not re.search(lacking, code))

print(f"{library}: {len(exported)} exported names, {len(code.splitlines())} lines of code, {len(faults)} faults")
for fault in faults:
    print("  " + fault)
sys.exit(bool(faults))
