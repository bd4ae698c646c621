# SPDX-License-Identifier: MIT
"""A few shapes as SVG. On white, so that the pictures can be read on a dark page too."""
from xml.sax.saxutils import escape


class Picture:
    def __init__(self, width):
        self.width = width
        self.parts = []

    def box(self, x, y, width, height, colour, title):
        self.parts.append(f'<rect x="{x:.1f}" y="{y:.1f}" width="{width:.1f}" height="{height:.1f}" fill="{colour}" '
                          f'stroke="#ffffff" stroke-width="0.8"><title>{escape(title)}</title></rect>')

    def line(self, x1, y1, x2, y2, colour="#000000", width=1.0):
        self.parts.append(f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{colour}" '
                          f'stroke-width="{width}"/>')

    def path(self, points, colour):
        corners = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
        self.parts.append(f'<polyline points="{corners}" fill="none" stroke="{colour}" stroke-width="2.5"/>')
        for x, y in points:
            self.dot(x, y, colour)

    def dot(self, x, y, colour):
        self.parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="4" fill="{colour}"/>')

    def text(self, x, y, text, anchor="start", size=14, bold=False, colour="#222222"):
        weight = ' font-weight="bold"' if bold else ""
        self.parts.append(f'<text x="{x:.1f}" y="{y:.1f}" font-size="{size}" text-anchor="{anchor}" '
                          f'fill="{colour}"{weight}>{escape(text)}</text>')

    def done(self, height):
        return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {self.width} {height:.0f}" '
                f'font-family="sans-serif">\n<rect width="100%" height="100%" fill="#ffffff"/>\n'
                + "\n".join(self.parts) + "\n</svg>\n")
