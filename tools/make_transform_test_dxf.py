#!/usr/bin/python3
"""Writes the drawings of the vectorizer's transform and image tests (tests/vectorizer/drawings).

transformed_curves.dxf: circles and arcs in block references that do not keep them round or keep
their direction: a reference scaled (2, 1), a mirrored one, nested references, a clipped
reference (its clip boundary crossing the circle), one whose clip is switched off, and an arc whose extrusion is (0, 0, -1).
Each case is on a layer of its own, named after it.

raster_images.dxf: images of 40 x 20 pixels named "pic.png" (the test writes the file beside the
drawing): turned 30 degrees, mirrored, cut by a polygon, cut by a rectangle, turned a quarter and
cut by a polygon, and one whose display is switched off. Again one layer per case.

Needs python3-ezdxf.

    /usr/bin/python3 tools/make_transform_test_dxf.py
"""

import math
import pathlib

import ezdxf

OUTPUT = pathlib.Path(__file__).resolve().parent.parent / "tests" / "vectorizer" / "drawings"


def clip_filter_tags(handle, owner, boundary, inverse_insert, enabled):
    """The SPATIAL_FILTER object of a clipped reference: boundary in world coordinates, no
    front or back clip, the reference's inverse transform (3 x 4, by rows) and an identity clip
    transform; `enabled` false is a clip switched off (XCLIP OFF)."""
    tags = ["0", "SPATIAL_FILTER", "5", handle, "330", owner, "100", "AcDbFilter", "100", "AcDbSpatialFilter",
            "70", str(len(boundary))]
    for x, y in boundary:
        tags += ["10", repr(float(x)), "20", repr(float(y))]
    tags += ["210", "0.0", "220", "0.0", "230", "1.0", "11", "0.0", "21", "0.0", "31", "0.0", "71", "1" if enabled else "0", "72", "0",
             "73", "0"]
    identity = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0]
    for value in list(inverse_insert) + identity:
        tags += ["40", repr(float(value))]
    return "\n".join(tags) + "\n"


def transformed_curves():
    doc = ezdxf.new("R2000")
    msp = doc.modelspace()
    for name in ("SCALED", "MIRRORED", "NESTED", "CLIPPED", "CLIPOFF", "EXTRUDED", "PLAIN"):
        doc.layers.add(name)

    circle = doc.blocks.new("CIRC")
    circle.add_circle((0, 0), 5)
    arc = doc.blocks.new("QUARTER")
    arc.add_arc((0, 0), 5, 0, 90)
    nest = doc.blocks.new("NEST")
    nest.add_blockref("CIRC", (0, 0), dxfattribs={"xscale": 2, "yscale": 1})

    msp.add_blockref("CIRC", (0, 0), dxfattribs={"layer": "SCALED", "xscale": 2, "yscale": 1})
    msp.add_blockref("QUARTER", (100, 0), dxfattribs={"layer": "MIRRORED", "xscale": -1, "yscale": 1})
    msp.add_blockref("NEST", (0, 100), dxfattribs={"layer": "NESTED", "xscale": 1, "yscale": 3, "rotation": 90})
    clipped = msp.add_blockref("CIRC", (0, -100), dxfattribs={"layer": "CLIPPED", "xscale": 2, "yscale": 1})
    switched_off = msp.add_blockref("CIRC", (100, -100), dxfattribs={"layer": "CLIPOFF"})
    msp.add_arc((-200, 0), 5, 0, 90, dxfattribs={"layer": "EXTRUDED", "extrusion": (0, 0, -1)})
    msp.add_arc((300, 0), 5, 0, 90, dxfattribs={"layer": "PLAIN"})

    # The clip boundaries: a placeholder record reserves each filter's handle in the reference's
    # ACAD_FILTER dictionary; the written file then has the filter in its place.
    filters = []
    for reference, boundary, inverse_insert, enabled in (
            # the inverse of translate(0, -100) scale(2, 1)
            (clipped, [(-6, -108), (8, -108), (8, -92), (-6, -92)], [0.5, 0, 0, 0, 0, 1, 0, 100, 0, 0, 1, 0], True),
            (switched_off, [(98, -102), (102, -98)], [1, 0, 0, -100, 0, 1, 0, 100, 0, 0, 1, 0], False)):
        xdict = reference.new_extension_dict()
        dictionary = xdict.dictionary.add_new_dict("ACAD_FILTER", hard_owned=True)
        placeholder = doc.objects.add_xrecord(owner=dictionary.dxf.handle)
        dictionary["SPATIAL"] = placeholder
        filters.append((placeholder.dxf.handle, dictionary.dxf.handle, boundary, inverse_insert, enabled))
    path = OUTPUT / "transformed_curves.dxf"
    doc.saveas(path)

    text = path.read_text()
    for handle, owner, boundary, inverse_insert, enabled in filters:
        # ezdxf writes group codes right-aligned in three columns.
        marker = "  0\nXRECORD\n  5\n" + handle + "\n"
        start = text.index(marker)
        end = text.index("\n  0\n", start + len(marker)) + 1
        text = text[:start] + clip_filter_tags(handle, owner, boundary, inverse_insert, enabled) + text[end:]
    path.write_text(text)


def raster_images():
    doc = ezdxf.new("R2000")
    msp = doc.modelspace()
    picture = doc.add_image_def(filename="pic.png", size_in_pixel=(40, 20))
    size = 0.5  # drawing units per pixel

    def image(layer, insert, angle_degrees=0.0, mirrored=False):
        doc.layers.add(layer)
        a = math.radians(angle_degrees)
        u = (size * math.cos(a), size * math.sin(a), 0)
        v = (-size * math.sin(a), size * math.cos(a), 0)
        if mirrored:
            v = (-v[0], -v[1], 0)
        entity = msp.add_image(picture, insert, (20, 10), dxfattribs={"layer": layer})
        entity.dxf.u_pixel = u
        entity.dxf.v_pixel = v
        return entity

    image("IMG_ROTATED", (0, 0), 30)
    image("IMG_MIRRORED", (100, 0), mirrored=True)
    image("IMG_POLYCLIP", (0, 100)).set_boundary_path([(-0.5, -0.5), (39.5, -0.5), (19.5, 19.5)])
    image("IMG_RECTCLIP", (100, 100)).set_boundary_path([(9.5, 4.5), (29.5, 14.5)])
    image("IMG_TURNEDCLIP", (200, 100), 90).set_boundary_path([(-0.5, -0.5), (39.5, -0.5), (19.5, 19.5)])
    hidden = image("IMG_HIDDEN", (200, 0))
    hidden.dxf.flags = hidden.dxf.flags & ~1
    doc.saveas(OUTPUT / "raster_images.dxf")


if __name__ == "__main__":
    OUTPUT.mkdir(parents=True, exist_ok=True)
    transformed_curves()
    raster_images()
