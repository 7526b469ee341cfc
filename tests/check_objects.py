#!/usr/bin/env python3
"""Checks what the build produced. usage: check_objects.py CHECK ARGUMENT...

exports LIB NAME FILE      LIB exports exactly the names that FILE lists for the library NAME
imports LIB                LIB needs nothing but the C library, the compiler's and OpenMP's run time, and zvpcore
constant OBJECT...         the objects have no writable data but the pointer to the level's kernels
contained LEVEL OBJECT...  the objects define no symbols visible to the linker outside the level's namespace
levels LIB                 LIB has AVX instructions in the kernels of v3 and v4 only, those of AVX-512 in v4 only
"""
import re
import subprocess
import sys


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def exports(library, name, listing):
    with open(listing, encoding="utf-8") as lines:
        declared = {row.split()[1] for row in lines if row.split()[0] == name}
    exported = {row.split()[-1].split("@")[0] for row in run("nm", "-D", "--defined-only", library).splitlines()}
    yield from (f"declared, not exported: {symbol}" for symbol in sorted(declared - exported))
    yield from (f"exported, not declared: {symbol}" for symbol in sorted(exported - declared))


def imports(library):
    needed = re.findall(r"\(NEEDED\).*\[(.*)\]", run("readelf", "-d", library))
    for other in needed:
        if not re.match(r"(libc|libm|libgcc_s|libgomp|libzvpcore|ld-linux-x86-64)\.so", other):
            yield f"needs {other}"
    if not needed:
        yield "needs nothing at all: not a shared library?"
    for row in run("nm", "-D", "--undefined-only", library).splitlines():
        kind, symbol = row.split()
        # Anything else is unversioned: missing from the link, or from a library that is not one of the above.
        if not re.search(r"@(GLIBC|GCC|GOMP|OMP)_|^(zvpMalloc|zvpFree|ownGetNumThreads)$", symbol) and kind == "U":
            yield f"imports {symbol}"


def constant(*objects):
    for path in objects:
        for row in run("objdump", "-t", path).splitlines():
            match = re.match(r"[0-9a-f]{16} .{7} (\S+)\s+([0-9a-f]+)\s+(?:\.hidden )?(\S+)$", row)
            if not match or int(match[2], 16) == 0:
                continue
            section, _, symbol = match.groups()
            writable = re.match(r"\.t?(data|bss)|\*COM\*", section) and not section.startswith(".data.rel.ro")
            if writable and symbol != "_ZN4zvps13activeKernelsE":
                yield f"{path}: writable {symbol} in {section}"


def contained(level, *objects):
    inside = re.compile(rf"_Z[A-Z]*4zvps2{level}")
    for path in objects:
        for row in run("nm", "--defined-only", path).splitlines():
            kind, symbol = row.split()[-2:]
            if (kind.isupper() or kind in "uvw") and not inside.match(symbol):
                yield f"{path}: {symbol} ({kind})"


def levels(library):
    found = 0
    for function in run("objdump", "-d", "--no-show-raw-insn", library).split("\n\n"):
        name = function.split("\n", 1)[0]
        wide = re.search(r"\t(v[a-z]|k[a-z]+[bwdq] |.*%[yz]mm).*", function)
        if not wide:
            continue
        found += 1
        if not re.search(r"4zvps2v[34]|3hwy6N_AVX[23]", name):
            yield f"{name} {wide[0]}"
        widest = re.search(r".*(%zmm|%k[0-7]|%[xy]mm(1[6-9]|[23][0-9])).*", function)
        if widest and re.search(r"4zvps2v3|3hwy6N_AVX2", name):
            yield f"{name} {widest[0]}"
    if not found:
        yield "no level has AVX instructions?"


faults = list(globals()[sys.argv[1]](*sys.argv[2:]))
print(*faults, sep="\n")
sys.exit(1 if faults else 0)
