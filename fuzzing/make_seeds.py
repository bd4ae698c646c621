#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the hand-made part of the corpora: fuzzing/corpus/TARGET/seed-NAME. What else lies there was found by
long runs.
Usage: fuzzing/make_seeds.py"""

import struct
from pathlib import Path

CORPUS = Path(__file__).resolve().parent / "corpus"


def seed(target, name, *parts):
    folder = CORPUS / target
    folder.mkdir(parents=True, exist_ok=True)
    data = b"".join(part if isinstance(part, bytes) else bytes(part) for part in parts)
    (folder / f"seed-{name}").write_bytes(data)


def row(name, device=1, tag=7):
    return struct.pack("<H", len(name)) + name + struct.pack("<BII", device, tag, 0)


def section(version, rows, count=None, descriptor=b""):
    body = struct.pack("<II", version, len(rows) if count is None else count)
    return b"\x5a" * 7 + body + b"".join(rows) + descriptor


def project_files():
    rows = [row(b"Motor.Speed"), row(b"Table[INDEX].Name"), row(b""), row(b"A\0B")]
    password = struct.pack("<HBH", 0, 1, 4) + b"open"
    start = struct.pack("<I", 0)
    seed("projectfile", "plain", start, section(1, rows))
    seed("projectfile", "password", start, section(2, rows, descriptor=password))
    seed("projectfile", "short-password", start, section(3, [], descriptor=password[:-2]))
    seed("projectfile", "announces-more", start, section(0, rows, count=0xFFFFFFFF))
    seed("projectfile", "cut-row", start, section(0, rows)[:-5])
    seed("projectfile", "position-wraps", struct.pack("<I", 0xFFFFFFF9), section(0, rows)[7:])
    seed("projectfile", "behind", struct.pack("<I", 3), b"abc", section(0, rows))


# A session: see fuzzing/support/session.cpp for the bytes of its calls.
NAMES = ["Bool", "USInt", "UInt", "UDInt", "ULInt", "SInt", "Int", "DInt", "LInt", "Real", "LReal", "Char",
         "WChar", "String", "WString", "Wide", "BoolA", "IntA", "DIntN", "RealP", "StringA[0]", "IntM[1,2]",
         "IntA[INDEX]", "StringA[AINDEX].INDEX]", "Dtl", "", "INDEX]", "S5Time]"]
TYPES = {"BYTE": 0, "WORD": 1, "DWORD": 2, "LWORD": 4, "LREAL": 7, "BOOL": 11, "SINT": 12, "INT": 13,
         "DINT": 14, "REAL": 15, "BITARY": 16, "STRING": 17, "UNKNOWN": 18}
READ, WORD_WRITE, BIT_WRITE = 0, 1, 2
OUTPUT, INPUT, TIMEOUT, UP = 0xA0, 0x40, 0x01, 0x0F


def request(name, data_type, index=0xFF, count=1, selector=0, function=READ, words=b""):
    block = [function, NAMES.index(name), TYPES[data_type], selector, index, count]
    if function != READ:
        block += [len(words) // 2, *words]
    return bytes(block)


def output(*requests):
    return bytes([OUTPUT, len(requests)]) + b"".join(requests)


def come_up(*requests):
    address = struct.pack("<HHHH", 1, 10, 1, 0xA8C0)
    return bytes([UP]) + address + bytes([0, 1]) + output(*requests)[1:]


def read(*requests):
    return output(*requests) + bytes([INPUT, len(requests)])


def sessions():
    numbers = [request("Int", "INT"), request("SInt", "SINT"), request("LReal", "LREAL"),
               request("DIntN", "DINT", 4, 1)]
    texts = [request("String", "STRING"), request("WString", "STRING"), request("Wide", "STRING"),
             request("StringA[0]", "STRING", 2)]
    bits = [request("UInt", "WORD", selector=4), request("BoolA", "BOOL", 3, 4),
            request("IntA", "BITARY", 0, 6), request("Bool", "BOOL")]
    arrays = [request("IntA", "INT", 0, 6), request("IntA[INDEX]", "INT", 2), request("RealP", "REAL", 4, 2),
              request("IntM[1,2]", "INT", 0, 1)]
    writes = [output(request("Int", "INT", function=WORD_WRITE, words=b"\x05\0")),
              output(request("IntA", "INT", 2, 1, function=WORD_WRITE, words=b"\x05\0")),
              output(request("String", "STRING", function=WORD_WRITE, words=b"h\0i\0")),
              output(request("StringA[0]", "STRING", 1, 1, function=WORD_WRITE, words=b"h\0i\0")),
              output(request("Bool", "BOOL", function=BIT_WRITE, words=b"\x01\x01"))]
    for mode, flags in (("online", 0), ("simulated", 1)):
        for version in (0, 1):
            start = bytes([version, flags]) + come_up(numbers[0])
            for name, batch in (("numbers", numbers), ("texts", texts), ("bits", bits), ("arrays", arrays)):
                seed("session", f"{mode}-{version}-{name}", start, read(*batch), read(*batch))
                calls = start + read(*batch)
                calls += bytes([0x0D]) * (-len(calls) % 4)
                if mode == "online":
                    seed("library", f"{version}-{name}", [len(calls) // 4], calls, bytes(16), bytes([0x80, 0xB2, 0xDE]))
            seed("session", f"{mode}-{version}-writes", start, *writes, [INPUT, 1], read(*numbers))
            lost = bytes([0x0A, INPUT, 4, TIMEOUT, 0])
            seed("session", f"{mode}-{version}-lost", start, read(*numbers), output(*numbers), lost, read(*numbers))
    start = bytes([0, 0]) + come_up(numbers[0])
    calls = start + b"".join(writes)
    calls += bytes(-len(calls) % 4)
    seed("library", "writes", [len(calls) // 4], calls, bytes(24), bytes([0xA1] * 8))
    seed("session", "bad-placeholder", start, read(request("INDEX]", "INT")))
    seed("session", "tables", [0, 1, 0x0C], bytes(19), [0x05, 1, 0x07, 1, 0x06])


def names():
    for number, name in enumerate([b"Table[INDEX].Speed", b"A[XINDEX][INDEX]", b"INDEX]", b"A[1,2]", b"A[1]", b"[3]",
                                   b"]", b"", b"A.B[-1]", b"A.C[2,1].D", b'"A".C[1,0]."E.1"', b'"b [0]".f', b"A[1,2].B",
                                   b"A.b[ 3 ]"]):
        seed("names", f"{number:02}", struct.pack("<H", 17), name)


def sources():
    texts = {
        "types": "".join(f" v{n} : {t};\n" for n, t in enumerate(
            ["Bool := TRUE", "Byte := 16#FF", "Word := W#16#1F", "LInt := -5", "Real := 1.5e3", "Char := 'x'",
             "WString[3] := WSTRING#'a$N'", "Time := T#1d2h3m4s5ms", "LTime := LT#1us", "Date := D#2020-02-29",
             "Time_Of_Day := TOD#1:2:3.4", "Date_And_Time := DT#2020-1-2-3:4:5", "LDT := LDT#1970-1-1-0:0:0",
             "DTL := DTL#2021-01-02-03:04:05.6", "S5Time := S5T#10s", "Variant", "Array[0..3] of Int := [1, 2(5), 6]",
             "Array[-1..1, 1..2] of String[4]"])),
    }
    block = 'DATA_BLOCK "A"\n{{ S7_Optimized_Access := \'TRUE\' }}\nVERSION : 0.1\nNON_RETAIN\nSTRUCT\n{}END_STRUCT;\nBEGIN\n{}END_DATA_BLOCK\n'
    seed("sources", "types", [0x0F], block.format(texts["types"], " v3 := 7;\n v16[2] := 9;\n").encode())
    seed("sources", "attributes", [0x08], block.format(
        " a { ExternalWritable := 'False'; S7_SetPoint := 'True'} : Int; // text\n b AT a : Word;\n (* text *)\n", "").encode())
    seed("sources", "type", [0x05], b'TYPE "T"\nSTRUCT\n a : Real := 1.5;\n b : Struct\n c : Bool;\n END_STRUCT;\nEND_STRUCT;\nEND_TYPE\n'
         b'DATA_BLOCK "D" "T" BEGIN a := 2.5; b.c := true; END_DATA_BLOCK\nDATA_BLOCK "E"\nArray[0..2] of "T"\nBEGIN\nEND_DATA_BLOCK\n')
    seed("sources", "functionblock", [0x07], b'FUNCTION_BLOCK "F"\nTITLE = x\nVERSION : 0.1\nVAR_INPUT\n t : Array[0..LIMIT] of Int;\nEND_VAR\n'
         b'VAR_TEMP\n x : Int;\nEND_VAR\nVAR CONSTANT\n k : Int := 3;\nEND_VAR\nVAR\n w : String[k];\nEND_VAR\nBEGIN\n IF #t[0] THEN ; END_IF;\nEND_FUNCTION_BLOCK\n'
         b'ORGANIZATION_BLOCK "Main"\nBEGIN\nEND_ORGANIZATION_BLOCK\nFUNCTION "G" : Void\nBEGIN\nEND_FUNCTION\n')
    nested = "Array[0..60000] of STRUCT\n x : "
    seed("sources", "empty-structures", [0x0C],
         block.format(f" a : {nested * 2}STRUCT\nEND_STRUCT;\nEND_STRUCT;\nEND_STRUCT;\n", "").encode())
    seed("sources", "generator", [0x0C], block.format(" a : Int; // @ramp(0, 10, 1s)\n", "").encode())


def message(kind, sequence, body):
    return bytes([0x94, kind, sequence, 10]) + body


def frames():
    hello = message(0, 1, b"\x91\x01")
    password = message(1, 2, b"\x91\xa4open")
    symbols = message(2, 3, b"\x90")
    read_job = message(3, 4, b"\x92\x01\x91\x92\x00\x02")
    write_job = message(4, 5, b"\x92\x01\x91\x92\x00\xc4\x02ab")
    connect = bytes.fromhex("0300000f0ae00000000100c0010a") + b"\0"
    connect = connect[:3] + bytes([len(connect) - 1]) + connect[4:-1]

    def framed(text):
        return struct.pack(">BBH", 3, 0, len(text) + 7) + b"\x02\xf0\x80" + text

    everything = [hello, password, symbols, read_job, write_job]
    stream = connect + b"".join(framed(text) for text in everything)
    seed("frames", "stream", [0, len(stream) - 1], stream)
    seed("frames", "messages", [1, 10], *(struct.pack("<H", len(text)) + text for text in everything))
    seed("frames", "requests", [2], [10, 0, 1, 10, 0, 10, 1, 10, 0, 10, 3, 1, 0, 2, 10, 0, 10, 4, 1, 0, 2, 1, 2, 10, 0])
    seed("frames", "client", [3, 1, 0, 0, 0, 0], bytes(40))
    seed("frames", "client-damaged", [3, 1, 0, 0, 0, 6, 9, 0, 7], bytes(range(40)))


def tree():
    def name(text):
        return bytes([0xA0 | len(text)]) + text

    def symbol(text, kind, offset, size, bounds=b"\x90", members=b"\x90", length=0):
        return (b"\x9a" + name(text) + bytes([kind]) + name(b"") + bytes([length]) + bounds + bytes([offset, size])
                + b"\xc3\xc3" + members)

    boolean, integer, string, structure = 0, 6, 17, 30
    members = b"\x93" + symbol(b"Level", integer, 0, 2, b"\x92\x00\x03") + symbol(b"Name", string, 8, 10, length=8)
    members += symbol(b"On", boolean, 18, 1)
    return b"\x91" + symbol(b"Plant", structure, 0, 19, members=members)


def cache_files():
    payload = tree()
    length = struct.pack("<H", len(payload))
    for way in (1, 2, 3):
        seed("cachefile", f"tree-{way}", [way], length, payload, bytes(60))
    seed("cachefile", "damaged", [0x81], length, payload, [3, 0, 1])
    seed("cachefile", "header", [0], struct.pack("<H", 36), b"AGLSYMB\x1a", bytes([0, 0, 0, 1]), bytes(24))
    seed("cachefile", "empty-tree", [3], struct.pack("<H", 1), b"\x90")


if __name__ == "__main__":
    project_files()
    sessions()
    names()
    sources()
    frames()
    cache_files()
