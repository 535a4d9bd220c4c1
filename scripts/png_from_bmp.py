#!/usr/bin/env python3
"""png_from_bmp.py BITMAP PNG: turns a picture that the tests of windows took, uncompressed with
24 bits a pixel, into one for the documents."""
import struct
import sys
import zlib


def rows(path):
    """Width, and the rows from the top to the bottom as bytes of red, green, blue."""
    data = open(path, 'rb').read()
    start, = struct.unpack_from('<I', data, 10)
    width, height = struct.unpack_from('<ii', data, 18)
    bits, compression = struct.unpack_from('<HI', data, 28)
    if data[:2] != b'BM' or bits != 24 or compression:
        sys.exit(f'{path}: not a bitmap of 24 bits a pixel')
    pitch = (width * 3 + 3) & ~3
    for row in reversed(range(height)):
        line = bytearray(data[start + row * pitch:start + row * pitch + width * 3])
        line[0::3], line[2::3] = line[2::3], line[0::3]
        yield width, bytes(line)


def chunk(kind, data):
    body = kind + data
    return struct.pack('>I', len(data)) + body + struct.pack('>I', zlib.crc32(body))


def main():
    lines = list(rows(sys.argv[1]))
    width = lines[0][0]
    pixels = b''.join(b'\0' + line for _, line in lines)
    header = struct.pack('>IIBBBBB', width, len(lines), 8, 2, 0, 0, 0)
    with open(sys.argv[2], 'wb') as out:
        out.write(b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', header) +
                  chunk(b'IDAT', zlib.compress(pixels, 9)) + chunk(b'IEND', b''))


main()
