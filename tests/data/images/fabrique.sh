#!/usr/bin/env bash
# Makes the small pictures of the viewer's tests, one of each format: with
# GraphicsMagick and netpbm where they write the format, by hand from the
# published layout where no tool does (CUT, MSP, PIC, WPG).
# Usage: tests/data/images/fabrique.sh (run again only to change them).
set -euo pipefail
cd "$(dirname "$0")"
t=$(mktemp -d)
trap 'rm -rf "$t"' EXIT

# A 16 x 12 picture: four colour bands over a grey ramp.
python3 - "$t/m.ppm" <<'EOF'
import sys
l, h = 16, 12
bandes = [(200, 30, 30), (30, 160, 30), (30, 30, 200), (230, 200, 40)]
px = bytearray()
for y in range(h):
    for x in range(l):
        px += bytes(bandes[x // 4]) if y < 8 else bytes([x * 16] * 3)
open(sys.argv[1], 'wb').write(b'P6 %d %d 255\n' % (l, h) + px)
EOF
gm convert "$t/m.ppm" modele.bmp
gm convert "$t/m.ppm" modele.gif
gm convert "$t/m.ppm" -quality 90 modele.jpg
gm convert "$t/m.ppm" modele.png
gm convert "$t/m.ppm" -compress None modele.tif
gm convert "$t/m.ppm" modele.tga
gm convert "$t/m.ppm" modele.pcx
ppmtoilbm -quiet "$t/m.ppm" > modele.lbm
gm convert "$t/m.ppm" -threshold 50% "$t/m.pbm"
pbmtogem "$t/m.pbm" > modele.img 2>/dev/null
# MacPaint in its MacBinary wrapping (a 128-byte header before the data).
pbmtomacp "$t/m.pbm" > "$t/m.mac" 2>/dev/null
python3 - "$t/m.mac" modele.mac <<'EOF'
import struct, sys
donnees = open(sys.argv[1], 'rb').read()
e = bytearray(128)
nom = b'modele'
e[1] = len(nom); e[2:2 + len(nom)] = nom
e[65:69] = b'PNTG'; e[69:73] = b'MPNT'
struct.pack_into('>III', e, 83, len(donnees), 0, 3000000000)
struct.pack_into('>I', e, 95, 3000000060)
open(sys.argv[2], 'wb').write(bytes(e) + donnees)
EOF

# The formats no tool here writes.
python3 - "$t/m.pbm" <<'EOF'
import struct, sys
l, h = 16, 12
# The 1-bit picture from the PBM: rows of bytes, 1 for black.
pbm = open(sys.argv[1], 'rb').read()
rangs = pbm.split(b'\n', 2)[2]
ligne = (l + 7) // 8

# Microsoft Paint 2.0: 1 is white; each row packed by runs.
lignes = [bytes(0xFF ^ b for b in rangs[y * ligne:(y + 1) * ligne]) for y in range(h)]
entete = b'LinS' + struct.pack('<HHHHHHHHHHH', l, h, 1, 1, 1, 1, l, h, 0, 0, 0)
entete += b'\0' * (32 - len(entete))
paquets = [bytes([len(r)]) + r for r in lignes]        # one literal run a row
table = b''.join(struct.pack('<H', len(p)) for p in paquets)
open('modele.msp', 'wb').write(entete + table + b''.join(paquets))

# Dr. Halo CUT: width, height, reserved, then runs of each row; its palette
# beside it in a ".pal".
cut = struct.pack('<HHH', l, h, 0)
for y in range(h):
    row = bytes(y % 4 + 1 for _ in range(l))
    paquet = bytes([0x80 | l, row[0]]) + b'\0'             # one run, end of row
    cut += struct.pack('<H', len(paquet)) + paquet
open('modele.cut', 'wb').write(cut)

# PC Paint / Pictor: 8 bits a pixel, a VGA palette, one packed block, rows
# from the bottom.
pal = b''.join(bytes([i * 63 // 255, (255 - i) * 63 // 255, 32]) for i in range(256))
entete = struct.pack('<HHHHHBBBHH', 0x1234, l, h, 0, 0, 0x08, 0xFF, ord('L'), 4, len(pal))
pixels = bytes((x * 16) & 0xFF for y in range(h) for x in range(l))
marque = 0xF0
donnees = bytearray()
for b in pixels:
    donnees += bytes([marque, 1, b]) if b == marque else bytes([b])
bloc = struct.pack('<HHB', len(donnees) + 5, len(pixels), marque) + donnees
open('modele.pic', 'wb').write(entete + pal + struct.pack('<H', 1) + bloc)

# WordPerfect Graphics 1.0: the file header, a start record, a colour map,
# a bitmap of the first kind (8 bits, uncompressed rows), an end record.
def record(t, d):
    if len(d) < 0xFF:
        return bytes([t, len(d)]) + d
    return bytes([t, 0xFF]) + struct.pack('<H', len(d)) + d
entete = b'\xffWPC' + struct.pack('<IBBBBHH', 16, 1, 0x16, 1, 0, 0, 0)
debut = record(0x0F, bytes([1, 0]) + struct.pack('<HH', 100, 100))
carte = record(0x0E, struct.pack('<HH', 0, 256) + b''.join(bytes([i, i, 255 - i]) for i in range(256)))
rangee = bytes(x * 16 for x in range(l))
# A count byte with its high bit clear: that many bytes follow as they are.
image = b''.join(bytes([len(rangee)]) + rangee for _ in range(h))
bitmap = record(0x0B, struct.pack('<HHHHH', l, h, 8, 75, 75) + image)
open('modele.wpg', 'wb').write(entete + debut + carte + bitmap + record(0x10, b''))
EOF
ls -l
