#!/usr/bin/env python3
"""device_dll.py: checks the device build of quorvane.dll as the device's loader and Today screen would see it.

Usage: device_dll.py DLL
Exit 0 when it is an ARM Windows CE GUI DLL exporting ordinals 240 and 241
without names, carrying its resources, and importing only from DLLs every
Windows Mobile device has; 1 with the reasons; 77 (skip) when no device DLL
was built, saying why.
"""
import struct
import sys

ARM_MACHINES = {0x1C0: "ARM", 0x1C2: "THUMB"}
SUBSYSTEM_WINDOWS_CE_GUI = 9
ORDINALS = {240, 241}
# The device's own libraries: kernel, user, GDI and C runtime (coredll), the
# shell, common controls and dialogs, IP helper, Winsock, WinInet and the
# connection manager.
DEVICE_DLLS = {"coredll.dll", "aygshell.dll", "commctrl.dll", "commdlg.dll", "iphlpapi.dll",
               "ws2.dll", "wininet.dll", "cellcore.dll"}


def read_pe(data):
    """The headers, sections and data directories of a PE image, or an error text."""
    if data[:2] != b"MZ":
        return None, "not an executable (no MZ header)"
    pe = struct.unpack_from("<I", data, 0x3C)[0]
    if data[pe:pe + 4] != b"PE\0\0":
        return None, "no PE signature"
    machine, sections, _, _, _, optional_size, characteristics = struct.unpack_from("<HHIIIHH", data, pe + 4)
    optional = pe + 24
    magic = struct.unpack_from("<H", data, optional)[0]
    if magic != 0x10B:
        return None, "not a 32-bit image (optional header magic 0x%x)" % magic
    subsystem = struct.unpack_from("<H", data, optional + 68)[0]
    count = struct.unpack_from("<I", data, optional + 92)[0]
    directories = [struct.unpack_from("<II", data, optional + 96 + 8 * i) for i in range(min(count, 16))]
    table = optional + optional_size
    section_list = []
    for i in range(sections):
        name, vsize, vaddr, rsize, raddr = struct.unpack_from("<8sIIII", data, table + 40 * i)
        section_list.append((name.rstrip(b"\0").decode("ascii", "replace"), vaddr, max(vsize, rsize), raddr))
    return {"machine": machine, "characteristics": characteristics, "subsystem": subsystem,
            "directories": directories, "sections": section_list}, None


def offset(image, rva):
    for _, vaddr, size, raddr in image["sections"]:
        if vaddr <= rva < vaddr + size:
            return rva - vaddr + raddr
    raise ValueError("address 0x%x is in no section" % rva)


def c_string(data, at):
    return data[at:data.index(b"\0", at)].decode("ascii", "replace")


def exports(data, image):
    """(ordinals, number of names) of the export directory."""
    rva, size = image["directories"][0]
    if not rva:
        return set(), 0
    at = offset(image, rva)
    base, functions, names = struct.unpack_from("<III", data, at + 16)
    table = offset(image, struct.unpack_from("<I", data, at + 28)[0])
    ordinals = {base + i for i in range(functions) if struct.unpack_from("<I", data, table + 4 * i)[0]}
    return ordinals, names


def imports(data, image):
    rva, _ = image["directories"][1]
    found = []
    at = offset(image, rva) if rva else None
    while at is not None:
        lookup, _, _, name, thunks = struct.unpack_from("<IIIII", data, at)
        if not (lookup or name or thunks):
            break
        found.append(c_string(data, offset(image, name)))
        at += 20
    return found


def check(path):
    try:
        data = open(path, "rb").read()
    except OSError as error:
        return ["cannot read %s: %s" % (path, error.strerror)]
    image, error = read_pe(data)
    if error:
        return [error]
    problems = []
    if image["machine"] not in ARM_MACHINES:
        problems.append("machine 0x%x, not ARM" % image["machine"])
    if not image["characteristics"] & 0x2000:
        problems.append("not a DLL")
    if image["subsystem"] != SUBSYSTEM_WINDOWS_CE_GUI:
        problems.append("subsystem %d, not Windows CE GUI (9)" % image["subsystem"])
    ordinals, names = exports(data, image)
    if not ORDINALS <= ordinals:
        problems.append("exports ordinals %s, not 240 and 241" % sorted(ordinals))
    if names:
        problems.append("exports %d names; the Today screen calls by ordinal only" % names)
    if len(image["directories"]) < 3 or not image["directories"][2][0]:
        problems.append("no resources linked in")
    for dll in imports(data, image):
        if dll.lower() not in DEVICE_DLLS:
            problems.append("imports %s, which no device has" % dll)
    return problems


def main():
    if len(sys.argv) != 2:
        print(__doc__.strip().splitlines()[2])
        return 2
    path = sys.argv[1]
    try:
        open(path, "rb").close()
    except OSError:
        print("device_dll: skipped: no device build at %s (run ./dev.sh device; it says why when the "
              "device toolchain is missing)" % path)
        return 77
    problems = check(path)
    for problem in problems:
        print("device_dll: %s: %s" % (path, problem))
    if not problems:
        print("device_dll: %s: ARM, Windows CE GUI, ordinals 240 and 241, device imports only" % path)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
