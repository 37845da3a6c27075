# SPDX-License-Identifier: MIT
"""Writes the SVG of every picture to the folder named on the command line."""
import pathlib
import random
import re
import sys

from speakers import MODELS, box, circle, polygon, rect, shadow, speaker

WIDTH, HEIGHT = 2048, 926
EYE = (1024, 420)
FLOOR = 620  # where wall and floor meet
BANNER = (0, 110, 2048, 701)  # the part of a scene that a banner shows

MATERIALS = [(match[2], match[0]) for match in re.finditer(
    r'<(linearGradient|radialGradient|filter) id="([\w-]+)".*?</\1>',
    pathlib.Path(__file__).with_name("materials.svg").read_text(), re.S)]


def document(size, view, body):
    """A picture of that size; what of the view does not fit its shape is cut off evenly."""
    used = re.findall(r"url\(#([\w-]+)\)", body)
    materials = "".join(text for ident, text in MATERIALS if ident in used)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{size[0]}" height="{size[1]}" '
            f'viewBox="{" ".join(map(str, view))}" preserveAspectRatio="xMidYMid slice">'
            f"<defs>{materials}</defs>{body}</svg>\n")


def planks():
    """Floor boards that run to the vanishing point."""
    rnd = random.Random("planks")
    parts = [rect(0, FLOOR, WIDTH, HEIGHT - FLOOR, "url(#floor)")]
    near = (HEIGHT - EYE[1]) / (FLOOR - EYE[1])
    for at in range(-900, WIDTH + 900, 74):
        ends = [at, at + 74]
        low = [EYE[0] + (end - EYE[0]) * near for end in ends]
        tone = rnd.choice(["#fff0d8", "#1c0d04", "#1c0d04", "#c98a52"])
        parts.append(polygon([(ends[0], FLOOR), (ends[1], FLOOR), (low[1], HEIGHT), (low[0], HEIGHT)], tone,
                             f'opacity="{rnd.uniform(0.02, 0.13):.2f}"'))
        parts.append(f'<line x1="{ends[0]}" y1="{FLOOR}" x2="{low[0]:.0f}" y2="{HEIGHT}" stroke="#25130a" '
                     f'stroke-width="1.6" opacity="0.35"/>')
        joint = rnd.uniform(1.1, near)
        y = EYE[1] + (FLOOR - EYE[1]) * joint
        left, right = (EYE[0] + (end - EYE[0]) * joint for end in ends)
        parts.append(f'<line x1="{left:.0f}" y1="{y:.0f}" x2="{right:.0f}" y2="{y:.0f}" stroke="#25130a" '
                     f'stroke-width="1.6" opacity="0.35"/>')
    return "".join(parts)


def light(x, y, rx, ry, opacity=1.0):
    """What a lamp throws, brightest where it hangs."""
    return shadow(x, y, rx, ry, "url(#lamplight)", opacity)


def wash(x, y, rx, ry, opacity=1.0):
    """Light of a source out of sight: it has no bright core."""
    return shadow(x, y, rx, ry, "url(#washlight)", opacity)


def room(lights):
    """Wall, skirting board and floor; each light is x, y, rx, ry, opacity on the wall."""
    parts = [rect(0, 0, WIDTH, FLOOR + 2, "url(#wall)")]
    parts += [wash(*spot) for spot in lights]
    parts.append(planks())
    parts += [wash(x, FLOOR + 90, rx * 0.8, 130, opacity * 0.5) for x, _, rx, _, opacity in lights]
    parts.append(rect(0, FLOOR - 26, WIDTH, 28, "url(#skirting)"))
    parts.append(rect(0, FLOOR, WIDTH, 26, "#1a0f08", 0, 'opacity="0.25" filter="url(#blur12)"'))
    return "".join(parts)


def standing(name, x, base, scale=1.0):
    """A speaker on the floor, with its shadow and its image in the polished boards."""
    w, h, _ = MODELS[name]
    w, h = w * scale, h * scale
    body = speaker(name, x, base, EYE, scale)
    ident = f"r{name}{int(x)}"
    lean = (EYE[0] - x) * 0.06
    mirror = (f'<mask id="{ident}"><rect x="{x - w:.0f}" y="{base:.0f}" width="{2 * w:.0f}" height="{0.34 * h:.0f}" '
              f'fill="url(#fade)"/></mask><g mask="url(#{ident})"><g transform="translate(0 {2 * base}) scale(1 -1)">'
              f"{body}</g></g>")
    return "".join([
        shadow(x + lean + 0.25 * w, base - 6, 1.05 * w, 0.07 * w + 16),
        mirror,
        shadow(x + lean * 0.6, base, 0.72 * w, 11),
        body,
    ])


def on_top(name, x, base, scale=1.0):
    w = MODELS[name][0] * scale
    return shadow(x + 0.12 * w, base - 2, 0.72 * w, 12) + speaker(name, x, base, EYE, scale)


def sideboard(x, base, w, h, doors=3):
    parts = [shadow(x + w / 2 + 20, base + 4, 0.58 * w, 34)]
    for leg in (x + 26, x + w - 40):
        parts.append(polygon([(leg, base - 34), (leg + 14, base - 34), (leg + 11, base + 2), (leg + 4, base + 2)],
                             "#3a2618"))
    bottom = base - 30
    parts.append(box(x, bottom, w, h, EYE, 0.22, "url(#oak-front)", "url(#walnut-lit)", "url(#walnut-dark)",
                     "url(#oak)"))
    gap = 10
    door = (w - gap * (doors + 1)) / doors
    for i in range(doors):
        left = x + gap + i * (door + gap)
        parts.append(rect(left, bottom - h + gap, door, h - 2 * gap, "url(#oak-front)", 2,
                          'stroke="#5d3f26" stroke-opacity="0.55" stroke-width="2"'))
        parts.append(rect(left + door / 2 - 22, bottom - h + gap + 12, 44, 4, "#4b321f", 2))
    parts.append(rect(x, bottom - h, w, 3, "#fff0d6", 0, 'opacity="0.6"'))
    return "".join(parts)


def lamp(x, base):
    """A floor lamp, the source of the light on its wall."""
    top = base - 560
    return "".join([
        shadow(x + 8, base, 74, 13),
        rect(x - 3, top + 100, 6, 456, "#2a211b", 3),
        f'<ellipse cx="{x}" cy="{base - 4}" rx="52" ry="9" fill="#2a211b"/>',
        light(x, top + 60, 430, 400, 0.75),
        polygon([(x - 62, top), (x + 62, top), (x + 92, top + 124), (x - 92, top + 124)], "url(#shade)"),
        polygon([(x - 92, top + 124), (x + 92, top + 124), (x + 91, top + 119), (x - 91, top + 119)], "#c9985f",
                'opacity="0.7"'),
    ])


def plant(x, base, size=1.0):
    rnd = random.Random(f"plant{x}")
    leaves = []
    for angle in range(-76, 77, 13):
        length = size * rnd.uniform(120, 190) * (1 - abs(angle) / 240)
        width = size * rnd.uniform(13, 20)
        leaves.append(f'<path d="M0,0 C{-width:.0f},{-length * 0.45:.0f} {-width * 0.5:.0f},{-length * 0.85:.0f} '
                      f'0,{-length:.0f} C{width * 0.6:.0f},{-length * 0.8:.0f} {width:.0f},{-length * 0.4:.0f} '
                      f'0,0 Z" fill="url(#leaf)" transform="rotate({angle + rnd.uniform(-4, 4):.0f})"/>')
    rnd.shuffle(leaves)
    pot = size * 46
    rim = base - 1.75 * pot
    return "".join([
        shadow(x + 8, base, 66 * size, 11 * size),
        f'<g transform="translate({x} {base - pot * 1.5:.0f})">{"".join(leaves)}</g>',
        polygon([(x - pot, rim), (x + pot, rim), (x + 0.72 * pot, base), (x - 0.72 * pot, base)], "url(#ceramic)"),
        f'<ellipse cx="{x}" cy="{rim:.0f}" rx="{pot:.0f}" ry="{0.15 * pot:.0f}" fill="#6d5a45"/>',
    ])


def frame(x, y, w, h):
    """A picture on the wall: hills in the evening."""
    return "".join([
        rect(x + 8, y + 10, w, h, "#1a0f08", 2, 'opacity="0.4" filter="url(#blur4)"'),
        rect(x, y, w, h, "#2c211a", 2),
        rect(x + 9, y + 9, w - 18, h - 18, "#efe3cf"),
        f'<svg x="{x + 32}" y="{y + 30}" width="{w - 64}" height="{h - 60}" viewBox="0 0 200 120" '
        f'preserveAspectRatio="none"><rect width="200" height="120" fill="#e8b98a"/>'
        f'<circle cx="132" cy="48" r="20" fill="#fbe9c9"/>'
        f'<path d="M0,76 C40,46 80,60 120,72 S180,58 200,64 V120 H0 Z" fill="#b2704a"/>'
        f'<path d="M0,96 C50,78 90,100 140,86 S190,92 200,84 V120 H0 Z" fill="#6f4433"/></svg>',
    ])


def books(x, base):
    parts = []
    for width, height, tone in ((20, 92, "#7a3f2b"), (26, 104, "#c9b492"), (17, 86, "#3e4b4f"), (24, 98, "#a3683f"),
                                (19, 90, "#e5d7bf")):
        parts.append(rect(x, base - height, width, height, tone, 2))
        parts.append(rect(x + 3, base - height + 14, width - 6, 4, "#fff", 0, 'opacity="0.35"'))
        x += width + 1
    return "".join(parts)


def vignette():
    return rect(0, 0, WIDTH, HEIGHT, "url(#vignette)")


def air():
    return "".join([
        room([(190, 260, 760, 480, 0.85), (1540, 340, 620, 400, 0.5)]),
        lamp(190, 700), frame(775, 150, 330, 220),
        sideboard(690, 682, 690, 128),
        on_top("vc5", 940, 521, 0.74), plant(1290, 522, 0.86), books(1130, 522),
        standing("vc9", 480, 722, 0.98), standing("vc9", 1590, 722, 0.98),
        plant(1890, 742, 1.5), vignette(),
    ])


def sub():
    rings = "".join(f'<ellipse cx="1300" cy="520" rx="{r}" ry="{r * 0.86:.0f}" fill="none" stroke="#ffe6bf" '
                    f'stroke-width="{9 - i}" opacity="{0.30 - i * 0.045:.3f}"/>'
                    for i, r in enumerate(range(310, 850, 100)))
    return "".join([
        room([(190, 260, 760, 480, 0.85), (1290, 430, 800, 440, 0.6)]),
        f'<clipPath id="above"><rect width="{WIDTH}" height="{FLOOR - 26}"/></clipPath>',
        f'<g clip-path="url(#above)">{rings}</g>',
        lamp(190, 700), sideboard(330, 690, 540, 128, 2),
        on_top("vc3", 440, 530, 0.84), plant(600, 531, 0.85), on_top("vc3", 760, 530, 0.84),
        standing("vs12", 1300, 772, 1.4), plant(1830, 752, 1.6), vignette(),
    ])


def palette():
    row = [("vc9", 225, 1.0), ("vc8", 485, 1.0), ("vc7", 717, 1.0), ("vc3", 945, 1.0), ("vc5", 1262, 0.8),
           ("vs12", 1730, 0.96)]
    stand = {"vc3": (92, 150), "vc5": (176, 118)}
    parts = [room([(260, 330, 640, 560, 0.75), (960, 340, 700, 520, 0.7), (1640, 360, 560, 480, 0.55)])]
    for name, x, scale in row:
        if name in stand:
            half, height = stand[name]
            parts.append(shadow(x + 30, 744, 1.4 * half, 24))
            parts.append(box(x - half, 746, 2 * half, height, EYE, 0.10, "url(#ceramic)", "#cdb99e", "#84705a",
                             "#f6ecdc"))
            parts.append(on_top(name, x, 746 - height - 2, scale))
        else:
            parts.append(standing(name, x, 746, scale))
    parts.append(vignette())
    return "".join(parts)


def waves(x, y, arcs, first, gap, width):
    """Arcs of radio waves that rise from a point."""
    parts = []
    for i in range(arcs):
        r = first + i * gap
        across, up = 0.74 * r, 0.67 * r
        parts.append(f'<path d="M{x - across:.1f},{y - up:.1f} A{r},{r} 0 0 1 {x + across:.1f},{y - up:.1f}" '
                     f'fill="none" stroke="#fff4dd" stroke-width="{width}" stroke-linecap="round" '
                     f'opacity="{0.95 - i * 0.6 / arcs:.2f}"/>')
    return "".join(parts)


def router(x, base):
    aerial = rect(-6, -118, 12, 120, "#e9e0d2", 6) + rect(-6, -118, 4, 120, "#fff", 2)
    aerials = "".join(f'<g transform="translate({x + side * 92} {base - 40}) rotate({side * 9})">{aerial}</g>'
                      for side in (-1, 1))
    lights = "".join(circle(x - 60 + i * 26, base - 22, 4.5, "#8fd6a4" if i < 4 else "#f2b25c") for i in range(5))
    front = [(x - 128, base), (x - 118, base - 46), (x + 118, base - 46), (x + 128, base)]
    top = [(x - 118, base - 46), (x + 118, base - 46), (x + 100, base - 56), (x - 100, base - 56)]
    return (shadow(x + 14, base, 160, 14) + aerials + polygon(front, "url(#ceramic)") + polygon(top, "#fbf4e8")
            + lights)


def tablet(x, base):
    """A tablet that leans on the wall and shows three sliders."""
    sliders = "".join(rect(-74, 28 + i * 40, 148, 6, "#8fa5b1", 3) + rect(-74, 28 + i * 40, length, 6, "#f0a868", 3)
                      + circle(-74 + length, 31 + i * 40, 10, "#fff") for i, length in enumerate((96, 52, 120)))
    return (shadow(x, base, 122, 10) + f'<g transform="translate({x} {base - 140}) scale(0.84) skewX(-4)">'
            + rect(-112, 0, 224, 166, "#1c1a19", 14) + rect(-102, 10, 204, 146, "url(#glass)", 6) + sliders
            + polygon([(-102, 10), (20, 10), (-40, 156), (-102, 156)], "#fff", 'opacity="0.07"') + "</g>")


def wlan():
    return "".join([
        room([(170, 260, 720, 480, 0.8), (935, 360, 620, 420, 0.8), (1760, 330, 460, 380, 0.4)]),
        lamp(170, 700),
        sideboard(570, 742, 930, 176, 4),
        waves(935, 442, 4, 68, 50, 12), router(935, 530),
        on_top("vc3", 662, 532, 0.98), tablet(1178, 534), on_top("vc3", 1400, 532, 0.98),
        standing("vc8", 390, 752, 0.96), standing("vs12", 1740, 756, 0.9),
        waves(390, 280, 2, 46, 34, 8), waves(1740, 448, 2, 46, 34, 8), vignette(),
    ])


SCENES = {"air": air, "sub": sub, "palette": palette, "wlan": wlan}

# Height of the front in the 54 x 100 picture; they grow with the model so that the tree tells them apart.
PRODUCTS = {"vc3": (46, 28), "vc5": (18.5, 44), "vc7": (74, 26), "vc8": (85, 27), "vc9": (94, 29), "vs12": (42, 41)}


def product(name):
    """In the middle of its picture, as the texts are in the middle of their row."""
    w, h, _ = MODELS[name]
    height, width = PRODUCTS[name]
    scale = 8 * height / h
    squeeze = 8 * width / (w * scale)
    base = 396 + 8 * height / 2
    body = speaker(name, 0, 0, (900, -0.55 * 8 * height), scale, 0.085)
    return document((54, 100), (0, 0, 432, 800),
                    rect(0, 0, 432, 800, "#fff") + shadow(214, base + 2, min(5.76 * width, 206), 17, "url(#softshadow)")
                    + f'<g transform="translate(186 {base:.0f}) '
                    f'scale({squeeze:.3f} 1)">{body}</g>')


def slider_handle():
    return document((60, 62), (0, 0, 60, 62), "".join([
        '<ellipse cx="30" cy="36" rx="25" ry="24" fill="#000" opacity="0.28" filter="url(#blur4)"/>',
        circle(30, 30, 25, "url(#knob)", 'stroke="#8f8a83" stroke-width="1.2"'),
        circle(30, 30, 9, "url(#copper)")]))


def slider(ground):
    ticks = "".join(f'<line x1="{x}" y1="{y}" x2="{x}" y2="{y + 5}" stroke="#a5a294"/>'
                    for x in range(7, 64, 10) for y in (6, 35))
    back = rect(0, 0, 64, 46, ground) if ground else ""
    return document((64, 46), (0, 0, 64, 46), "".join([
        back, ticks, rect(4, 20, 56, 6, "#d6d2c9", 3), rect(4, 20, 30, 6, "#b4683a", 3),
        '<circle cx="34" cy="25" r="11" fill="#000" opacity="0.18"/>',
        circle(34, 23, 11, "url(#knob)", 'stroke="#8f8a83" stroke-width="0.8"'), circle(34, 23, 4, "url(#copper)")]))


def mist():
    rnd = random.Random("mist")
    clouds = "".join(f'<ellipse cx="{rnd.uniform(18, 100):.0f}" cy="{y}" rx="{rnd.uniform(14, 30):.0f}" '
                     f'ry="{rnd.uniform(3, 7):.0f}" fill="#fff" opacity="{rnd.uniform(0.3, 0.6):.2f}"/>'
                     for y in range(26, 72, 2))
    return document((118, 90), (0, 0, 118, 90), f'<g filter="url(#blur4)">{clouds}</g>')


def busy(step, steps):
    """One frame of the busy sign: twelve petals, the bright head one step further."""
    petals = []
    for i in range(12):
        age = (step * 12 / steps - i) % 12 / 12
        near = max(0.0, 1 - age * 1.25)
        red, green, blue = (round(tail + (head - tail) * near ** 1.4)
                            for head, tail in ((158, 214), (86, 208), (44, 200)))
        petals.append(rect(-1.6, -14.6, 3.2, 7.6, f"rgb({red},{green},{blue})", 1.6,
                           f'transform="rotate({i * 30})"'))
    return document((32, 32), (-16, -16, 32, 32), "".join(petals))


def write_all(folder):
    whole = (0, 0, WIDTH, HEIGHT)
    files = {}
    for name, draw in SCENES.items():
        files[name] = document((2048, 701), BANNER, draw())
        files[f"{name}-whole"] = document((640, 289), whole, draw())
    files["palette-2048"] = document((2048, 700), BANNER, palette())
    files["palette-600"] = document((600, 270), whole, palette())
    files.update({name: product(name) for name in PRODUCTS})
    files["slider"] = slider("")
    files["slider-white"] = slider("#fff")
    files["slider_handle"] = slider_handle()
    files["mist"] = mist()
    files.update({f"busy-{step:02}": busy(step, 24) for step in range(24)})
    for name, text in files.items():
        (folder / f"{name}.svg").write_text(text)


if __name__ == "__main__":
    write_all(pathlib.Path(sys.argv[1]))
