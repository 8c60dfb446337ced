#!/usr/bin/env python3
"""Draws the pictures of the sample diary: demo/draw_pictures.py FOLDER

Small landscapes of gradients and plain shapes, 320 by 200, painted three times as large and averaged down.
No chance and no clock: the same pictures every time.
"""

import math
import pathlib
import struct
import sys
import zlib

WIDTH, HEIGHT, SCALE = 320, 200, 3


class Scatter:
    """Numbers that look random and are the same in every run: 0 up to, but not including, 1."""

    def __init__(self, seed):
        self.state = seed

    def __call__(self, low=0.0, high=1.0):
        self.state = (self.state * 1103515245 + 12345) % 2 ** 31
        return low + (high - low) * self.state / 2 ** 31


def mix(a, b, t):
    return tuple(round(x + (y - x) * t) for x, y in zip(a, b))


class Canvas:
    """Shapes in picture coordinates; `strength` below 1 lets what lies beneath show through."""

    def __init__(self):
        self.rows = [bytearray(WIDTH * SCALE * 3) for _ in range(HEIGHT * SCALE)]

    def span(self, row, left, right, colour, strength=1.0):
        left, right = max(0, round(left)), min(WIDTH * SCALE, round(right))
        if not 0 <= row < HEIGHT * SCALE or left >= right:
            return
        part = slice(left * 3, right * 3)
        if strength >= 1:
            self.rows[row][part] = bytes(colour) * (right - left)
        else:
            share = round(strength * 256)
            add = [c * share for c in colour] * (right - left)
            self.rows[row][part] = bytes([(old * (256 - share) + new) >> 8 for old, new in zip(self.rows[row][part], add)])

    def sky(self, *stops):
        """Horizontal bands that fade into one another: (y, colour), from the top down."""
        for (y1, above), (y2, below) in zip(stops, stops[1:]):
            for row in range(round(y1 * SCALE), round(y2 * SCALE)):
                self.span(row, 0, WIDTH * SCALE, mix(above, below, (row / SCALE - y1) / (y2 - y1)))

    def ellipse(self, cx, cy, rx, ry, colour, strength=1.0):
        for row in range(math.floor((cy - ry) * SCALE), math.ceil((cy + ry) * SCALE)):
            height = 1 - (((row + 0.5) / SCALE - cy) / ry) ** 2
            if height > 0:
                half = rx * math.sqrt(height)
                self.span(row, (cx - half) * SCALE, (cx + half) * SCALE, colour, strength)

    def circle(self, cx, cy, radius, colour, strength=1.0):
        self.ellipse(cx, cy, radius, radius, colour, strength)

    def glow(self, cx, cy, radius, colour, strength):
        for step in range(14):
            self.circle(cx, cy, radius * (1 - step / 14), colour, strength / 14 * 2)

    def polygon(self, points, colour, strength=1.0):
        edges = list(zip(points, points[1:] + points[:1]))
        top, bottom = min(y for _, y in points), max(y for _, y in points)
        for row in range(max(0, math.floor(top * SCALE)), min(HEIGHT * SCALE, math.ceil(bottom * SCALE))):
            y = (row + 0.5) / SCALE
            cuts = sorted(x1 + (y - y1) * (x2 - x1) / (y2 - y1)
                          for (x1, y1), (x2, y2) in edges if (y1 > y) != (y2 > y))
            for left, right in zip(cuts[::2], cuts[1::2]):
                self.span(row, left * SCALE, right * SCALE, colour, strength)

    def box(self, left, top, right, bottom, colour, strength=1.0):
        self.polygon([(left, top), (right, top), (right, bottom), (left, bottom)], colour, strength)

    def line(self, x1, y1, x2, y2, width, colour, strength=1.0):
        length = math.hypot(x2 - x1, y2 - y1) or 1
        dx, dy = (y2 - y1) / length * width / 2, (x1 - x2) / length * width / 2
        self.polygon([(x1 + dx, y1 + dy), (x2 + dx, y2 + dy), (x2 - dx, y2 - dy), (x1 - dx, y1 - dy)], colour, strength)
        if strength >= 1:
            self.circle(x1, y1, width / 2, colour)
            self.circle(x2, y2, width / 2, colour)

    def curve(self, points, width, colour):
        for (x1, y1), (x2, y2) in zip(points, points[1:]):
            self.line(x1, y1, x2, y2, width, colour)

    def hill(self, base, waves, colour, strength=1.0):
        """All below a soft outline: `waves` are (height, length, shift)."""
        outline = [(x, base - sum(h * math.sin((x + s) / l) for h, l, s in waves)) for x in range(-4, WIDTH + 8, 4)]
        self.polygon(outline + [(WIDTH + 8, HEIGHT), (-4, HEIGHT)], colour, strength)

    def png(self):
        lines = []
        for top in range(0, HEIGHT * SCALE, SCALE):
            line = bytearray(1 + WIDTH * 3)
            for channel in range(3):
                samples = [row[channel + 3 * i::3 * SCALE] for row in self.rows[top:top + SCALE] for i in range(SCALE)]
                line[1 + channel::3] = bytes([sum(pixel) // SCALE ** 2 for pixel in zip(*samples)])
            lines.append(bytes(line))

        def chunk(kind, data):
            return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
        header = struct.pack(">IIBBBBB", WIDTH, HEIGHT, 8, 2, 0, 0, 0)
        return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(b"".join(lines), 9))
                + chunk(b"IEND", b""))


def sea(c):
    c.sky((0, (92, 108, 158)), (60, (196, 150, 170)), (110, (252, 196, 142)), (124, (254, 216, 160)))
    c.glow(206, 110, 74, (255, 226, 160), 0.4)
    c.circle(206, 108, 17, (255, 244, 206))
    for x, y, length in ((40, 34, 60), (64, 41, 84), (214, 52, 70), (236, 58, 46), (120, 72, 50)):
        c.ellipse(x + length / 2, y, length / 2, 2.6, (250, 206, 190), 0.55)
    c.polygon([(-4, 124), (20, 112), (52, 104), (78, 112), (104, 124)], (104, 96, 128))
    for row in range(124 * SCALE, HEIGHT * SCALE):
        c.span(row, 0, WIDTH * SCALE, mix((226, 168, 150), (54, 84, 128), (row / SCALE - 124) / 76))
    chance = Scatter(11)
    for _ in range(150):
        y = 126 + 70 * chance() ** 1.5
        spread = 6 + (y - 126) * 0.7
        x = 206 + chance(-spread, spread)
        c.ellipse(x, y, 2 + (y - 120) * 0.09, 0.7, (255, 232, 180), 0.75)
    for _ in range(70):
        y = 130 + 68 * chance()
        c.ellipse(chance(0, 320), y, 4 + (y - 126) * 0.16, 0.6, (210, 190, 200), 0.3)
    c.polygon([(92, 150), (124, 150), (119, 156), (98, 156)], (60, 54, 72))
    c.line(108, 150, 108, 126, 1.2, (60, 54, 72))
    c.polygon([(110, 127), (110, 147), (122, 147)], (250, 240, 226))
    c.polygon([(106, 131), (106, 147), (97, 147)], (236, 222, 212))


def mountains(c):
    c.sky((0, (150, 192, 224)), (90, (222, 234, 236)), (200, (240, 236, 220)))
    c.polygon([(42, 126), (60, 110), (128, 46), (146, 56), (158, 48), (232, 110), (250, 126)], (138, 156, 184))
    c.polygon([(105, 68), (128, 46), (146, 56), (158, 48), (180, 67), (168, 64), (156, 72), (142, 64), (128, 73), (116, 64)],
              (246, 248, 250))
    c.hill(104, [(9, 37, 0), (5, 17, 40)], (146, 150, 160))
    c.hill(116, [(10, 44, 70), (3, 13, 5)], (196, 140, 96))
    chance = Scatter(5)

    def wood(count, low, high, colours, size):
        trees = sorted((chance(low, high), chance(-6, 326), colours[int(chance(0, len(colours)))]) for _ in range(count))
        for y, x, colour in trees:
            r = size * chance(0.7, 1.2)
            c.ellipse(x, y, r, r * 1.15, colour)
            c.ellipse(x - r * 0.2, y - r * 0.3, r * 0.7, r * 0.65, mix(colour, (255, 238, 190), 0.12))
    wood(120, 112, 134, [(200, 120, 66), (222, 158, 70), (176, 92, 62), (150, 136, 74)], 6)
    c.ellipse(90, 132, 150, 7, (244, 238, 226), 0.4)
    c.ellipse(260, 138, 130, 6, (244, 238, 226), 0.4)
    wood(100, 142, 168, [(206, 86, 52), (230, 146, 50), (188, 62, 50), (240, 184, 72), (126, 124, 66)], 10)
    c.hill(184, [(4, 60, 20)], (150, 134, 78))
    c.polygon([(150, 200), (196, 200), (176, 182), (171, 174), (167, 174), (164, 182)], (226, 212, 180))


def cat(c):
    c.sky((0, (238, 228, 208)), (200, (228, 212, 186)))
    c.box(52, 14, 268, 148, (156, 118, 84))
    c.box(60, 22, 260, 148, (250, 246, 236))
    for row in range(26 * SCALE, 144 * SCALE):
        c.span(row, 64 * SCALE, 256 * SCALE, mix((146, 196, 232), (226, 240, 246), (row / SCALE - 26) / 118))
    c.ellipse(104, 62, 26, 8, (255, 255, 255), 0.85)
    c.ellipse(122, 56, 18, 8, (255, 255, 255), 0.85)
    c.ellipse(222, 48, 20, 6, (255, 255, 255), 0.8)
    c.polygon([(64, 144), (64, 118), (96, 106), (130, 116), (176, 104), (220, 114), (256, 102), (256, 144)], (150, 184, 142))
    c.polygon([(64, 144), (64, 130), (120, 124), (190, 130), (256, 122), (256, 144)], (122, 164, 118))
    c.box(157, 22, 163, 148, (250, 246, 236))
    c.box(40, 146, 280, 160, (188, 146, 104))
    c.box(40, 158, 280, 164, (150, 112, 78))
    fur, stripe, shade = (232, 180, 108), (206, 144, 74), (216, 162, 92)
    c.curve([(140 + 34 * math.cos(a / 10), 150 + 9 * math.sin(a / 10)) for a in range(-3, 18)], 8, shade)
    c.ellipse(124, 126, 25, 25, fur)
    c.ellipse(123, 141, 29, 12, fur)
    c.polygon([(104, 78), (105, 54), (120, 68)], fur)
    c.polygon([(144, 78), (143, 54), (128, 68)], fur)
    c.polygon([(107, 74), (107.5, 60), (117, 69)], (226, 150, 120))
    c.polygon([(141, 74), (140.5, 60), (131, 69)], (226, 150, 120))
    c.ellipse(124, 86, 24, 21, fur)
    for x, top in ((116, 66), (124, 64), (132, 66)):
        c.line(x, top, x + (124 - x) * 0.25, 76, 2.6, stripe)
    for y, half in ((112, 17), (122, 22), (132, 24)):
        c.curve([(124 + half * t / 6, y + 3 * (1 - (t / 6) ** 2)) for t in range(-6, -2)], 2.8, stripe)
        c.curve([(124 + half * t / 6, y + 3 * (1 - (t / 6) ** 2)) for t in range(3, 7)], 2.8, stripe)
    for side in (-1, 1):
        c.curve([(124 + side * 10 + 5 * math.cos(a / 5), 86 + 4 * math.sin(a / 5)) for a in range(2, 15)], 1.5, (94, 62, 40))
        for lift in (-2, 1.5):
            c.line(124 + side * 9, 95, 124 + side * 26, 95 + lift * 1.6, 0.7, (250, 240, 222))
    c.ellipse(124, 96, 9, 6, (248, 226, 192))
    c.polygon([(121, 92), (127, 92), (124, 95)], (208, 112, 96))
    c.curve([(118, 97), (121, 99), (124, 96), (127, 99), (130, 97)], 1.1, (124, 82, 56))
    c.ellipse(114, 150, 8, 4.6, (248, 226, 192))
    c.ellipse(134, 150, 8, 4.6, (248, 226, 192))
    c.polygon([(216, 146), (240, 146), (236, 122), (220, 122)], (196, 104, 78))
    c.box(217, 120, 239, 126, (214, 122, 92))
    for x, y, r in ((228, 108, 9), (219, 112, 7), (237, 112, 7), (223, 101, 6), (233, 101, 6)):
        c.circle(x, y, r, (108, 152, 96))
    for x, y in ((222, 104), (234, 106), (228, 98), (217, 111), (240, 111)):
        c.circle(x, y, 2.6, (240, 136, 140))


def tea(c):
    c.sky((0, (224, 232, 222)), (112, (240, 238, 224)))
    for row in range(112 * SCALE, HEIGHT * SCALE):
        c.span(row, 0, WIDTH * SCALE, mix((198, 156, 112), (160, 116, 78), (row / SCALE - 112) / 88))
    for y, shift in ((126, 0), (147, 40), (174, 15)):
        c.curve([(x, y + 1.6 * math.sin((x + shift) / 30)) for x in range(-8, 336, 8)], 0.8, (146, 104, 68))
    c.ellipse(150, 168, 88, 15, (120, 84, 56), 0.35)
    c.ellipse(148, 160, 84, 16, (112, 136, 128))
    c.ellipse(148, 157, 84, 16, (150, 174, 162))
    c.ellipse(148, 156, 62, 11, (132, 158, 148))
    cup = [(96, 92), (98, 116), (106, 140), (120, 156), (148, 160), (176, 156), (190, 140), (198, 116), (200, 92)]
    c.polygon(cup, (244, 240, 228))
    c.polygon([(180, 93), (178, 118), (170, 142), (160, 158), (176, 156), (190, 140), (198, 116), (200, 92)], (222, 216, 200))
    c.curve([(97, 112), (120, 118), (148, 120), (176, 118), (198.5, 112)], 3.2, (92, 128, 150))
    c.curve([(99, 122), (122, 127), (148, 129), (174, 127), (197, 122)], 1.4, (92, 128, 150))
    c.ellipse(148, 92, 52, 12, (250, 248, 240))
    c.ellipse(148, 93, 46, 9.4, (154, 170, 84))
    c.ellipse(140, 91.6, 28, 4.4, (182, 196, 108), 0.6)
    for x, phase in ((130, 0.0), (148, 2.1), (166, 4.0)):
        for step in range(46):
            y = 82 - step * 1.35
            c.circle(x + 6 * math.sin(step / 8 + phase) * step / 46, y, 2.4 + step * 0.06, (255, 255, 255), 0.2 * (1 - step / 46))
    c.ellipse(262, 166, 40, 9, (120, 84, 56), 0.35)
    c.ellipse(260, 160, 40, 10, (206, 120, 92))
    c.ellipse(260, 158, 36, 8, (226, 146, 116))
    for x, y, colour in ((240, 150, (248, 214, 214)), (260, 148, (250, 248, 240)), (280, 150, (186, 206, 140))):
        c.circle(x, y, 11.5, mix(colour, (130, 90, 60), 0.14))
        c.circle(x - 0.6, y - 0.8, 10.7, colour)
        c.ellipse(x - 4, y - 5, 3.4, 2.2, (255, 255, 255), 0.6)
    c.line(226, 152, 298, 152, 1.6, (196, 158, 104), 0.9)


def cherry(c):
    c.sky((0, (170, 208, 236)), (120, (236, 242, 244)), (200, (240, 240, 236)))
    c.hill(122, [(8, 40, 10), (3, 15, 0)], (176, 196, 190))
    c.hill(136, [(3, 50, 0)], (160, 194, 126))
    for row in range(154 * SCALE, HEIGHT * SCALE):
        c.span(row, 0, WIDTH * SCALE, mix((150, 190, 212), (104, 152, 188), (row / SCALE - 154) / 46))
    c.polygon([(-4, 162), (80, 156), (180, 158), (324, 150), (324, 140), (-4, 140)], (146, 184, 108))
    bark = (104, 78, 70)
    c.polygon([(88, 153), (94, 118), (90, 96), (104, 96), (108, 118), (116, 153)], bark)
    for x1, y1, x2, y2, width in ((98, 108, 62, 72, 7), (98, 104, 112, 54, 8), (102, 112, 150, 80, 7), (76, 86, 44, 84, 4),
                                  (130, 92, 168, 96, 4), (110, 70, 140, 44, 5), (104, 66, 82, 40, 4)):
        c.line(x1, y1, x2, y2, width, bark)
    chance = Scatter(3)
    tints = [(244, 178, 196), (250, 200, 212), (255, 222, 228), (236, 160, 184)]
    clusters = [(44, 78, 24), (64, 60, 26), (84, 40, 26), (112, 40, 28), (140, 42, 24), (152, 70, 26), (172, 92, 20),
                (122, 66, 26), (92, 66, 24), (34, 92, 16), (136, 92, 14)]
    for layer in range(3):
        for x, y, r in clusters:
            for _ in range(16):
                a, d = chance(0, 2 * math.pi), r * math.sqrt(chance())
                tint = tints[min(3, int(chance(0, 2.2)) + (1 if layer == 2 else 0))] if layer else tints[3]
                c.circle(x + d * math.cos(a), y + 0.8 * d * math.sin(a) + (3 - layer * 3), chance(2.6, 5.6), tint)
    for _ in range(60):
        x, y = chance(0, 320), chance(70, 152)
        c.ellipse(x, y, 1.7, 1.1, tints[1])
    for _ in range(90):
        y = 160 + 38 * chance()
        c.ellipse(chance(0, 320), y, 1.4 + (y - 158) * 0.05, 0.8, (250, 214, 222), 0.9)


def fireworks(c):
    c.sky((0, (16, 22, 52)), (110, (40, 48, 92)), (140, (70, 66, 108)), (200, (70, 66, 108)))
    chance = Scatter(21)
    for _ in range(60):
        c.circle(chance(0, 320), chance(0, 90), chance(0.3, 0.8), (220, 224, 250), 0.7)
    c.hill(140, [(6, 30, 0), (3, 11, 20)], (26, 28, 52))
    for row in range(146 * SCALE, HEIGHT * SCALE):
        c.span(row, 0, WIDTH * SCALE, mix((44, 46, 86), (18, 22, 48), (row / SCALE - 146) / 54))
    for cx, cy, radius, colour in ((104, 62, 50, (255, 196, 110)), (222, 46, 38, (255, 140, 170)), (256, 98, 22, (150, 220, 255)),
                                   (170, 104, 18, (180, 240, 170))):
        c.glow(cx, cy, radius * 1.2, colour, 0.08)
        for ring in range(1, 4):
            for i in range(24):
                a = 2 * math.pi * (i + ring % 2 / 2) / 24
                inner, outer = radius * (ring - 0.62) / 3, radius * ring / 3
                drop = (ring / 3) ** 2 * radius * 0.07
                bright = mix(colour, (255, 255, 255), 0.65 - ring * 0.18)
                c.line(cx + inner * math.cos(a), cy + inner * math.sin(a), cx + outer * math.cos(a),
                       cy + outer * math.sin(a) + drop, 1.1, bright, 0.8)
                c.circle(cx + outer * math.cos(a), cy + outer * math.sin(a) + drop, 1.3, mix(bright, (255, 255, 255), 0.4))
        for _ in range(int(radius)):
            y = 150 + 44 * chance()
            c.ellipse(cx + chance(-radius, radius) * 0.6, y, 3 + (y - 146) * 0.1, 0.8, colour, 0.35)
    for x, height in ((14, 10), (34, 15), (52, 9), (270, 14), (296, 9)):
        c.box(x, 146 - height, x + 14, 148, (20, 20, 38))
        c.box(x + 4, 149 - height, x + 6.5, 152 - height, (255, 214, 130))
        c.box(x + 9, 149 - height, x + 11.5, 152 - height, (255, 214, 130))


def snow(c):
    c.sky((0, (44, 58, 98)), (120, (112, 128, 168)), (150, (150, 162, 192)))
    c.circle(252, 40, 13, (250, 246, 224))
    c.circle(246, 37, 11.5, (65, 80, 120))
    c.hill(126, [(14, 46, 30), (5, 19, 0)], (92, 108, 150))
    c.hill(142, [(6, 50, 100)], (196, 208, 230))
    for x, height in ((20, 52), (44, 40), (278, 56), (302, 42), (256, 36)):
        for tier in range(3):
            top, half = 150 - height + tier * height * 0.25, height * (0.16 + 0.07 * tier)
            c.polygon([(x, top), (x - half, top + height * 0.36), (x + half, top + height * 0.36)], (52, 80, 92))
            c.polygon([(x, top), (x - half * 0.55, top + height * 0.2), (x, top + height * 0.15), (x + half * 0.55, top + height * 0.2)],
                      (236, 242, 250))
    for x, y, w, h in ((78, 118, 58, 36), (168, 124, 66, 34)):
        c.box(x, y, x + w, y + h, (122, 92, 78))
        c.polygon([(x - 8, y + 3), (x + w / 2, y - 24), (x + w + 8, y + 3)], (240, 244, 252))
        c.polygon([(x - 8, y + 3), (x + w + 8, y + 3), (x + w + 6, y + 6), (x - 6, y + 6)], (190, 202, 226))
        c.glow(x + w / 2, y + 18, 32, (255, 206, 120), 0.16)
        for left in (x + 9, x + w - 23):
            c.box(left, y + 11, left + 14, y + 24, (255, 218, 134))
            c.box(left + 6.4, y + 11, left + 7.6, y + 24, (122, 92, 78))
            c.box(left, y + 17, left + 14, y + 18, (122, 92, 78))
    c.box(112, 90, 120, 106, (104, 80, 72))
    c.box(111, 88, 121, 92, (240, 244, 252))
    c.hill(160, [(4, 42, 20), (2, 17, 0)], (226, 234, 246))
    c.hill(178, [(4, 55, 90)], (242, 246, 252))
    chance = Scatter(8)
    for _ in range(170):
        c.circle(chance(0, 320), chance(0, 200), chance(0.6, 1.9), (255, 255, 255), 0.85)


def train(c):
    c.sky((0, (120, 182, 226)), (100, (214, 234, 240)), (120, (226, 238, 236)))
    for x, y, s in ((56, 36, 1.2), (208, 26, 1.0), (282, 54, 0.8)):
        for dx, dy, r in ((-16, 3, 9), (0, -2, 13), (16, 3, 10), (0, 5, 14)):
            c.ellipse(x + dx * s, y + dy * s, r * s * 1.25, r * s * 0.75, (255, 255, 255), 0.9)
    c.hill(104, [(12, 42, 0), (4, 17, 30)], (134, 172, 160))
    c.hill(116, [(6, 36, 60), (2, 13, 0)], (98, 146, 112))
    for row in range(122 * SCALE, HEIGHT * SCALE):
        c.span(row, 0, WIDTH * SCALE, mix((150, 196, 98), (108, 166, 74), (row / SCALE - 122) / 78))
    for i in range(-14, 15):
        c.line(160 + i * 12, 150, 160 + i * 44, 202, 1.1, (84, 142, 62))
    for y in (158, 172):
        c.box(0, y, 320, y + 2.4, (190, 206, 136))
    c.box(0, 140, 320, 147, (150, 136, 118))
    c.box(0, 139, 320, 140.4, (96, 88, 82))
    body, band = (242, 232, 206), (198, 84, 62)
    c.box(84, 104, 236, 135, body)
    c.polygon([(84, 104), (90, 99), (230, 99), (236, 104)], (150, 150, 150))
    c.box(84, 122, 236, 131, band)
    for i in range(7):
        c.box(105 + i * 16, 108, 117 + i * 16, 119, (128, 176, 204))
        c.polygon([(105 + i * 16, 119), (105 + i * 16, 114), (110 + i * 16, 108), (115 + i * 16, 108)], (196, 222, 234))
    for left in (89, 219):
        c.box(left, 107, left + 12, 133, (222, 210, 182))
        c.box(left + 2, 109, left + 10, 119, (128, 176, 204))
    c.box(96, 135, 224, 138, (86, 82, 82))
    for x in (102, 116, 204, 218):
        c.circle(x, 136.5, 3.4, (60, 58, 60))
    c.circle(234, 126, 1.6, (255, 246, 196))
    for x in (30, 148, 282):
        c.box(x, 76, x + 2, 141, (112, 98, 88))
        c.box(x - 7, 82, x + 9, 83.6, (112, 98, 88))
    for y in (82, 85):
        c.curve([(x, y + 6 * math.sin(math.pi * ((x - 31) % 118) / 118)) for x in range(-2, 324, 6)], 0.5, (96, 96, 100))
    chance = Scatter(17)
    for _ in range(80):
        x, y = chance(0, 320), chance(184, 199)
        c.line(x, y, x + chance(-1.5, 1.5), y - chance(4, 9), 1, (140, 192, 84))


PICTURES = {"umi": sea, "yama": mountains, "neko": cat, "ocha": tea,
            "sakura": cherry, "hanabi": fireworks, "yuki": snow, "densha": train}


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: draw_pictures.py FOLDER")
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for name, paint in PICTURES.items():
        canvas = Canvas()
        paint(canvas)
        (folder / f"{name}.png").write_bytes(canvas.png())


if __name__ == "__main__":
    main()
