"""Small helpers for the manuals' line drawings. Every drawing is 640 by 360 units."""

INK = "#22303c"
PALE = "#eef2f5"
METAL = "#c9d3db"
DARK = "#6f8292"
COOL = "#3d87c4"
HOT = "#cf4a3a"
SIZE = (640, 360)


def tag(name, body="", **attributes):
    text = "".join(f' {key.replace("_", "-")}="{value}"' for key, value in attributes.items())
    return f"<{name}{text}>{body}</{name}>" if body else f"<{name}{text}/>"


def rect(x, y, width, height, fill=METAL, radius=0, stroke=INK, line=2):
    return tag("rect", x=x, y=y, width=width, height=height, rx=radius, fill=fill, stroke=stroke, stroke_width=line)


def circle(x, y, radius, fill=METAL, stroke=INK, line=2):
    return tag("circle", cx=x, cy=y, r=radius, fill=fill, stroke=stroke, stroke_width=line)


def path(d, fill="none", stroke=INK, line=2, **more):
    return tag("path", d=d, fill=fill, stroke=stroke, stroke_width=line, stroke_linejoin="round", **more)


def label(x, y, text, size=14, fill=INK, anchor="middle"):
    return tag("text", text, x=x, y=y, font_family="Arial, sans-serif", font_size=size, fill=fill, text_anchor=anchor)


def callout(number, x, y, to_x, to_y):
    """A numbered bubble with a line to the part that it names."""
    return (
        path(f"M{x} {y}L{to_x} {to_y}", line=1.5)
        + circle(to_x, to_y, 3, INK, line=0)
        + circle(x, y, 14, "#fff")
        + label(x, y + 5, number, 14)
    )


def callouts(*places):
    """callouts((x, y, to_x, to_y), ...) numbered from 1."""
    return "".join(callout(number, *place) for number, place in enumerate(places, 1))


def drawing(*parts):
    width, height = SIZE
    back = rect(1, 1, width - 2, height - 2, "#fff", 4, "#b9c6d0", 1)
    grid = path(
        "".join(f"M{x} 1V{height - 1}" for x in range(40, width, 40))
        + "".join(f"M1 {y}H{width - 1}" for y in range(40, height, 40)),
        stroke="#f0f3f6",
        line=1,
    )
    return (
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
        f'width="{width}" height="{height}">\n' + back + grid + "\n" + "\n".join(parts) + "\n</svg>\n"
    )
