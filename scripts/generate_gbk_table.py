#!/usr/bin/env python3
"""Writes src/base/GbkTable.inc: the Unicode value of every GBK code, row by row.

One row a lead byte 0x81..0xFE, 190 trail bytes 0x40..0xFE without 0x7F. The user-defined codes get the
private-use characters that GBK implementations agree on: AAA1..AFFE U+E000.., F8A1..FEFE U+E234..,
A140..A7A0 U+E4C6... Every other code without a character gets one of U+E766.. in the order of the codes,
so that a text comes back as it was read. Files do not hold these characters, but other programs may have been
given them: the order is never changed.
"""
import os

table = {}
for lead in range(0x81, 0xFF):
    for trail in list(range(0x40, 0x7F)) + list(range(0x80, 0xFF)):
        try:
            table[lead, trail] = ord(bytes([lead, trail]).decode("gbk"))
        except UnicodeDecodeError:
            table[lead, trail] = 0

private = 0xE000
for first_lead, last_lead, trails in (
    (0xAA, 0xAF, range(0xA1, 0xFF)),
    (0xF8, 0xFE, range(0xA1, 0xFF)),
    (0xA1, 0xA7, [t for t in range(0x40, 0xA1) if t != 0x7F]),
):
    for lead in range(first_lead, last_lead + 1):
        for trail in trails:
            if table[lead, trail] == 0:
                table[lead, trail] = private
            private += 1

for code in sorted(table):
    if table[code] == 0:
        table[code] = private
        private += 1
assert len(set(table.values())) == len(table)

target = os.path.join(os.path.dirname(__file__), "..", "src", "base", "GbkTable.inc")
with open(target, "w", encoding="ascii") as out:
    values = [table[key] for key in sorted(table)]
    for at in range(0, len(values), 16):
        out.write(",".join("0x%X" % value for value in values[at:at + 16]) + ",\n")
