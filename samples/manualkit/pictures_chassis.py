"""Drawings of the vehicle, its chassis, body and heating. Each takes a Look and returns an SVG text."""
import math

from .svg import COOL, DARK, HOT, INK, METAL, PALE, callouts, circle, drawing, label, path, rect

CABIN = "M196 150L256 96Q270 84 292 84H396Q420 84 438 98L496 148"


def wheel(x, y, radius=40):
    spokes = "".join(
        f"M{x} {y}L{x + radius * .55 * math.cos(a):.1f} {y + radius * .55 * math.sin(a):.1f}"
        for a in (math.tau * step / 5 - 0.3 for step in range(5))
    )
    return (
        circle(x, y, radius, INK)
        + circle(x, y, radius * 0.62, METAL)
        + path(spokes, stroke=DARK, line=5)
        + circle(x, y, radius * 0.14, INK)
    )


def side_view(look):
    return (
        path(
            f"M88 236Q80 176 130 164L196 150{CABIN[8:]}Q556 156 562 196L566 236Q566 246 552 246H100Q88 246 88 236z",
            look.accent,
            line=3,
        )
        + path("M216 148L266 104Q274 97 288 97H338V148zM350 97H392Q410 97 424 108L470 148H350z", "#dfeaf2")
        + path("M344 97V240M210 160Q196 220 226 240M478 160Q470 200 446 240", line=1.5)
        + path("M360 172H386M226 172H252", stroke="#fff", line=5)
        + wheel(172, 246)
        + wheel(478, 246)
    )


def vehicle(look):
    jack = "".join(path(f"M{x - 12} 286L{x} 262L{x + 12} 286z", "#e6c35c") for x in (232, 418))
    return drawing(
        path("M30 290H610", stroke=DARK, line=3),
        side_view(look),
        jack,
        callouts(
            (60, 120, 140, 180), (320, 40, 344, 190), (200, 330, 232, 278), (450, 330, 418, 278), (40, 220, 92, 226)
        ),
    )


def body(look):
    return drawing(
        path("M30 290H610", stroke=DARK, line=3),
        side_view(look),
        callouts(
            (80, 110, 150, 162),
            (60, 300, 120, 206),
            (290, 310, 290, 210),
            (400, 310, 410, 200),
            (590, 120, 520, 190),
            (600, 200, 560, 190),
            (340, 34, 340, 85),
        ),
    )


def steering(look):
    ribs = "".join(path(f"M{x} 254V286", stroke=DARK) for x in (*range(190, 222, 8), *range(424, 456, 8)))
    return drawing(
        circle(330, 86, 62, "none", line=12),
        circle(330, 86, 18, look.accent),
        path("M330 104V142M314 82L276 68M346 82L384 68", line=8),
        path("M330 146L356 190L330 250", line=9),
        circle(356, 190, 11, look.accent),
        rect(220, 252, 204, 36, METAL, 10),
        rect(186, 254, 36, 32, PALE, 6),
        rect(424, 254, 36, 32, PALE, 6),
        ribs,
        path("M186 270H96M460 270H548", line=7),
        path("M96 270L70 286M548 270L574 286", line=9),
        circle(66, 288, 12, METAL),
        circle(578, 288, 12, METAL),
        rect(372, 204, 74, 44, look.accent, 10),
        callouts(
            (220, 60, 272, 76),
            (430, 160, 358, 190),
            (260, 330, 280, 272),
            (130, 220, 140, 270),
            (110, 330, 68, 290),
            (520, 200, 440, 224),
        ),
    )


def strut(look):
    coils = "".join(path(f"M258 {y}Q320 {y + 26} 382 {y + 6}", stroke=look.accent, line=9) for y in range(84, 196, 22))
    return drawing(
        path("M236 56H404L384 36H256z", METAL),
        rect(314, 20, 12, 70, DARK),
        rect(254, 66, 132, 12, PALE, 4),
        coils,
        rect(250, 204, 140, 12, PALE, 4),
        rect(300, 130, 40, 150, METAL, 6),
        rect(312, 78, 16, 60, "#e9eef2"),
        path("M298 260H250V310H390V260H342", PALE),
        circle(320, 292, 22, METAL),
        circle(320, 292, 9, INK),
        path("M250 304L90 326M250 312L110 336", line=8, stroke=DARK),
        circle(96, 330, 12, METAL),
        path("M300 170L210 180L190 300", line=4),
        circle(210, 180, 6, "#fff"),
        circle(190, 300, 6, "#fff"),
        rect(410, 210, 44, 140, INK, 14),
        path("M390 292H410", line=10),
        callouts(
            (170, 40, 250, 46),
            (470, 110, 372, 134),
            (470, 170, 330, 240),
            (130, 200, 204, 210),
            (60, 280, 150, 320),
            (520, 300, 326, 292),
        ),
    )


def brake(look):
    holes = "".join(
        circle(round(230 + 96 * math.cos(a), 1), round(180 + 96 * math.sin(a), 1), 5, "#fff", line=1)
        for a in (math.tau * step / 18 for step in range(18))
    )
    nuts = "".join(
        circle(round(230 + 34 * math.cos(a), 1), round(180 + 34 * math.sin(a), 1), 6, INK)
        for a in (math.tau * step / 5 for step in range(5))
    )
    return drawing(
        circle(230, 180, 130, METAL, line=3),
        circle(230, 180, 122, "#dde4ea", line=1),
        holes,
        circle(230, 180, 62, "#9fb0be"),
        nuts,
        circle(230, 180, 16, "#fff"),
        path("M296 62Q384 100 384 180T296 298L270 262Q336 230 336 180T270 98z", look.accent, line=3),
        path("M340 150H356V210H340z", PALE),
        rect(440, 70, 34, 220, METAL, 4),
        rect(482, 96, 16, 168, DARK),
        rect(416, 96, 16, 168, DARK),
        path("M498 110H560V250H498zM560 90V270H400V290H580V70H400V90z", look.accent),
        rect(500, 148, 44, 64, "#fff"),
        path("M580 110H606M606 104V116", line=5),
        rect(398, 308, 120, 10, "#9fb0be", 4),
        callouts(
            (60, 80, 150, 100),
            (300, 330, 330, 262),
            (540, 40, 490, 110),
            (380, 40, 424, 110),
            (620, 210, 524, 180),
            (612, 60, 604, 108),
            (560, 334, 500, 314),
        ),
    )


def climate(look):
    return drawing(
        path("M40 130H330V70H600V290H330V250H40z", PALE, line=3),
        circle(110, 190, 50, look.accent),
        circle(110, 190, 12, "#fff"),
        "".join(
            path(f"M110 190L{110 + 46 * math.cos(a):.1f} {190 + 46 * math.sin(a):.1f}", stroke="#fff", line=2)
            for a in (math.tau * step / 12 for step in range(12))
        ),
        rect(210, 136, 34, 108, "#cfe3f2"),
        path("".join(f"M210 {y}H244" for y in range(146, 244, 10)), stroke=COOL, line=2),
        rect(400, 190, 34, 94, "#f3d3cd"),
        path("".join(f"M400 {y}H434" for y in range(200, 284, 10)), stroke=HOT, line=2),
        path("M350 180L400 130", line=6),
        circle(350, 180, 8, INK),
        path("M480 110H560M480 180H560M480 250H560", stroke=DARK, line=3),
        path("M552 102L562 110L552 118M552 172L562 180L552 188M552 242L562 250L552 258", stroke=DARK, line=3),
        path("M160 190H200M252 190H330", stroke=COOL, line=4, stroke_dasharray="8 6"),
        rect(170, 290, 90, 50, METAL, 10),
        circle(190, 315, 16, look.accent),
        path("M227 244V290M260 300H310V252", line=4),
        callouts(
            (70, 90, 100, 150),
            (230, 90, 228, 150),
            (470, 330, 420, 260),
            (390, 90, 380, 150),
            (620, 140, 556, 180),
            (110, 326, 190, 318),
        ),
    )


def schedule(look):
    rows = ("1111111111", "0101010101", "1010101010", "0000100001")
    parts = [rect(60, 40, 530, 40, look.accent, 3)]
    for column in range(10):
        parts.append(label(104 + column * 51, 66, str(15 * (column + 1)), 15, "#fff"))
    for row, marks in enumerate(rows):
        parts.append(rect(60, 80 + row * 56, 530, 56, "#fff" if row % 2 else PALE, line=1))
        for column, mark in enumerate(marks):
            x, y = 104 + column * 51, 108 + row * 56
            parts.append(circle(x, y, 12, look.accent) if mark == "1" else circle(x, y, 12, "#fff"))
    return drawing(*parts, callouts((30, 164, 92, 164), (30, 108, 92, 108), (30, 60, 80, 60)))
