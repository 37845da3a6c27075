# SPDX-License-Identifier: MIT
"""The speakers of the family, as SVG: cabinets in one-point perspective with their drivers."""
import random

# Width and height in the unit of the scenes, and the drivers: kind, place of the centre as shares of the front's width
# and height, radius as a share of its shorter side. No two drivers touch.
MODELS = {
    "vc3": (150, 236, [("tweeter", 0.5, 0.225, 0.20), ("cone", 0.5, 0.645, 0.365)]),
    "vc5": (400, 165, [("cone", 0.185, 0.5, 0.375), ("tweeter", 0.5, 0.5, 0.235), ("cone", 0.815, 0.5, 0.375)]),
    "vc7": (150, 430, [("tweeter", 0.5, 0.115, 0.19), ("cone", 0.5, 0.31, 0.29), ("cone", 0.5, 0.60, 0.36)]),
    "vc8": (156, 500, [("tweeter", 0.5, 0.10, 0.18), ("cone", 0.5, 0.255, 0.26), ("cone", 0.5, 0.475, 0.345),
                       ("cone", 0.5, 0.72, 0.345)]),
    "vc9": (168, 560, [("cone", 0.5, 0.087, 0.205), ("tweeter", 0.5, 0.197, 0.135), ("cone", 0.5, 0.307, 0.205),
                       ("cone", 0.5, 0.482, 0.305), ("cone", 0.5, 0.678, 0.305), ("cone", 0.5, 0.874, 0.305)]),
    "vs12": (330, 340, [("cone", 0.5, 0.50, 0.41)]),
}
FLOOR_STANDING = {"vc7", "vc8", "vc9"}
NO_LAMP = {"vc5", "vc9"}  # their drivers leave no room for it


def circle(x, y, r, fill, extra=""):
    return f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{r:.1f}" fill="{fill}" {extra}/>'


def polygon(points, fill, extra=""):
    text = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
    return f'<polygon points="{text}" fill="{fill}" {extra}/>'


def rect(x, y, w, h, fill, r=0, extra=""):
    return f'<rect x="{x:.1f}" y="{y:.1f}" width="{w:.1f}" height="{h:.1f}" rx="{r:.1f}" fill="{fill}" {extra}/>'


def shadow(x, y, rx, ry, fill="url(#shadow)", opacity=1.0):
    return f'<ellipse cx="{x:.1f}" cy="{y:.1f}" rx="{rx:.1f}" ry="{ry:.1f}" fill="{fill}" opacity="{opacity}"/>'


def cone(x, y, r):
    """A woofer or midrange: bezel, rubber surround, hollow aluminium cone, copper dust cap."""
    inner = 0.76 * r
    cap = 0.30 * r
    sheen = "".join(
        f'<path d="M{x:.1f},{y:.1f} L{x + side * inner * 0.92:.1f},{y + side * inner * 0.16:.1f} '
        f'A{inner:.1f},{inner:.1f} 0 0 1 {x + side * inner * 0.40:.1f},{y + side * inner * 0.85:.1f} Z" '
        f'fill="#fff" opacity="{strength}" filter="url(#soft)"/>' for side, strength in ((1, 0.34), (-1, 0.12)))
    return "".join([
        circle(x, y + 0.05 * r, 1.05 * r, "#000", 'opacity="0.35"'),
        circle(x, y, r, "url(#bezel)"),
        circle(x, y, 0.95 * r, "url(#surround)"),
        circle(x, y, inner, "url(#cone)"),
        sheen,
        circle(x, y, inner, "none", f'stroke="#000" stroke-opacity="0.45" stroke-width="{0.03 * r:.1f}"'),
        circle(x + 0.03 * r, y + 0.05 * r, 1.45 * cap, "url(#throat)"),
        circle(x, y, cap, "url(#copper)"),
        f'<ellipse cx="{x - 0.11 * r:.1f}" cy="{y - 0.13 * r:.1f}" rx="{0.09 * r:.1f}" ry="{0.06 * r:.1f}" '
        f'fill="#fff" opacity="0.65" transform="rotate(-40 {x - 0.11 * r:.1f} {y - 0.13 * r:.1f})"/>',
    ])


def tweeter(x, y, r):
    return "".join([
        circle(x, y, r, "url(#bezel)"),
        circle(x, y, 0.94 * r, "url(#waveguide)"),
        circle(x, y, 0.50 * r, "#0d0c0b"),
        circle(x, y, 0.44 * r, "url(#copper)"),
        circle(x, y, 0.34 * r, "url(#cone)"),
        f'<ellipse cx="{x - 0.12 * r:.1f}" cy="{y - 0.13 * r:.1f}" rx="{0.10 * r:.1f}" ry="{0.07 * r:.1f}" '
        f'fill="#fff" opacity="0.8"/>',
    ])


DRIVERS = {"cone": cone, "tweeter": tweeter}


def grain(x, y, w, h, seed, upright=True):
    """Thin streaks of wood grain."""
    rnd = random.Random(seed)
    lines = []
    for _ in range(max(3, int((w if upright else h) / 7))):
        tone = rnd.choice(["#3d2413", "#3d2413", "#e8bd90"])
        width = rnd.uniform(0.6, 2.2)
        bend = rnd.uniform(-4, 4)
        if upright:
            at = x + rnd.uniform(0, w)
            points = [(at, y), (at + bend, y + h / 3), (at - bend, y + 2 * h / 3), (at, y + h)]
        else:
            at = y + rnd.uniform(0, h)
            points = [(x, at), (x + w / 3, at + bend), (x + 2 * w / 3, at - bend), (x + w, at)]
        start, *curve = (f"{px:.1f},{py:.1f}" for px, py in points)
        lines.append(f'<path d="M{start} C{" ".join(curve)}" fill="none" stroke="{tone}" stroke-width="{width:.1f}" '
                     f'opacity="{rnd.uniform(0.08, 0.22):.2f}"/>')
    return "".join(lines)


def box(x, base, w, h, eye, depth, front, side_lit, side_dark, top):
    """The faces of a box behind its front; `eye` is the vanishing point, `depth` the share of the way to it."""
    def back(px, py):
        return px + (eye[0] - px) * depth, py + (eye[1] - py) * depth

    corners = [(x, base - h), (x + w, base - h), (x + w, base), (x, base)]
    far = [back(*corner) for corner in corners]
    parts = []
    if eye[0] > x + w:
        parts.append(polygon([corners[1], far[1], far[2], corners[2]], side_dark))
    if eye[0] < x:
        parts.append(polygon([corners[0], far[0], far[3], corners[3]], side_lit))
    if eye[1] < base - h:
        parts.append(polygon([corners[0], corners[1], far[1], far[0]], top))
    parts.append(rect(x, base - h, w, h, front, 3))
    return "".join(parts)


def cabinet(x, base, w, h, drivers, eye, depth, seed, plinth=False):
    """One speaker, its front's lower left corner at x, base."""
    parts = []
    foot = 0.022 * h if plinth else 0
    if plinth:
        parts.append(box(x - 0.05 * w, base, 1.10 * w, foot, eye, depth * 1.1, "url(#plinth)", "#171514", "#0c0b0a",
                         "#2b2826"))
    bottom = base - foot
    parts.append(box(x, bottom, w, h - foot, eye, depth, "url(#walnut)", "url(#walnut-lit)", "url(#walnut-dark)",
                     "url(#walnut-top)"))
    top = base - h
    parts.append(grain(x, top, w, h - foot, seed, upright=h > w))
    rim = 0.045 * min(w, h)
    parts.append(rect(x + rim, top + rim, w - 2 * rim, h - foot - 2 * rim, "url(#baffle)", 0.06 * min(w, h)))
    parts.append(rect(x + rim, top + rim, w - 2 * rim, h - foot - 2 * rim, "url(#glaze)", 0.06 * min(w, h)))
    parts.append(rect(x, top, w, 2, "#ffe2bd", 1, 'opacity="0.55"'))
    for kind, across, down, size in drivers:
        parts.append(DRIVERS[kind](x + across * w, top + down * (h - foot), size * min(w, h)))
    return "".join(parts)


def speaker(model, x, base, eye=(1024, 420), scale=1.0, depth=0.10):
    """A speaker of the family whose front is centred on x and stands on base."""
    w, h, drivers = MODELS[model]
    w, h = w * scale, h * scale
    left = x - w / 2
    body = cabinet(left, base, w, h, drivers, eye, depth, model, model in FLOOR_STANDING)
    if model in NO_LAMP:
        return body
    return body + circle(x, base - 0.035 * h - 4 * scale, max(1.6, 2.6 * scale), "#fff3da", 'opacity="0.9"')
