#!/usr/bin/env python3
"""draw_toolbar.py BITMAP: writes the images of the folder view's toolbar, two of 16 by 15 pixels
side by side, on magenta, which stands for nothing."""
import struct
import sys

COLOURS = {'.': (255, 0, 255), 'k': (96, 72, 16), 'y': (255, 216, 112), 'd': (224, 176, 64),
           'g': (0, 128, 0), 'b': (64, 96, 160), 'w': (255, 255, 255), 'l': (128, 168, 224)}

UP = """
................
.......g........
......ggg.......
.....ggggg......
....ggggggg.....
..kkkk.g........
.kyyyykgkkkkkk..
.kyyyyygyyyyyk..
.kyyyyygyyyyyk..
.kyyyyygggggyk..
.kyyyyyyyyyyyk..
.kyyyyyyyyyyyk..
.kdddddddddddk..
.kkkkkkkkkkkkk..
................
"""

MODES = """
................
.bbbbbbbbbbbbbb.
.blllllllllllbb.
.bwwwwwwwwwwwwb.
.bwllwwbbbbbwwb.
.bwllwwwwwwwwwb.
.bwwwwwwwwwwwwb.
.bwllwwbbbbbwwb.
.bwllwwwwwwwwwb.
.bwwwwwwwwwwwwb.
.bwllwwbbbbbwwb.
.bwllwwwwwwwwwb.
.bwwwwwwwwwwwwb.
.bbbbbbbbbbbbbb.
................
"""


def pixels():
    """Rows from the bottom to the top, as a bitmap has them; blue, green, red."""
    rows = [a + b for a, b in zip(UP.split(), MODES.split())]
    return b''.join(bytes(reversed(COLOURS[c])) for row in reversed(rows) for c in row)


def main():
    data = pixels()
    header = struct.pack('<IiiHHIIiiII', 40, 32, 15, 1, 24, 0, len(data), 0, 0, 0, 0)
    start = 14 + len(header)
    with open(sys.argv[1], 'wb') as out:
        out.write(b'BM' + struct.pack('<IHHI', start + len(data), 0, 0, start) + header + data)


main()
