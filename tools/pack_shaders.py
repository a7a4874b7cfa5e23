#!/usr/bin/env python3
"""Writes, checks and lists shader packs.

    pack_shaders.py OUT.pak DIRECTORY           pack all files below a shader root
    pack_shaders.py --check OUT.pak DIRECTORY   only tell whether OUT.pak is what packing would write
    pack_shaders.py --list PACK                 print size and name of each file in a pack

A pack is the magic "DSPAK01", a reserved byte, the number of entries, and for each entry the length of its
name, the length of its data, the name and the data; numbers are 32-bit little-endian. Names and data are
XORed with a keyed byte stream. Names are relative to the shader root; the player compares them in lower case
with forward slashes.
"""

import argparse
import os
import struct
import sys

MAGIC = b"DSPAK01"
U32 = 0xFFFFFFFF
PACK_MASK = 0x3B7E19C5
NAME_MASK = 0x9A2D4F68


class PackError(Exception):
    pass


def scramble(data, key):
    """The data XORed with the key's byte stream; scrambling twice gives the data back."""
    out = bytearray(data)
    seed = (key ^ PACK_MASK) & U32
    counter = 0
    for i in range(len(out)):
        v = counter ^ seed
        t = (v ^ (v << 13)) & U32
        c = ((t >> 17) ^ t) & 0xFF
        out[i] ^= ((c << 5) ^ c) & 0xFF
        counter = (counter + 0x9E3779B9) & U32
    return bytes(out)


def normalised(name):
    """ASCII lower case and forward slashes: the form that the player looks a name up in."""
    return name.lower().replace(b"\\", b"/")


def data_key(name):
    """The data's key: the 32-bit FNV-1a hash of the normalised name, with the mask that scrambling undoes."""
    h = 0x811C9DC5
    for byte in normalised(name):
        h = ((h ^ byte) * 16777619) & U32
    return h ^ PACK_MASK


def encode(files):
    """The bytes of a pack of (name, data) pairs, in their order."""
    parts = [MAGIC, b"\0", struct.pack("<I", len(files))]
    for number, (name, data) in enumerate(files):
        parts.append(struct.pack("<II", len(name), len(data)))
        parts.append(scramble(name, number ^ NAME_MASK))
        parts.append(scramble(data, data_key(name)))
    return b"".join(parts)


def decode(pack):
    """Yields the (name, data) pairs of a pack's bytes; raises PackError where the pack is damaged."""
    if len(pack) < 12 or pack[:7] != MAGIC:
        raise PackError("not a shader pack")
    (count,) = struct.unpack_from("<I", pack, 8)
    at = 12
    for number in range(count):
        if at + 8 > len(pack):
            raise PackError(f"ends after {number} of {count} entries")
        name_size, data_size = struct.unpack_from("<II", pack, at)
        at += 8
        if name_size == 0:
            raise PackError(f"entry {number} has no name")
        if at + name_size + data_size > len(pack):
            raise PackError(f"entry {number} runs past the end of the file")
        name = scramble(pack[at : at + name_size], number ^ NAME_MASK)
        at += name_size
        yield name, scramble(pack[at : at + data_size], data_key(name))
        at += data_size


def read_file(path):
    with open(path, "rb") as file:
        return file.read()


def fail_walk(error):
    raise error


def collect(directory, backslashes, leave_out):
    """(name, data) of every file below the directory, sorted by normalised name, except `leave_out`."""
    found = {}
    for folder, _, names in os.walk(directory, onerror=fail_walk):
        for name in names:
            path = os.path.join(folder, name)
            if os.path.realpath(path) == os.path.realpath(leave_out):
                continue
            entry = os.fsencode(os.path.relpath(path, directory)).replace(os.fsencode(os.sep), b"/")
            other = found.setdefault(normalised(entry), (entry, path))[1]
            if other != path:
                raise PackError(f"the player cannot tell these two apart: {other}, {path}")
    if not found:
        raise PackError(f"no files below {directory}")
    files = []
    for _, (entry, path) in sorted(found.items()):
        data = read_file(path)
        if len(data) > U32:
            raise PackError(f"too large for a pack: {path}")
        files.append((entry.replace(b"/", b"\\") if backslashes else entry, data))
    return files


def list_pack(path):
    try:
        for name, data in decode(read_file(path)):
            print(f"{len(data):10d}  {name.decode('utf-8', 'backslashreplace')}")
    except PackError as error:
        raise PackError(f"{path}: {error}") from error


def check_pack(path, wanted):
    if read_file(path) != wanted:
        raise PackError(f"{path} is not what packing its sources gives; make it again")


def write_pack(path, bytes_):
    """In place only when it is whole, so that a full disk leaves the old pack."""
    part = path + ".part"
    try:
        with open(part, "wb") as file:
            file.write(bytes_)
        os.replace(part, path)
    except OSError:
        if os.path.exists(part):
            os.remove(part)
        raise


def main():
    parser = argparse.ArgumentParser(description="Writes, checks and lists shader packs.")
    parser.add_argument("--list", metavar="PACK", help="print size and name of each file in PACK")
    parser.add_argument("--check", action="store_true", help="compare OUT with what would be written")
    parser.add_argument("--backslashes", action="store_true", help="store names with backslashes")
    parser.add_argument("out", nargs="?", metavar="OUT", help="the pack to write")
    parser.add_argument("directory", nargs="?", metavar="DIRECTORY", help="a shader root")
    options = parser.parse_args()
    if (options.list is None) == (options.directory is None) or (options.list is not None and options.check):
        parser.error("either OUT and DIRECTORY or --list PACK")

    try:
        if options.list is not None:
            list_pack(options.list)
            return 0
        files = collect(options.directory, options.backslashes, options.out)
        if options.check:
            check_pack(options.out, encode(files))
        else:
            write_pack(options.out, encode(files))
            print(f"{len(files)} files packed into {options.out}")
    except BrokenPipeError:
        return 1
    except PackError as error:
        print(f"pack_shaders.py: {error}", file=sys.stderr)
        return 1
    except OSError as error:
        print(f"pack_shaders.py: {error.filename or options.out}: {error.strerror}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
