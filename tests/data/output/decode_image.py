#!/usr/bin/env python3
"""decode_image.py bmp|pcx FILE: the palette as 16 times "rrggbb", then the
canvas dump of the tests. BMP through Pillow; PCX (one 4-bit plane, which
Pillow cannot read) decoded here from its published layout."""
import sys


def dump(width, height, pixel, palette):
    print("".join("%02x%02x%02x" % tuple(palette[3 * i:3 * i + 3]) for i in range(16)))
    for y in range(height):
        print("".join("." if pixel(x, y) == 0 else "%x" % pixel(x, y) for x in range(width)))


def decode_bmp(path):
    from PIL import Image
    image = Image.open(path)
    image.load()
    if image.mode != "P":
        sys.exit("unexpected mode " + image.mode)
    pixels = image.load()
    palette = (image.getpalette() + [0] * 48)[:48]
    dump(image.size[0], image.size[1], lambda x, y: pixels[x, y], palette)


def decode_pcx(path):
    data = open(path, "rb").read()
    head = data[:128]
    if head[0] != 10 or head[1] != 5 or head[2] != 1 or head[3] != 4 or head[65] != 1:
        sys.exit("not a 4-bit PCX with one plane")
    width = (head[8] | head[9] << 8) + 1
    height = (head[10] | head[11] << 8) + 1
    stride = head[66] | head[67] << 8
    rows, pos = [], 128
    for _ in range(height):
        row = bytearray()
        while len(row) < stride:
            value = data[pos]
            pos += 1
            if value >= 192:
                row += bytes([data[pos]]) * (value - 192)
                pos += 1
            else:
                row.append(value)
        if len(row) != stride:
            sys.exit("a run crosses the end of a row")
        rows.append(row)
    if pos != len(data):
        sys.exit("bytes after the last row")

    def pixel(x, y):
        byte = rows[y][x // 2]
        return byte & 15 if x % 2 else byte >> 4
    dump(width, height, pixel, list(head[16:64]))


if __name__ == "__main__":
    {"bmp": decode_bmp, "pcx": decode_pcx}[sys.argv[1]](sys.argv[2])
