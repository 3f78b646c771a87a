"""Drawings of what drives the vehicle. Each takes a Look and returns an SVG text."""
import math

from .svg import COOL, DARK, HOT, INK, METAL, PALE, callouts, circle, drawing, label, path, rect


def engine(look):
    """A cut through two cylinders, one up and one down, beside the rest of the block."""
    parts = [
        path("M150 96L176 52H464L490 96z", look.accent),
        rect(150, 96, 340, 56, PALE),
        rect(150, 152, 340, 116, METAL),
        path("M150 268H490L462 330H178z", DARK),
    ]
    step = 340 / look.cylinders
    for index in range(look.cylinders):
        middle = 150 + step * (index + 0.5)
        bore = min(step * 0.34, 34)
        top = 164 if index in (0, look.cylinders - 1) else 206
        parts += [
            rect(middle - bore, 152, 2 * bore, 108, "#fff"),
            rect(middle - bore + 2, top, 2 * bore - 4, 34, "#8c9caa"),
            path(f"M{middle} {top + 20}L{middle} 284", line=7, stroke=DARK),
            circle(middle, 288, 13, "#dde4ea"),
            circle(middle, top + 20, 5, "#fff"),
            path(
                f"M{middle - bore * .6} 112V146M{middle - bore} 148H{middle - bore * .2}"
                f"M{middle + bore * .6} 112V146M{middle + bore * .2} 148H{middle + bore}",
                line=3,
            ),
        ]
        parts += [circle(middle - bore * 0.6, 106, 9, "#dde4ea"), circle(middle + bore * 0.6, 106, 9, "#dde4ea")]
    first = 150 + step / 2
    second = 150 + step * 1.5
    bore = min(step * 0.34, 34)
    return drawing(
        *parts,
        rect(140, 282, 360, 12, "#9fb0be", 6),
        callouts(
            (90, 60, 190, 70),
            (90, 120, first - bore * 0.6, 106),
            (560, 110, 150 + step * (look.cylinders - 0.5) - bore * 0.2, 146),
            (90, 190, first, 182),
            (560, 240, second, 262),
            (560, 300, 494, 288),
            (90, 310, 200, 318),
        ),
    )


def boltorder(look):
    """The cover from above; bolts are numbered from the middle outwards."""
    columns = look.cylinders + 1
    xs = [110 + index * 420 / (columns - 1) for index in range(columns)]
    order = sorted(range(columns), key=lambda index: (abs(index - (columns - 1) / 2), index))
    parts = [
        path("M80 110Q80 84 106 84H534Q560 84 560 110V250Q560 276 534 276H106Q80 276 80 250z", look.accent, line=3),
        rect(130, 130, 380, 100, "#ffffff55", 30),
    ]
    parts += [circle((xs[index] + xs[index + 1]) / 2, 180, 24, "#fff") for index in range(columns - 1)]
    for place, column in enumerate(order):
        for row, y in enumerate((104, 256)):
            parts += [circle(xs[column], y, 15, "#fff"), label(xs[column], y + 5, place * 2 + row + 1, 14)]
    return drawing(*parts, path("M320 310H240M320 310H400M252 303L240 310L252 317M388 303L400 310L388 317", line=2.5))


def cooling(look):
    coil = "".join(f"M70 {y}H146" for y in range(96, 270, 14))
    return drawing(
        path("M150 100H250V84H330", stroke=HOT, line=10),
        path("M400 120H470V90H520", stroke=HOT, line=8),
        path("M150 260H250V250H320", stroke=COOL, line=10),
        path("M400 240H560V150", stroke=COOL, line=8),
        rect(60, 80, 96, 196, PALE),
        path(coil, stroke=DARK, line=1.5),
        circle(196, 178, 46, "#fff"),
        path(
            "M196 178Q176 150 196 134Q212 152 196 178Q228 166 240 180Q224 200 196 178Q210 206 196 222Q180 204 196 178"
            "Q166 192 152 176Q170 158 196 178",
            look.accent,
            line=1.5,
        ),
        circle(196, 178, 7),
        rect(310, 80, 110, 190, METAL, 6),
        circle(340, 250, 24, look.accent),
        circle(340, 250, 8, "#fff"),
        rect(312, 66, 44, 34, "#e6c35c", 4),
        rect(510, 70, 96, 84, PALE, 4),
        path("".join(f"M{x} 78V146" for x in range(520, 604, 9)), stroke=DARK, line=1.5),
        path("M250 84V44H440", stroke="#9fb0be", line=4),
        rect(440, 24, 60, 44, "#f6f8c8", 8),
        rect(458, 14, 24, 12, INK),
        callouts(
            (60, 320, 90, 250),
            (196, 320, 196, 216),
            (440, 310, 352, 258),
            (270, 36, 330, 82),
            (570, 190, 560, 130),
            (560, 36, 490, 46),
        ),
    )


def fuel(look):
    rail = "".join(
        path(f"M{x} 92V124L{x - 6} 138H{x + 6}L{x} 124", look.accent, line=3)
        for x in range(420, 420 + 44 * look.cylinders, 44)
    )
    return drawing(
        path("M40 220Q40 196 64 196H262Q284 196 286 220L292 300Q292 320 270 320H62Q40 320 40 300z", METAL),
        path("M42 262Q90 252 140 262T290 262L292 300Q292 320 270 320H62Q40 320 40 300z", "#f3d98a", line=1),
        rect(140, 182, 56, 124, PALE, 4),
        rect(152, 260, 32, 40, DARK),
        path("M168 182V80H300", stroke=INK, line=5),
        rect(300, 62, 70, 36, look.accent, 12),
        path("M370 80H410", line=5),
        rect(404, 70, 44 * look.cylinders, 22, METAL, 8),
        rail,
        path("M262 200V150H330", stroke=DARK, line=4),
        rect(330, 126, 60, 52, "#8c9caa", 4),
        path("M390 152H470V200", stroke=DARK, line=4),
        path("M292 240H340", line=4),
        callouts(
            (60, 160, 80, 230),
            (230, 340, 168, 290),
            (330, 30, 334, 70),
            (600, 40, 520, 80),
            (600, 190, 470, 132),
            (350, 230, 360, 160),
        ),
    )


def gearbox(look):
    def wheel(x, y, half, width=30, fill=METAL):
        teeth = "".join(f"M{x - width / 2} {y - half + step}H{x + width / 2}" for step in range(6, 2 * half, 9))
        return rect(x - width / 2, y - half, width, 2 * half, fill, 3) + path(teeth, stroke=DARK, line=1)

    upper = ((170, 26), (226, 34), (300, 42), (356, 50), (430, 30))
    gears = [wheel(x, 120, half) + wheel(x, 226, 106 - half - 2) for x, half in upper]
    return drawing(
        path("M110 56H500L540 96V250L500 340H110Q90 340 90 316V80Q90 56 110 56z", PALE, line=3),
        rect(40, 112, 460, 16, "#9fb0be", 6),
        rect(120, 218, 390, 16, "#9fb0be", 6),
        *gears,
        rect(258, 188, 12, 76, look.accent),
        rect(388, 184, 12, 84, look.accent),
        path("M264 188V156Q264 146 274 146H380", line=6),
        circle(540, 262, 58, METAL),
        circle(540, 262, 34, "#fff"),
        path("M540 236L566 262L540 288L514 262z", look.accent),
        path("M84 276H104M84 270V282M104 270V282", line=5),
        callouts(
            (40, 80, 60, 118),
            (590, 140, 480, 226),
            (210, 30, 264, 200),
            (430, 170, 320, 147),
            (600, 200, 566, 250),
            (40, 310, 90, 276),
        ),
    )


def motor(look):
    slots = "".join(
        path(
            f"M{250 + 112 * math.cos(a):.1f} {180 + 112 * math.sin(a):.1f}"
            f"L{250 + 88 * math.cos(a):.1f} {180 + 88 * math.sin(a):.1f}",
            stroke=look.accent,
            line=9,
        )
        for a in (math.tau * step / 24 for step in range(24))
    )
    magnets = "".join(
        path(
            f"M{250 + 62 * math.cos(a - .2):.1f} {180 + 62 * math.sin(a - .2):.1f}"
            f"L{250 + 62 * math.cos(a + .2):.1f} {180 + 62 * math.sin(a + .2):.1f}",
            stroke=HOT if step % 2 else COOL,
            line=10,
        )
        for step, a in enumerate(math.tau * step / 8 for step in range(8))
    )
    return drawing(
        circle(250, 180, 138, PALE, line=3),
        circle(250, 180, 120, METAL),
        slots,
        circle(250, 180, 80, "#fff"),
        circle(250, 180, 74, DARK),
        magnets,
        circle(250, 180, 26, "#dde4ea"),
        circle(250, 180, 10, INK),
        circle(432, 226, 70, METAL),
        circle(432, 226, 22, "#fff"),
        "".join(
            circle(432 + 56 * math.cos(math.tau * s / 12), 226 + 56 * math.sin(math.tau * s / 12), 5, PALE)
            for s in range(12)
        ),
        rect(330, 24, 220, 76, look.accent, 8),
        path("M350 44H530M350 60H530M350 76H470", stroke="#ffffff99", line=3),
        path("M370 100V130M400 100V136M430 100V150", stroke="#f08a24", line=7),
        path("M110 120H60M110 240H60", stroke=COOL, line=9),
        callouts(
            (120, 40, 170, 96),
            (300, 336, 250, 240),
            (180, 336, 242, 192),
            (560, 290, 470, 240),
            (600, 60, 540, 60),
            (34, 180, 70, 124),
        ),
    )
