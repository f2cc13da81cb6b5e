#!/usr/bin/env python3
"""Writes samples/office.dxf, the bundled sample drawing.

The drawing is a small office floor plan (20 m x 12 m, millimetres) saved as an AutoCAD 2000
ASCII DXF with every section a strict reader expects: header, classes, tables, blocks, entities
and objects, with handles and owner handles that agree throughout. It carries one of each thing
the converter has to handle on a real plan: double-line walls, closed room outlines with room
numbers inside, door blocks with attributes, a pattern hatch and a solid hatch, a linear
dimension with its anonymous block, a dashed grid, a hyperlink, a room-label block, field texts
and a paper-space layout with a title block and a scaled viewport.

Only the standard library is used, and the output is the same bytes on every run.

    python3 tools/make_sample_dxf.py              rewrite samples/office.dxf
    python3 tools/make_sample_dxf.py -o -         write the drawing to standard output
    python3 tools/make_sample_dxf.py -o plan.dxf  write it elsewhere
    python3 tools/make_sample_dxf.py --check      exit 1 when samples/office.dxf is out of date
"""

import argparse
import math
import pathlib
import sys

REPO_ROOT = pathlib.Path(__file__).resolve().parent.parent
DEFAULT_OUTPUT = REPO_ROOT / "samples" / "office.dxf"

# ---------------------------------------------------------------------------------------------
# The plan, in millimetres. The building's outer corner is the origin; exterior walls are 300
# thick, partitions 100. Everything else is placed relative to these rooms.
# ---------------------------------------------------------------------------------------------

BUILDING = (0.0, 0.0, 20000.0, 12000.0)

# number, name, clear outline (x0, y0, x1, y1), label point
ROOMS = [
    ("100", "Corridor", (300.0, 5100.0, 19700.0, 6800.0), (10000.0, 5950.0)),
    ("101", "Office", (300.0, 300.0, 6000.0, 5000.0), (3150.0, 2650.0)),
    ("102", "Office", (6100.0, 300.0, 11700.0, 5000.0), (8900.0, 2650.0)),
    ("103", "Meeting room", (11800.0, 300.0, 19700.0, 5000.0), (15750.0, 4250.0)),
    ("104", "Office", (300.0, 6900.0, 9000.0, 11700.0), (4650.0, 9300.0)),
    ("105", "Kitchen", (9100.0, 6900.0, 15500.0, 11700.0), (12300.0, 9300.0)),
    ("106", "WC", (15600.0, 6900.0, 19700.0, 11700.0), (17650.0, 9300.0)),
]
MEETING_ROOM = "103"
WC_ROOM = "106"

DOOR_WIDTH = 900.0
DOOR_LEAF = 40.0

# number, hinge point, rotation, y scale (-1 mirrors the swing), wall opening (x0, y0, x1, y1)
DOORS = [
    ("D100", (300.0, 6400.0), 270.0, 1.0, (0.0, 5500.0, 300.0, 6400.0)),
    ("D101", (5700.0, 5000.0), 180.0, 1.0, (4800.0, 5000.0, 5700.0, 5100.0)),
    ("D102", (6400.0, 5000.0), 0.0, -1.0, (6400.0, 5000.0, 7300.0, 5100.0)),
    ("D103", (13200.0, 5000.0), 180.0, 1.0, (12300.0, 5000.0, 13200.0, 5100.0)),
    ("D104", (7700.0, 6900.0), 0.0, 1.0, (7700.0, 6800.0, 8600.0, 6900.0)),
    ("D105", (9600.0, 6900.0), 0.0, 1.0, (9600.0, 6800.0, 10500.0, 6900.0)),
    ("D106", (15900.0, 6900.0), 0.0, 1.0, (15900.0, 6800.0, 16800.0, 6900.0)),
]
DOOR_ATTRIB_OFFSET = (450.0, -450.0)  # door number, in block units: beyond the wall, mid-opening
DOOR_TEXT_HEIGHT = 200.0

# Structural grid on the wall centre lines: name, position
GRID_COLUMNS = [("A", 150.0), ("B", 6050.0), ("C", 11750.0), ("D", 19850.0)]
GRID_ROWS = [("1", 150.0), ("2", 5050.0), ("3", 6850.0), ("4", 11850.0)]
GRID_OVERRUN = 300.0
GRID_BUBBLE_RADIUS = 300.0

ROOM_NUMBER_HEIGHT = 350.0
ROOM_NAME_HEIGHT = 250.0

# Linear dimension of the building's width, drawn at the plot scale 1:100.
DIM_SCALE = 100.0
DIM_ARROW = 2.5
DIM_TEXT = 2.5
DIM_EXT_OFFSET = 0.625
DIM_EXT_BEYOND = 1.25
DIM_GAP = 0.625
DIM_LINE_Y = -1000.0

HATCH_SCALE = 50.0
ANSI31_SPACING = 3.175  # acadiso.pat: 45, 0,0, 0,3.175

# Layout1: ISO A3 landscape in millimetres, model shown at 1:100.
PAPER = (420.0, 297.0)
FRAME = (10.0, 10.0, 410.0, 287.0)
TITLE_BLOCK = (250.0, 10.0, 410.0, 60.0)
VIEWPORT_BOX = (15.0, 70.0, 255.0, 280.0)
VIEWPORT_SCALE = 100.0

# name, colour, linetype, lineweight (1/100 mm, -3 default), plotted
LAYERS = [
    ("0", 7, "Continuous", -3, True),
    ("WALLS", 7, "Continuous", 50, True),
    ("ROOMS", 3, "Continuous", -3, True),
    ("ROOM_NUMBERS", 2, "Continuous", -3, True),
    ("DOORS", 4, "Continuous", 25, True),
    ("FURNITURE", 8, "Continuous", 18, True),
    ("HATCH", 8, "Continuous", 13, True),
    ("DIMENSIONS", 1, "Continuous", 18, True),
    ("GRID", 6, "DASHED", 13, True),
    ("TITLEBLOCK", 7, "Continuous", -3, True),
    ("VIEWPORTS", 8, "Continuous", -3, False),
    ("Defpoints", 7, "Continuous", -3, False),
]

APP_IDS = ["ACAD", "PE_URL"]


# ---------------------------------------------------------------------------------------------
# Tags and handles
# ---------------------------------------------------------------------------------------------

def format_real(value):
    """Shortest round-trip text of a real, always with a decimal point, never '-0.0'."""
    value = round(float(value), 9)
    if value == 0.0:
        value = 0.0
    text = repr(value)
    if "e" in text or "E" in text:
        text = format(value, ".9f").rstrip("0")
        if text.endswith("."):
            text += "0"
    return text


def value_kind(code):
    """'int16', 'int32' or 'text'/'real' for a group code, as AutoCAD pads them."""
    if 60 <= code <= 79 or 170 <= code <= 179 or 270 <= code <= 289 or 370 <= code <= 389:
        return "int16"
    if 1060 <= code <= 1070:
        return "int16"
    if 90 <= code <= 99 or code == 1071:
        return "int32"
    if 10 <= code <= 59 or 110 <= code <= 149 or 210 <= code <= 239 or 460 <= code <= 469:
        return "real"
    if 1010 <= code <= 1059:
        return "real"
    return "text"


def format_tag(code, value):
    kind = value_kind(code)
    if kind == "int16":
        text = "%6d" % value
    elif kind == "int32":
        text = "%9d" % value
    elif kind == "real":
        text = format_real(value)
    else:
        text = str(value)
    return "%3d\n%s\n" % (code, text)


class Handles:
    """Hands out handles in creation order; the table heads keep AutoCAD's fixed handles."""

    FIXED = {"BLOCK_RECORD": "1", "LAYER": "2", "STYLE": "3", "LTYPE": "5", "VIEW": "6",
             "UCS": "7", "VPORT": "8", "APPID": "9", "DIMSTYLE": "A", "ROOT": "C",
             "ACAD_GROUP": "D"}

    def __init__(self):
        self.next_value = 0x10

    def new(self):
        handle = "%X" % self.next_value
        self.next_value += 1
        return handle

    def seed(self):
        return "%X" % self.next_value


def point_tags(base_code, point):
    return [(base_code, point[0]), (base_code + 10, point[1]),
            (base_code + 20, point[2] if len(point) > 2 else 0.0)]


def text_width(height, text):
    """A rough width of a text in a proportional font: enough for extents and start points."""
    return 0.6 * height * len(text)


def centred_start(at, height, text):
    """The first alignment point a middle-centred text would have, as AutoCAD stores it."""
    return (at[0] - text_width(height, text) / 2.0, at[1] - height / 2.0)


# ---------------------------------------------------------------------------------------------
# Extents
# ---------------------------------------------------------------------------------------------

class Extents:
    def __init__(self):
        self.low = [math.inf, math.inf]
        self.high = [-math.inf, -math.inf]

    def add(self, point):
        for i in (0, 1):
            self.low[i] = min(self.low[i], point[i])
            self.high[i] = max(self.high[i], point[i])

    def add_box(self, x0, y0, x1, y1):
        self.add((x0, y0))
        self.add((x1, y1))

    def add_circle(self, center, radius):
        self.add_box(center[0] - radius, center[1] - radius, center[0] + radius, center[1] + radius)

    def add_text(self, point, height, text, centred):
        x0, y0 = centred_start(point, height, text) if centred else point[:2]
        self.add_box(x0, y0, x0 + text_width(height, text), y0 + height)

    def center(self):
        return ((self.low[0] + self.high[0]) / 2.0, (self.low[1] + self.high[1]) / 2.0)


# ---------------------------------------------------------------------------------------------
# Entities. Each builder returns the tags of one entity; `head` writes the common part.
# ---------------------------------------------------------------------------------------------

class EntityWriter:
    """Builds entity tags with fresh handles for one owner (a block record)."""

    def __init__(self, handles, owner, paper_space=False, extents=None):
        self.handles = handles
        self.owner = owner
        self.paper_space = paper_space
        self.extents = extents if extents is not None else Extents()
        self.entities = []

    def head(self, kind, layer, color=None, lineweight=None, handle=None, linetype=None):
        handle = handle or self.handles.new()
        tags = [(0, kind), (5, handle), (330, self.owner), (100, "AcDbEntity")]
        if self.paper_space:
            tags.append((67, 1))
        tags.append((8, layer))
        if linetype is not None:
            tags.append((6, linetype))
        if color is not None:
            tags.append((62, color))
        if lineweight is not None:
            tags.append((370, lineweight))
        return handle, tags

    def emit(self, tags):
        self.entities.append(tags)
        return tags

    def line(self, layer, start, end, color=None, lineweight=None):
        _, tags = self.head("LINE", layer, color, lineweight)
        tags += [(100, "AcDbLine")] + point_tags(10, start) + point_tags(11, end)
        self.extents.add(start)
        self.extents.add(end)
        return self.emit(tags)

    def point(self, layer, at, color=None):
        _, tags = self.head("POINT", layer, color)
        tags += [(100, "AcDbPoint")] + point_tags(10, at)
        return self.emit(tags)

    def circle(self, layer, center, radius, linetype=None):
        _, tags = self.head("CIRCLE", layer, linetype=linetype)
        tags += [(100, "AcDbCircle")] + point_tags(10, center) + [(40, radius)]
        self.extents.add_circle(center, radius)
        return self.emit(tags)

    def arc(self, layer, center, radius, start_angle, end_angle):
        _, tags = self.head("ARC", layer)
        tags += [(100, "AcDbCircle")] + point_tags(10, center) + [(40, radius)]
        tags += [(100, "AcDbArc"), (50, start_angle), (51, end_angle)]
        self.extents.add_circle(center, radius)
        return self.emit(tags)

    def ellipse(self, layer, center, major_axis, ratio):
        _, tags = self.head("ELLIPSE", layer)
        tags += [(100, "AcDbEllipse")] + point_tags(10, center) + point_tags(11, major_axis)
        tags += [(210, 0.0), (220, 0.0), (230, 1.0), (40, ratio), (41, 0.0), (42, 2.0 * math.pi)]
        half = math.hypot(*major_axis)
        self.extents.add_circle(center, half)
        return self.emit(tags)

    def lwpolyline(self, layer, vertices, closed, width=None, color=None, xdata=None):
        """vertices: (x, y) or (x, y, bulge)."""
        _, tags = self.head("LWPOLYLINE", layer, color)
        tags += [(100, "AcDbPolyline"), (90, len(vertices)), (70, 1 if closed else 0),
                 (43, width if width is not None else 0.0)]
        for vertex in vertices:
            tags += [(10, vertex[0]), (20, vertex[1])]
            if len(vertex) > 2 and vertex[2] != 0.0:
                tags.append((42, vertex[2]))
            self.extents.add(vertex)
        tags += xdata or []
        return self.emit(tags)

    def solid(self, layer, corners, color=None):
        _, tags = self.head("SOLID", layer, color)
        tags.append((100, "AcDbTrace"))
        for index, corner in enumerate(corners):
            tags += point_tags(10 + index, corner)
            self.extents.add(corner)
        return self.emit(tags)

    def text(self, layer, at, height, content, centred=False):
        """A single-line text; centred texts use middle-centre justification."""
        _, tags = self.head("TEXT", layer)
        first = centred_start(at, height, content) if centred else at
        tags += [(100, "AcDbText")] + point_tags(10, first) + [(40, height), (1, content)]
        if centred:
            tags += [(72, 1)] + point_tags(11, at)
        tags.append((100, "AcDbText"))
        if centred:
            tags.append((73, 2))
        self.extents.add_text(at, height, content, centred)
        return self.emit(tags)

    def mtext(self, layer, at, height, content, width=0.0, color=None):
        """A multi-line text attached at its middle centre."""
        _, tags = self.head("MTEXT", layer, color)
        tags += [(100, "AcDbMText")] + point_tags(10, at)
        tags += [(40, height), (41, width), (71, 5), (72, 1), (1, content),
                 (7, "Standard"), (73, 1), (44, 1.0)]
        self.extents.add_text(at, height, content, True)
        return self.emit(tags)


def attribute_tags(handle, owner, layer, at, height, tag, value, centred, paper_space=False):
    """An upright ATTRIB of a block reference, left or middle-centre justified."""
    first = centred_start(at, height, value) if centred else at
    tags = [(0, "ATTRIB"), (5, handle), (330, owner), (100, "AcDbEntity")]
    if paper_space:
        tags.append((67, 1))
    tags += [(8, layer), (100, "AcDbText")] + point_tags(10, first) + [(40, height), (1, value)]
    if centred:
        tags += [(72, 1)] + point_tags(11, at)
    tags += [(100, "AcDbAttribute"), (2, tag), (70, 0)]
    if centred:
        tags.append((74, 2))
    return tags


def attdef_tags(handle, owner, at, height, tag, prompt, default, centred):
    tags = [(0, "ATTDEF"), (5, handle), (330, owner), (100, "AcDbEntity"), (8, "0"),
            (100, "AcDbText")]
    first = centred_start(at, height, default) if centred else at
    tags += point_tags(10, first) + [(40, height), (1, default)]
    if centred:
        tags += [(72, 1)] + point_tags(11, at)
    tags += [(100, "AcDbAttributeDefinition"), (3, prompt), (2, tag), (70, 0)]
    if centred:
        tags.append((74, 2))
    return tags


def transform(point, insert, rotation, scale):
    """Block point to world: scale, rotate, move."""
    x, y = point[0] * scale[0], point[1] * scale[1]
    angle = math.radians(rotation)
    cos, sin = math.cos(angle), math.sin(angle)
    return (insert[0] + x * cos - y * sin, insert[1] + x * sin + y * cos)


def insert_with_attributes(writer, layer, block, at, attributes, centred, rotation=0.0,
                           scale=(1.0, 1.0)):
    """INSERT, its ATTRIBs and the SEQEND. attributes: (tag, value, world point, height)."""
    handle, tags = writer.head("INSERT", layer)
    tags += [(100, "AcDbBlockReference"), (66, 1), (2, block)] + point_tags(10, at)
    if scale[0] != 1.0:
        tags.append((41, scale[0]))
    if scale[1] != 1.0:
        tags.append((42, scale[1]))
    if rotation:
        tags.append((50, rotation))
    writer.emit(tags)
    for tag, value, point, height in attributes:
        writer.emit(attribute_tags(writer.handles.new(), handle, layer, point, height, tag, value,
                                   centred, writer.paper_space))
        writer.extents.add_text(point, height, value, centred)
    seqend = [(0, "SEQEND"), (5, writer.handles.new()), (330, handle), (100, "AcDbEntity")]
    if writer.paper_space:
        seqend.append((67, 1))
    seqend.append((8, layer))
    writer.emit(seqend)
    return handle


def hatch_tags(writer, layer, boundary, pattern, color=None):
    """HATCH with one closed polyline boundary; pattern None means a solid fill."""
    _, tags = writer.head("HATCH", layer, color)
    tags += [(100, "AcDbHatch"), (10, 0.0), (20, 0.0), (30, 0.0), (210, 0.0), (220, 0.0),
             (230, 1.0), (2, pattern or "SOLID"), (70, 1 if pattern is None else 0), (71, 0),
             (91, 1), (92, 3), (72, 0), (73, 1), (93, len(boundary))]
    for vertex in boundary:
        tags += [(10, vertex[0]), (20, vertex[1])]
    tags += [(97, 0), (75, 0), (76, 1)]
    if pattern == "ANSI31":
        spacing = ANSI31_SPACING * HATCH_SCALE
        offset = spacing * math.sqrt(0.5)  # the line offset (0, spacing) turned by 45 degrees
        tags += [(52, 0.0), (41, HATCH_SCALE), (77, 0), (78, 1), (53, 45.0), (43, 0.0),
                 (44, 0.0), (45, -offset), (46, offset), (79, 0)]
    xs, ys = [v[0] for v in boundary], [v[1] for v in boundary]
    seed = ((min(xs) + max(xs)) / 2.0, (min(ys) + max(ys)) / 2.0)
    tags += [(98, 1), (10, seed[0]), (20, seed[1])]
    return writer.emit(tags)


# ---------------------------------------------------------------------------------------------
# Model space content
# ---------------------------------------------------------------------------------------------

def rectangle(box):
    x0, y0, x1, y1 = box
    return [(x0, y0), (x1, y0), (x1, y1), (x0, y1)]


def rectangle_edges(box):
    corners = rectangle(box)
    return [(corners[i], corners[(i + 1) % 4]) for i in range(4)]


def cut_segment(segment, opening):
    """The parts of an axis-parallel segment outside a wall opening it runs along."""
    (ax, ay), (bx, by) = segment
    x0, y0, x1, y1 = opening
    if ay == by and y0 <= ay <= y1:
        low, high = min(ax, bx), max(ax, bx)
        if high <= x0 or low >= x1:
            return [segment]
        parts = []
        if low < x0:
            parts.append(((low, ay), (x0, ay)))
        if high > x1:
            parts.append(((x1, ay), (high, ay)))
        return parts
    if ax == bx and x0 <= ax <= x1:
        low, high = min(ay, by), max(ay, by)
        if high <= y0 or low >= y1:
            return [segment]
        parts = []
        if low < y0:
            parts.append(((ax, low), (ax, y0)))
        if high > y1:
            parts.append(((ax, y1), (ax, high)))
        return parts
    return [segment]


def wall_lines():
    """Wall faces: the building outline and every room outline, opened at the doors, with a
    jamb line closing the wall at each side of an opening."""
    segments = rectangle_edges(BUILDING)
    for _, _, box, _ in ROOMS:
        segments += rectangle_edges(box)
    jambs = []
    for _, _, _, _, opening in DOORS:
        cut = []
        for segment in segments:
            cut += cut_segment(segment, opening)
        segments = cut
        x0, y0, x1, y1 = opening
        if x1 - x0 > y1 - y0:
            jambs += [((x0, y0), (x0, y1)), ((x1, y0), (x1, y1))]
        else:
            jambs += [((x0, y0), (x1, y0)), ((x0, y1), (x1, y1))]
    return segments + jambs


def room_area(box):
    return (box[2] - box[0]) * (box[3] - box[1]) / 1.0e6


def hyperlink_xdata(url, description):
    return [(1001, "PE_URL"), (1000, url), (1002, "{"), (1000, description), (1002, "}")]


def add_walls(writer):
    for start, end in wall_lines():
        writer.line("WALLS", start, end)


def add_rooms(writer):
    for number, name, box, label in ROOMS:
        xdata = None
        if number == MEETING_ROOM:
            xdata = hyperlink_xdata("rooms/%s.html" % number, "%s %s bookings" % (name, number))
        writer.lwpolyline("ROOMS", rectangle(box), True, xdata=xdata)
    for number, name, box, label in ROOMS:
        writer.text("ROOM_NUMBERS", label, ROOM_NUMBER_HEIGHT, number, centred=True)
        if number == MEETING_ROOM:
            writer.mtext("ROOM_NUMBERS", (label[0], label[1] - 750.0), ROOM_NAME_HEIGHT,
                         "{\\fArial|b1|i0|c0|p34;Meeting room}\\P\\H0.8x;12 seats", width=4000.0)


def add_doors(writer):
    for number, hinge, rotation, y_scale, _ in DOORS:
        scale = (1.0, y_scale)
        attribute_at = transform(DOOR_ATTRIB_OFFSET, hinge, rotation, scale)
        insert_with_attributes(writer, "DOORS", "DOOR", hinge,
                               [("DOORNO", number, attribute_at, DOOR_TEXT_HEIGHT)], True,
                               rotation=rotation, scale=scale)
        writer.extents.add_circle(hinge, DOOR_WIDTH)


def add_room_label(writer):
    """The viewer's room-label block in office 104, beside its plain room number."""
    at = (800.0, 11300.0)
    attributes = [("1FL", "104", (at[0] + 100.0, at[1] - 300.0), 250.0),
                  ("2SR", "Office", (at[0] + 100.0, at[1] - 650.0), 200.0),
                  ("3NO", "2", (at[0] + 100.0, at[1] - 950.0), 200.0)]
    insert_with_attributes(writer, "ROOM_NUMBERS", "TADS_Mark_RoomLabel", at, attributes, False)
    writer.extents.add_box(at[0], at[1] - 1150.0, at[0] + 1800.0, at[1])


def add_furniture(writer):
    desks = [(900.0, 800.0), (3500.0, 800.0), (6900.0, 800.0), (9300.0, 800.0),
             (4500.0, 10400.0), (6800.0, 10400.0)]
    for x, y in desks:
        writer.lwpolyline("FURNITURE", rectangle((x, y, x + 1600.0, y + 800.0)), True)
    writer.ellipse("FURNITURE", (15750.0, 1900.0), (2200.0, 0.0), 0.4)
    writer.lwpolyline("FURNITURE", [(9100.0, 11100.0), (14000.0, 11100.0), (14000.0, 11700.0)],
                      False)
    # A rounded sink: two half circles joined by straight sides.
    writer.lwpolyline("FURNITURE", [(10700.0, 11250.0), (11300.0, 11250.0, 1.0),
                                    (11300.0, 11550.0), (10700.0, 11550.0, 1.0)], True)
    writer.circle("FURNITURE", (10800.0, 8800.0), 600.0)


def add_wc_hatch(writer):
    box = next(room[2] for room in ROOMS if room[0] == WC_ROOM)
    hatch_tags(writer, "HATCH", rectangle(box), "ANSI31")


def add_grid(writer):
    x0, y0, x1, y1 = BUILDING
    for name, x in GRID_COLUMNS:
        top = y1 + GRID_OVERRUN + 2.0 * GRID_BUBBLE_RADIUS
        writer.line("GRID", (x, y0 - GRID_OVERRUN), (x, top))
        bubble = (x, top + GRID_BUBBLE_RADIUS)
        writer.circle("GRID", bubble, GRID_BUBBLE_RADIUS, linetype="Continuous")
        writer.text("GRID", bubble, GRID_BUBBLE_RADIUS, name, centred=True)
    for name, y in GRID_ROWS:
        left = x0 - GRID_OVERRUN - 2.0 * GRID_BUBBLE_RADIUS
        writer.line("GRID", (left, y), (x1 + GRID_OVERRUN, y))
        bubble = (left - GRID_BUBBLE_RADIUS, y)
        writer.circle("GRID", bubble, GRID_BUBBLE_RADIUS, linetype="Continuous")
        writer.text("GRID", bubble, GRID_BUBBLE_RADIUS, name, centred=True)


class Dimension:
    """The building's overall width: definition points and the geometry of its block."""

    def __init__(self):
        x0, y0, x1, _ = BUILDING
        self.first = (x0, y0)
        self.second = (x1, y0)
        self.line_point = (x1, DIM_LINE_Y)
        self.measurement = x1 - x0
        self.text = "%d" % round(self.measurement)
        text_y = DIM_LINE_Y + (DIM_GAP + DIM_TEXT / 2.0) * DIM_SCALE
        self.text_point = ((x0 + x1) / 2.0, text_y)

    def block_geometry(self, writer):
        """Lines, arrowheads, text and definition points as AutoCAD writes them in *D1."""
        arrow = DIM_ARROW * DIM_SCALE
        half = arrow / 6.0
        y = DIM_LINE_Y
        for x, base_y in ((self.first[0], self.first[1]), (self.second[0], self.second[1])):
            writer.line("0", (x, base_y - DIM_EXT_OFFSET * DIM_SCALE),
                        (x, y - DIM_EXT_BEYOND * DIM_SCALE), color=0, lineweight=-2)
        left, right = self.first[0], self.second[0]
        writer.line("0", (left + arrow, y), (right - arrow, y), color=0, lineweight=-2)
        for tip, direction in ((left, 1.0), (right, -1.0)):
            base = tip + direction * arrow
            writer.solid("0", [(base, y + half), (base, y - half), (tip, y), (tip, y)], color=0)
        writer.mtext("0", self.text_point, DIM_TEXT * DIM_SCALE, self.text, color=0)
        for at in (self.first, self.second, self.line_point):
            writer.point("Defpoints", at, color=0)

    def entity(self, writer, block_name):
        _, tags = writer.head("DIMENSION", "DIMENSIONS")
        tags += [(100, "AcDbDimension"), (2, block_name)] + point_tags(10, self.line_point)
        tags += point_tags(11, self.text_point)
        tags += [(70, 32), (71, 5), (42, self.measurement), (3, "Standard"),
                 (100, "AcDbAlignedDimension")]
        tags += point_tags(13, self.first) + point_tags(14, self.second)
        tags += [(50, 0.0), (100, "AcDbRotatedDimension")]
        writer.extents.add_box(self.first[0], DIM_LINE_Y - DIM_EXT_BEYOND * DIM_SCALE,
                               self.second[0], self.text_point[1] + DIM_TEXT * DIM_SCALE)
        return writer.emit(tags)


# ---------------------------------------------------------------------------------------------
# Paper space content
# ---------------------------------------------------------------------------------------------

def viewport_tags(writer, handle, layer, center, size, view_center, view_height, number,
                  flags):
    _, tags = writer.head("VIEWPORT", layer, handle=handle)
    tags += [(100, "AcDbViewport")] + point_tags(10, center)
    tags += [(40, size[0]), (41, size[1]), (68, number), (69, number)]
    tags += [(12, view_center[0]), (22, view_center[1]), (13, 0.0), (23, 0.0), (14, 10.0),
             (24, 10.0), (15, 10.0), (25, 10.0), (16, 0.0), (26, 0.0), (36, 1.0), (17, 0.0),
             (27, 0.0), (37, 0.0), (42, 50.0), (43, 0.0), (44, 0.0), (45, view_height),
             (50, 0.0), (51, 0.0), (72, 1000), (90, flags), (1, ""), (281, 0), (71, 1),
             (74, 0), (110, 0.0), (120, 0.0), (130, 0.0), (111, 1.0), (121, 0.0), (131, 0.0),
             (112, 0.0), (122, 1.0), (132, 0.0), (79, 0), (146, 0.0)]
    return writer.emit(tags)


def add_title_block(writer, total_area):
    writer.lwpolyline("TITLEBLOCK", rectangle(FRAME), True, width=0.5)
    x0, y0, x1, y1 = TITLE_BLOCK
    writer.lwpolyline("TITLEBLOCK", rectangle(TITLE_BLOCK), True)
    writer.line("TITLEBLOCK", (x0, 35.0), (x1, 35.0))
    writer.line("TITLEBLOCK", (330.0, y0), (330.0, 35.0))
    writer.text("TITLEBLOCK", (255.0, 46.0), 5.0, "Office floor plan, level 1")
    writer.text("TITLEBLOCK", (255.0, 39.0), 2.5, "Draftmill dm2020 sample drawing")
    hatch_tags(writer, "TITLEBLOCK", rectangle((392.0, 40.0, 404.0, 52.0)), None, color=1)
    writer.text("TITLEBLOCK", (255.0, 27.0), 3.0, "Scale 1:100")
    writer.text("TITLEBLOCK", (255.0, 20.0), 2.5,
                "Net floor area %.2f m\\U+00B2" % total_area)
    writer.text("TITLEBLOCK", (255.0, 13.0), 2.5, "Drawing no. DM-OFFICE-01")
    writer.text("TITLEBLOCK", (335.0, 30.0), 2.0, "Date")
    writer.text("TITLEBLOCK", (335.0, 24.0), 3.0, "$$$sysdate$$$")
    writer.text("TITLEBLOCK", (335.0, 18.0), 2.0, "Drawn by")
    writer.text("TITLEBLOCK", (335.0, 12.0), 3.0, "%%%username%%%")


def add_room_schedule(writer):
    x, y = 265.0, 272.0
    writer.text("TITLEBLOCK", (x, y), 4.0, "ROOM SCHEDULE")
    for number, name, box, _ in ROOMS:
        y -= 7.0
        writer.text("TITLEBLOCK", (x, y), 2.5,
                    "%s %s, %.2f m\\U+00B2" % (number, name, room_area(box)))


# ---------------------------------------------------------------------------------------------
# The document
# ---------------------------------------------------------------------------------------------

class Document:
    """Allocates every handle, builds the content, then writes the sections in order."""

    def __init__(self):
        self.handles = Handles()
        h = self.handles
        fixed = Handles.FIXED
        self.table_heads = dict(fixed)
        self.ltypes = {name: h.new() for name in ("ByBlock", "ByLayer", "Continuous", "DASHED")}
        self.layers = {layer[0]: h.new() for layer in LAYERS}
        self.style = h.new()
        self.appids = {name: h.new() for name in APP_IDS}
        self.dimstyle = h.new()
        self.vport = h.new()
        self.view = h.new()
        self.block_names = ["*Model_Space", "*Paper_Space", "DOOR", "TADS_Mark_RoomLabel", "*D1"]
        self.block_records = {name: h.new() for name in self.block_names}
        self.block_ends = {name: (h.new(), h.new()) for name in self.block_names}
        self.dictionaries = {name: h.new() for name in
                             ("ACAD_LAYOUT", "ACAD_MLINESTYLE", "ACAD_PLOTSETTINGS",
                              "ACAD_PLOTSTYLENAME")}
        self.placeholder = h.new()
        self.mlinestyle = h.new()
        self.layouts = {"Model": h.new(), "Layout1": h.new()}
        self.paper_viewport = h.new()
        self.model_viewport = h.new()

        self.model_extents = Extents()
        self.block_content = {}
        self.build_blocks()
        self.model = EntityWriter(h, self.block_records["*Model_Space"],
                                  extents=self.model_extents)
        self.build_model()
        self.paper = EntityWriter(h, self.block_records["*Paper_Space"], paper_space=True)
        self.build_paper()

    # -- content --------------------------------------------------------------------------

    def build_blocks(self):
        h = self.handles
        door = EntityWriter(h, self.block_records["DOOR"])
        door.lwpolyline("0", rectangle((0.0, 0.0, DOOR_LEAF, DOOR_WIDTH)), True)
        door.arc("0", (0.0, 0.0), DOOR_WIDTH, 0.0, 90.0)
        door.emit(attdef_tags(h.new(), self.block_records["DOOR"], DOOR_ATTRIB_OFFSET,
                              DOOR_TEXT_HEIGHT, "DOORNO", "Door number", "D000", True))
        self.block_content["DOOR"] = door.entities

        label = EntityWriter(h, self.block_records["TADS_Mark_RoomLabel"])
        label.lwpolyline("0", rectangle((0.0, -1150.0, 1800.0, 0.0)), True)
        owner = self.block_records["TADS_Mark_RoomLabel"]
        for tag, prompt, default, at, height in (
                ("1FL", "Room number", "000", (100.0, -300.0), 250.0),
                ("2SR", "Room use", "Room", (100.0, -650.0), 200.0),
                ("3NO", "Occupants", "0", (100.0, -950.0), 200.0)):
            label.emit(attdef_tags(h.new(), owner, at, height, tag, prompt, default, False))
        self.block_content["TADS_Mark_RoomLabel"] = label.entities

        self.dimension = Dimension()
        dim_block = EntityWriter(h, self.block_records["*D1"])
        self.dimension.block_geometry(dim_block)
        self.block_content["*D1"] = dim_block.entities

    def build_model(self):
        writer = self.model
        add_walls(writer)
        add_rooms(writer)
        add_doors(writer)
        add_room_label(writer)
        add_furniture(writer)
        add_wc_hatch(writer)
        self.dimension.entity(writer, "*D1")
        add_grid(writer)

    def build_paper(self):
        writer = self.paper
        width, height = PAPER
        viewport_tags(writer, self.paper_viewport, "0", (width / 2.0, height / 2.0),
                      (width * 1.15, height * 1.15), (width / 2.0, height / 2.0),
                      height * 1.15, 1, 32800)
        x0, y0, x1, y1 = VIEWPORT_BOX
        self.viewport_center = ((x0 + x1) / 2.0, (y0 + y1) / 2.0)
        viewport_tags(writer, self.model_viewport, "VIEWPORTS", self.viewport_center,
                      (x1 - x0, y1 - y0), self.model_extents.center(),
                      (y1 - y0) * VIEWPORT_SCALE, 2, 32800 | 16384)
        total = sum(room_area(room[2]) for room in ROOMS)
        add_title_block(writer, total)
        add_room_schedule(writer)
        writer.extents.add_box(*VIEWPORT_BOX)

    # -- sections -------------------------------------------------------------------------

    def header(self):
        ext, pext = self.model_extents, self.paper.extents
        tags = []

        def var(name, *values):
            tags.append((9, name))
            tags.extend(values)

        var("$ACADVER", (1, "AC1015"))
        var("$ACADMAINTVER", (70, 20))
        var("$DWGCODEPAGE", (3, "ANSI_1252"))
        var("$INSBASE", (10, 0.0), (20, 0.0), (30, 0.0))
        var("$EXTMIN", (10, ext.low[0]), (20, ext.low[1]), (30, 0.0))
        var("$EXTMAX", (10, ext.high[0]), (20, ext.high[1]), (30, 0.0))
        var("$LIMMIN", (10, 0.0), (20, 0.0))
        var("$LIMMAX", (10, PAPER[0] * VIEWPORT_SCALE), (20, PAPER[1] * VIEWPORT_SCALE))
        var("$ORTHOMODE", (70, 0))
        var("$REGENMODE", (70, 1))
        var("$FILLMODE", (70, 1))
        var("$QTEXTMODE", (70, 0))
        var("$MIRRTEXT", (70, 0))
        var("$LTSCALE", (40, 50.0))
        var("$ATTMODE", (70, 1))
        var("$TEXTSIZE", (40, ROOM_NAME_HEIGHT))
        var("$TRACEWID", (40, 1.0))
        var("$TEXTSTYLE", (7, "Standard"))
        var("$CLAYER", (8, "0"))
        var("$CELTYPE", (6, "ByLayer"))
        var("$CECOLOR", (62, 256))
        var("$CELTSCALE", (40, 1.0))
        var("$DISPSILH", (70, 0))
        var("$DIMSCALE", (40, DIM_SCALE))
        var("$DIMASZ", (40, DIM_ARROW))
        var("$DIMEXO", (40, DIM_EXT_OFFSET))
        var("$DIMDLI", (40, 3.75))
        var("$DIMEXE", (40, DIM_EXT_BEYOND))
        var("$DIMTXT", (40, DIM_TEXT))
        var("$DIMCEN", (40, 2.5))
        var("$DIMTIH", (70, 0))
        var("$DIMTOH", (70, 0))
        var("$DIMTAD", (70, 1))
        var("$DIMZIN", (70, 8))
        var("$DIMBLK", (1, ""))
        var("$DIMASO", (70, 1))
        var("$DIMTOFL", (70, 1))
        var("$DIMSTYLE", (2, "Standard"))
        var("$DIMGAP", (40, DIM_GAP))
        var("$DIMDEC", (70, 0))
        var("$DIMTXSTY", (7, "Standard"))
        var("$DIMDSEP", (70, 46))
        var("$DIMATFIT", (70, 3))
        var("$DIMLUNIT", (70, 2))
        var("$DIMLWD", (70, -2))
        var("$DIMLWE", (70, -2))
        var("$LUNITS", (70, 2))
        var("$LUPREC", (70, 0))
        var("$AUNITS", (70, 0))
        var("$AUPREC", (70, 0))
        var("$MENU", (1, "."))
        var("$ELEVATION", (40, 0.0))
        var("$THICKNESS", (40, 0.0))
        var("$LIMCHECK", (70, 0))
        var("$TDCREATE", (40, 2459000.5))
        var("$TDUPDATE", (40, 2459000.5))
        var("$ANGBASE", (50, 0.0))
        var("$ANGDIR", (70, 0))
        var("$PDMODE", (70, 0))
        var("$PDSIZE", (40, 0.0))
        var("$PLINEWID", (40, 0.0))
        var("$HANDSEED", (5, self.handles.seed()))
        var("$UCSBASE", (2, ""))
        var("$UCSNAME", (2, ""))
        var("$UCSORG", (10, 0.0), (20, 0.0), (30, 0.0))
        var("$UCSXDIR", (10, 1.0), (20, 0.0), (30, 0.0))
        var("$UCSYDIR", (10, 0.0), (20, 1.0), (30, 0.0))
        var("$WORLDVIEW", (70, 1))
        var("$TILEMODE", (70, 1))
        var("$MAXACTVP", (70, 64))
        var("$PINSBASE", (10, 0.0), (20, 0.0), (30, 0.0))
        var("$PLIMCHECK", (70, 0))
        var("$PEXTMIN", (10, pext.low[0]), (20, pext.low[1]), (30, 0.0))
        var("$PEXTMAX", (10, pext.high[0]), (20, pext.high[1]), (30, 0.0))
        var("$PLIMMIN", (10, 0.0), (20, 0.0))
        var("$PLIMMAX", (10, PAPER[0]), (20, PAPER[1]))
        var("$UNITMODE", (70, 0))
        var("$VISRETAIN", (70, 1))
        var("$PLINEGEN", (70, 0))
        var("$PSLTSCALE", (70, 0))
        var("$CMLSTYLE", (2, "Standard"))
        var("$CMLJUST", (70, 0))
        var("$CMLSCALE", (40, 20.0))
        var("$PROXYGRAPHICS", (70, 1))
        var("$MEASUREMENT", (70, 1))
        var("$CELWEIGHT", (370, -1))
        var("$ENDCAPS", (280, 0))
        var("$JOINSTYLE", (280, 0))
        var("$LWDISPLAY", (290, 0))
        var("$INSUNITS", (70, 4))
        var("$HYPERLINKBASE", (1, ""))
        var("$STYLESHEET", (1, ""))
        var("$XEDIT", (290, 1))
        var("$CEPSNTYPE", (380, 0))
        var("$PSTYLEMODE", (290, 1))
        var("$EXTNAMES", (290, 1))
        var("$PSVPSCALE", (40, 0.0))
        var("$OLESTARTUP", (290, 0))
        return [(0, "SECTION"), (2, "HEADER")] + tags + [(0, "ENDSEC")]

    def classes(self):
        tags = [(0, "SECTION"), (2, "CLASSES")]
        for dxf_name, cpp_name in (("ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault"),
                                   ("ACDBPLACEHOLDER", "AcDbPlaceHolder"),
                                   ("LAYOUT", "AcDbLayout")):
            tags += [(0, "CLASS"), (1, dxf_name), (2, cpp_name), (3, "ObjectDBX Classes"),
                     (90, 0), (280, 0), (281, 0)]
        return tags + [(0, "ENDSEC")]

    def table(self, name, records, extra=None):
        tags = [(0, "TABLE"), (2, name), (5, self.table_heads[name]), (330, "0"),
                (100, "AcDbSymbolTable"), (70, len(records))]
        tags += extra or []
        for record in records:
            tags += record
        return tags + [(0, "ENDTAB")]

    def record(self, kind, handle, table, subclass, name, flags=0):
        return [(0, kind), (5, handle), (330, self.table_heads[table]),
                (100, "AcDbSymbolTableRecord"), (100, subclass), (2, name), (70, flags)]

    def vport_table(self):
        ext = self.model_extents
        width, height = ext.high[0] - ext.low[0], ext.high[1] - ext.low[1]
        center = ext.center()
        tags = self.record("VPORT", self.vport, "VPORT", "AcDbViewportTableRecord", "*Active")
        tags += [(10, 0.0), (20, 0.0), (11, 1.0), (21, 1.0), (12, center[0]), (22, center[1]),
                 (13, 0.0), (23, 0.0), (14, 10.0), (24, 10.0), (15, 10.0), (25, 10.0),
                 (16, 0.0), (26, 0.0), (36, 1.0), (17, 0.0), (27, 0.0), (37, 0.0),
                 (40, max(height, width / 1.6) * 1.1), (41, 1.6), (42, 50.0), (43, 0.0),
                 (44, 0.0), (50, 0.0), (51, 0.0), (71, 0), (72, 1000), (73, 1), (74, 3),
                 (75, 0), (76, 0), (77, 0), (78, 0), (281, 0), (65, 1), (110, 0.0), (120, 0.0),
                 (130, 0.0), (111, 1.0), (121, 0.0), (131, 0.0), (112, 0.0), (122, 1.0),
                 (132, 0.0), (79, 0), (146, 0.0)]
        return self.table("VPORT", [tags])

    def ltype_table(self):
        records = []
        for name, description, pattern in (("ByBlock", "", []), ("ByLayer", "", []),
                                           ("Continuous", "Solid line", []),
                                           ("DASHED", "Dashed __ __ __ __ __ __ __ __ __ __ _",
                                            [12.7, -6.35])):
            tags = self.record("LTYPE", self.ltypes[name], "LTYPE", "AcDbLinetypeTableRecord",
                               name)
            tags += [(3, description), (72, 65), (73, len(pattern)),
                     (40, sum(abs(length) for length in pattern))]
            for length in pattern:
                tags += [(49, length), (74, 0)]
            records.append(tags)
        return self.table("LTYPE", records)

    def layer_table(self):
        records = []
        for name, color, linetype, lineweight, plotted in LAYERS:
            tags = self.record("LAYER", self.layers[name], "LAYER", "AcDbLayerTableRecord", name)
            tags += [(62, color), (6, linetype)]
            if not plotted:
                tags.append((290, 0))
            tags += [(370, lineweight), (390, self.placeholder)]
            records.append(tags)
        return self.table("LAYER", records)

    def style_table(self):
        tags = self.record("STYLE", self.style, "STYLE", "AcDbTextStyleTableRecord", "Standard")
        tags += [(40, 0.0), (41, 1.0), (50, 0.0), (71, 0), (42, ROOM_NAME_HEIGHT),
                 (3, "arial.ttf"), (4, ""), (1001, "ACAD"), (1000, "Arial"), (1071, 34)]
        return self.table("STYLE", [tags])

    def view_table(self):
        box = next(room[2] for room in ROOMS if room[0] == MEETING_ROOM)
        margin = 1000.0
        tags = self.record("VIEW", self.view, "VIEW", "AcDbViewTableRecord", "MEETING_ROOM")
        tags += [(40, box[3] - box[1] + 2 * margin), (10, (box[0] + box[2]) / 2.0),
                 (20, (box[1] + box[3]) / 2.0), (41, box[2] - box[0] + 2 * margin), (11, 0.0),
                 (21, 0.0), (31, 1.0), (12, 0.0), (22, 0.0), (32, 0.0), (42, 50.0), (43, 0.0),
                 (44, 0.0), (50, 0.0), (71, 0), (281, 0), (72, 0)]
        return self.table("VIEW", [tags])

    def appid_table(self):
        records = [self.record("APPID", self.appids[name], "APPID", "AcDbRegAppTableRecord",
                               name) for name in APP_IDS]
        return self.table("APPID", records)

    def dimstyle_table(self):
        tags = [(0, "DIMSTYLE"), (105, self.dimstyle), (330, self.table_heads["DIMSTYLE"]),
                (100, "AcDbSymbolTableRecord"), (100, "AcDbDimStyleTableRecord"),
                (2, "Standard"), (70, 0), (3, ""), (4, ""), (40, DIM_SCALE), (41, DIM_ARROW),
                (42, DIM_EXT_OFFSET), (43, 3.75), (44, DIM_EXT_BEYOND), (45, 0.0), (46, 0.0),
                (47, 0.0), (48, 0.0), (140, DIM_TEXT), (141, 2.5), (142, 0.0),
                (143, 0.03937007874), (144, 1.0), (145, 0.0), (146, 1.0), (147, DIM_GAP),
                (71, 0), (72, 0), (73, 0), (74, 0), (75, 0), (76, 0), (77, 1), (78, 8),
                (170, 0), (171, 4), (172, 1), (173, 0), (174, 0), (175, 0), (176, 0), (177, 0),
                (178, 0), (271, 0), (272, 0), (273, 2), (274, 2), (275, 0), (277, 2),
                (278, 46), (279, 0), (280, 0), (281, 0), (282, 0), (283, 1), (284, 0),
                (285, 0), (286, 0), (288, 0), (289, 3), (340, self.style), (371, -2),
                (372, -2)]
        extra = [(100, "AcDbDimStyleTable"), (71, 1), (340, self.dimstyle)]
        return self.table("DIMSTYLE", [tags], extra)

    def block_record_table(self):
        records = []
        for name in self.block_names:
            tags = self.record("BLOCK_RECORD", self.block_records[name], "BLOCK_RECORD",
                               "AcDbBlockTableRecord", name)
            tags.pop()  # block records carry no flags
            layout = {"*Model_Space": "Model", "*Paper_Space": "Layout1"}.get(name)
            tags.append((340, self.layouts[layout] if layout else "0"))
            records.append(tags)
        return self.table("BLOCK_RECORD", records)

    def tables(self):
        tags = [(0, "SECTION"), (2, "TABLES")]
        tags += self.vport_table()
        tags += self.ltype_table()
        tags += self.layer_table()
        tags += self.style_table()
        tags += self.view_table()
        tags += self.table("UCS", [])
        tags += self.appid_table()
        tags += self.dimstyle_table()
        tags += self.block_record_table()
        return tags + [(0, "ENDSEC")]

    def blocks(self):
        tags = [(0, "SECTION"), (2, "BLOCKS")]
        flags = {"DOOR": 2, "TADS_Mark_RoomLabel": 2, "*D1": 1}
        for name in self.block_names:
            owner = self.block_records[name]
            begin, end = self.block_ends[name]
            paper = [(67, 1)] if name == "*Paper_Space" else []
            tags += [(0, "BLOCK"), (5, begin), (330, owner), (100, "AcDbEntity")] + paper
            tags += [(8, "0"), (100, "AcDbBlockBegin"), (2, name), (70, flags.get(name, 0)),
                     (10, 0.0), (20, 0.0), (30, 0.0), (3, name), (1, "")]
            for entity in self.block_content.get(name, []):
                tags += entity
            tags += [(0, "ENDBLK"), (5, end), (330, owner), (100, "AcDbEntity")] + paper
            tags += [(8, "0"), (100, "AcDbBlockEnd")]
        return tags + [(0, "ENDSEC")]

    def entities(self):
        tags = [(0, "SECTION"), (2, "ENTITIES")]
        for entity in self.model.entities + self.paper.entities:
            tags += entity
        return tags + [(0, "ENDSEC")]

    def dictionary(self, kind, handle, owner, entries, reactors=True):
        tags = [(0, kind), (5, handle)]
        if reactors:
            tags += [(102, "{ACAD_REACTORS"), (330, owner), (102, "}")]
        tags += [(330, owner), (100, "AcDbDictionary"), (281, 1)]
        for name, target in entries:
            tags += [(3, name), (350, target)]
        return tags

    def layout(self, name, tab_order, block_name, last_viewport):
        model = name == "Model"
        paper = (297.0, 210.0) if model else PAPER
        media = "ISO_A4_(297.00_x_210.00_MM)" if model else "ISO_full_bleed_A3_(420.00_x_297.00_MM)"
        owner = self.dictionaries["ACAD_LAYOUT"]
        tags = [(0, "LAYOUT"), (5, self.layouts[name]), (102, "{ACAD_REACTORS"), (330, owner),
                (102, "}"), (330, owner), (100, "AcDbPlotSettings"), (1, ""),
                (2, "none_device"), (4, media), (6, ""), (40, 0.0), (41, 0.0), (42, 0.0),
                (43, 0.0), (44, paper[0]), (45, paper[1]), (46, 0.0), (47, 0.0), (48, 0.0),
                (49, 0.0), (140, 0.0), (141, 0.0), (142, 1.0), (143, 1.0),
                (70, 1712 if model else 688), (72, 1), (73, 0), (74, 0 if model else 5),
                (7, ""), (75, 0 if model else 16), (147, 1.0), (148, 0.0), (149, 0.0),
                (100, "AcDbLayout"), (1, name), (70, 1 if model else 0), (71, tab_order)]
        if model:
            limits = ((0.0, 0.0), (PAPER[0] * VIEWPORT_SCALE, PAPER[1] * VIEWPORT_SCALE))
            ext = self.model_extents
        else:
            limits = ((0.0, 0.0), PAPER)
            ext = self.paper.extents
        tags += [(10, limits[0][0]), (20, limits[0][1]), (11, limits[1][0]),
                 (21, limits[1][1]), (12, 0.0), (22, 0.0), (32, 0.0), (14, ext.low[0]),
                 (24, ext.low[1]), (34, 0.0), (15, ext.high[0]), (25, ext.high[1]),
                 (35, 0.0), (146, 0.0), (13, 0.0), (23, 0.0), (33, 0.0), (16, 1.0), (26, 0.0),
                 (36, 0.0), (17, 0.0), (27, 1.0), (37, 0.0), (76, 0),
                 (330, self.block_records[block_name]), (331, last_viewport)]
        return tags

    def objects(self):
        d = self.dictionaries
        root = Handles.FIXED["ROOT"]
        group = Handles.FIXED["ACAD_GROUP"]
        tags = [(0, "SECTION"), (2, "OBJECTS")]
        tags += self.dictionary("DICTIONARY", root, "0",
                                [("ACAD_GROUP", group), ("ACAD_LAYOUT", d["ACAD_LAYOUT"]),
                                 ("ACAD_MLINESTYLE", d["ACAD_MLINESTYLE"]),
                                 ("ACAD_PLOTSETTINGS", d["ACAD_PLOTSETTINGS"]),
                                 ("ACAD_PLOTSTYLENAME", d["ACAD_PLOTSTYLENAME"])],
                                reactors=False)
        tags += self.dictionary("DICTIONARY", group, root, [])
        tags += self.dictionary("DICTIONARY", d["ACAD_LAYOUT"], root,
                                [("Layout1", self.layouts["Layout1"]),
                                 ("Model", self.layouts["Model"])])
        tags += self.dictionary("DICTIONARY", d["ACAD_MLINESTYLE"], root,
                                [("Standard", self.mlinestyle)])
        tags += self.dictionary("DICTIONARY", d["ACAD_PLOTSETTINGS"], root, [])
        tags += self.dictionary("ACDBDICTIONARYWDFLT", d["ACAD_PLOTSTYLENAME"], root,
                                [("Normal", self.placeholder)])
        tags += [(100, "AcDbDictionaryWithDefault"), (340, self.placeholder)]
        tags += [(0, "ACDBPLACEHOLDER"), (5, self.placeholder), (102, "{ACAD_REACTORS"),
                 (330, d["ACAD_PLOTSTYLENAME"]), (102, "}"), (330, d["ACAD_PLOTSTYLENAME"])]
        tags += [(0, "MLINESTYLE"), (5, self.mlinestyle), (102, "{ACAD_REACTORS"),
                 (330, d["ACAD_MLINESTYLE"]), (102, "}"), (330, d["ACAD_MLINESTYLE"]),
                 (100, "AcDbMlineStyle"), (2, "Standard"), (70, 0), (3, ""), (62, 256),
                 (51, 90.0), (52, 90.0), (71, 2), (49, 0.5), (62, 256), (6, "BYLAYER"),
                 (49, -0.5), (62, 256), (6, "BYLAYER")]
        tags += self.layout("Model", 0, "*Model_Space", self.vport)
        tags += self.layout("Layout1", 1, "*Paper_Space", self.paper_viewport)
        return tags + [(0, "ENDSEC")]

    def text(self):
        tags = self.header() + self.classes() + self.tables() + self.blocks()
        tags += self.entities() + self.objects() + [(0, "EOF")]
        return "".join(format_tag(code, value) for code, value in tags)


def drawing_bytes():
    return Document().text().encode("ascii")


def main():
    parser = argparse.ArgumentParser(description="Write the bundled sample drawing.")
    parser.add_argument("-o", "--output", default=str(DEFAULT_OUTPUT),
                        help="where to write the drawing; '-' for standard output")
    parser.add_argument("--check", action="store_true",
                        help="compare the output file with what would be written instead")
    args = parser.parse_args()
    data = drawing_bytes()
    if args.check:
        path = pathlib.Path(args.output)
        try:
            current = path.read_bytes()
        except OSError as error:
            print("cannot read %s: %s" % (path, error), file=sys.stderr)
            return 1
        if current != data:
            print("%s is out of date: run python3 tools/make_sample_dxf.py" % path,
                  file=sys.stderr)
            return 1
        return 0
    if args.output == "-":
        sys.stdout.buffer.write(data)
        sys.stdout.buffer.flush()
        return 0
    pathlib.Path(args.output).parent.mkdir(parents=True, exist_ok=True)
    pathlib.Path(args.output).write_bytes(data)
    return 0


if __name__ == "__main__":
    sys.exit(main())
