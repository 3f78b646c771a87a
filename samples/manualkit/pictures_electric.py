"""Circuit diagrams and the drive battery. Each takes a Look and returns an SVG text."""
from .svg import DARK, INK, METAL, PALE, callouts, circle, drawing, label, path, rect


def battery_symbol(x, y):
    return (
        path(
            f"M{x - 24} {y}H{x + 24}M{x - 12} {y + 12}H{x + 12}M{x - 24} {y + 24}H{x + 24}M{x - 12} {y + 36}H{x + 12}",
            line=3,
        )
        + label(x + 36, y + 4, "+", 18)
        + label(x + 36, y + 42, "–", 18)
    )


def earth_symbol(x, y):
    return path(f"M{x} {y - 14}V{y}M{x - 18} {y}H{x + 18}M{x - 11} {y + 8}H{x + 11}M{x - 5} {y + 16}H{x + 5}", line=3)


def relay(x, y, fill):
    return (
        rect(x, y, 96, 72, PALE, 4)
        + rect(x + 12, y + 20, 26, 32, fill)
        + path(f"M{x + 12} {y + 52}L{x + 38} {y + 20}M{x + 25} {y}V{y + 20}M{x + 25} {y + 52}V{y + 72}", line=2)
        + path(f"M{x + 70} {y}V{y + 22}L{x + 84} {y + 48}M{x + 70} {y + 50}V{y + 72}", line=3)
    )


def circuit(look):
    lamp = circle(530, 220, 26, "#fff6cf") + path("M512 202L548 238M548 202L512 238")
    return drawing(
        path("M90 150V60H200M260 60H345V96M300 60V96M345 168V184H530V194M530 246V300M90 186V300M300 168V220", line=3),
        battery_symbol(90, 150),
        rect(200, 46, 60, 28, look.accent, 8),
        path("M206 60H254", stroke="#fff"),
        relay(275, 96, look.accent),
        path("M300 220L282 262M300 262V300", line=4),
        circle(300, 220, 5, "#fff"),
        circle(300, 264, 5, "#fff"),
        lamp,
        earth_symbol(90, 314),
        earth_symbol(300, 314),
        earth_symbol(530, 314),
        callouts(
            (34, 120, 80, 160),
            (230, 110, 230, 70),
            (430, 110, 366, 120),
            (230, 240, 288, 246),
            (600, 180, 550, 212),
            (600, 330, 546, 316),
        ),
    )


def starter(look):
    return drawing(
        path("M80 140V50H497V244M80 176V310H600M240 50V90M240 126V150H355V170M400 50V170", line=3),
        battery_symbol(80, 140),
        circle(240, 108, 20, "#fff"),
        path("M230 96L250 122", line=4),
        label(274, 100, "50", 13),
        label(100, 44, "30", 13),
        relay(330, 170, look.accent),
        path("M355 242V310M400 242V266H470", line=3),
        rect(470, 244, 54, 44, METAL, 4),
        path("M478 250L516 282M516 250L478 282", line=1.5),
        circle(570, 210, 42, look.accent),
        label(570, 219, "M", 26, "#fff"),
        path("M570 252V310M524 262L540 240", line=3),
        earth_symbol(200, 324),
        callouts(
            (30, 110, 70, 150), (180, 170, 232, 116), (290, 280, 346, 230), (470, 330, 492, 276), (620, 130, 590, 180)
        ),
    )


def battery(look):
    cells = "".join(
        rect(110 + column * 96, 110 + row * 92, 84, 80, look.accent, 4)
        + path(
            f"M{122 + column * 96} {126 + row * 92}h60M{122 + column * 96} {142 + row * 92}h60",
            stroke="#ffffff88",
            line=3,
        )
        for row in range(2)
        for column in range(4)
    )
    links = "".join(
        path(f"M{194 + column * 96} {150 + row * 92}h12", stroke="#e08a1e", line=7)
        for row in range(2)
        for column in range(3)
    )
    return drawing(
        path("M90 90H540L560 110V290L540 310H90L70 290V110z", PALE, line=3),
        cells,
        links,
        rect(500, 116, 46, 66, "#8fbf8f", 4),
        rect(500, 208, 46, 66, METAL, 4),
        path("M488 242H500", stroke="#e08a1e", line=7),
        rect(264, 62, 70, 40, "#e08a1e", 5),
        path("M546 242H600V180", stroke="#e08a1e", line=9),
        circle(600, 160, 22, "#fff"),
        circle(592, 154, 4, INK),
        circle(608, 154, 4, INK),
        circle(600, 168, 4, INK),
        path("M86 330H560", stroke=DARK, line=2),
        callouts(
            (360, 34, 310, 76),
            (40, 60, 140, 130),
            (500, 50, 520, 130),
            (480, 338, 520, 260),
            (610, 90, 602, 148),
            (610, 290, 600, 220),
        ),
    )
