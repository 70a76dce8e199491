"""Checks a built library. Usage: check.py corex|v1|v3|v4 LIBRARY EXPORTS.MAP"""
import re
import subprocess
import sys

kind, library, exports_map = sys.argv[1:]
companion = kind == "corex"
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


def symbols(*options):
    """Rows of value, type, binding, visibility, section, name without its version."""
    rows = (line.split() for line in run("readelf", "-W", *options, library).splitlines())
    return [(int(r[1], 16), r[3], r[4], r[5], r[6], r[7].split("@")[0]) for r in rows if len(r) > 7 and r[0][:-1].isdigit()]


def internal_names(exported):
    """The names of all kernels and wrappers that belong to the exported functions."""
    names = set()
    for name in exported:
        if re.match("kesl(Copy|Extract|LoadIdentity|.*GetBufSize|GetLibVersion)", name):
            continue
        operation, operands, element, layout = re.fullmatch(r"kesl(\w+?)_([a-z]+)_(32f|64f)(_[LP])?", name).groups()
        names.add("own" + name)
        # General eigenproblems and the norm of a single matrix read through stride2 in their one kernel.
        one_kernel = re.fullmatch("EigenValues(Vectors(Left|Right)?)?", operation) or (operation, operands) == ("FrobNorm", "m")
        if not one_kernel and layout != "_P":
            names.add(f"ownkesl{operation}_{operands}_{element}_{'LS2' if layout else 'S2'}")
        if "a" in operands and operation != "Transpose" and \
                name not in ("keslSub_vva_64f_P", "keslCrossProduct_vva_64f_P"):  # these two are serial, unlike their twins
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
check("not exactly one OpenMP runtime is needed", len(openmp) == 1)
check("the companion is not needed", companion or "libkeslcorex64.so.6.1" in needed)
same("needed", needed - openmp - {"libc.so.6", "libm.so.6", "ld-linux-x86-64.so.2"}, set() if companion else {"libkeslcorex64.so.6.1"})

with open(exports_map) as text:
    exported = set(re.findall(r"^\s*(\w+);$", text.read(), re.M))
dyn = symbols("--dyn-syms")
same("exported", {name for _, _, _, _, section, name in dyn if section != "UND"}, exported)
undefined = {name for _, _, _, _, section, name in dyn if section == "UND"}
runtime = [n for n in undefined if re.match("_Z|__cxa_(?!finalize)|__gxx|_Unwind|__dynamic_cast", n)]
check(f"names of the C++ runtime: {runtime}", not runtime)

table = symbols("--syms")
check("the symbol table is stripped", any(kind == "FUNC" and binding == "LOCAL" for _, kind, binding, *_ in table))

if not companion:
    check("ownGetNumThreads is not looked up at run time, so nobody could stand in for it",
          "ownGetNumThreads" in undefined and
          re.search(r"R_X86_64_(JUMP_SLO|GLOB_DA)T?\s.*\bownGetNumThreads\b", run("readelf", "-rW", library)))

    # .part.0, ._omp_fn.0 and their like are pieces that the compiler cut off
    own = {name for _, kind, binding, visibility, section, name in table
           if kind == "FUNC" and section != "UND" and re.fullmatch(r"own(OMP_)?kesl\w+", name) and
           (binding == "LOCAL" or visibility == "HIDDEN")}
    same("internal", own, internal_names(exported))

    # No state: nothing to write but what the compiler's own start files bring, and nothing to run at loading.
    sections = {number: (name, int(size, 16)) for number, name, size in
                re.findall(r"^\s*\[\s*(\d+)\] (\S+)\s+\S+\s+\S+ \S+ (\S+)", run("readelf", "-SW", library), re.M)}
    size = dict(sections.values())
    starts = {"completed.0", "__dso_handle", "__TMC_END__", "__frame_dummy_init_array_entry",
              "__do_global_dtors_aux_fini_array_entry"}
    for _, kind, _, _, section, name in table:
        where = sections.get(section, ("",))[0]
        check(f"{name} in {where} can be written",
              kind not in ("OBJECT", "COMMON", "TLS") or name in starts or not re.match(r"\.(data|l?bss|tdata|tbss)(?!\.rel\.ro)", where))
    check("static constructor", size.get(".init_array", 0) <= 8 and ".ctors" not in size and ".preinit_array" not in size)
    check("data per thread", ".tdata" not in size and ".tbss" not in size)
    check("anonymous data that can be written", size.get(".data", 0) <= 8 and size.get(".bss", 0) <= 8)

code = run("objdump", "-d", "--no-show-raw-insn", library)
fused = sorted(set(re.findall(r"\t(vfn?m(?:add|sub)\w*)", code)))
check(f"fused operations {fused}: a product must be rounded before it is added", not fused)
wide = {"v1": r"%[yz]mm\d|\tv[a-z]", "v3": r"%zmm\d|%k[0-7]\b"}.get(kind, "(?!)")
check("instructions that processors of this level lack", not re.search(wide, code))

print(f"{library}: {len(exported)} exported names, {len(code.splitlines())} lines of code, {len(faults)} faults")
for fault in faults:
    print("  " + fault)
sys.exit(bool(faults))
