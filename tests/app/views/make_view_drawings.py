#!/usr/bin/python3
"""Writes the drawings of the saved-view tests (run from this folder with python3-ezdxf):

iso_box.dxf    a 10-unit wire cube with a diagonal, saved in a south-east isometric view, with named
               views looking from the front, twisted, cut by front and back clipping planes, and
               from a camera in perspective.
iso_layout.dxf a layout whose viewports look at the cube from above, isometrically and clipped
               by a polyline, and one with a zero direction (drawn in plan).
"""
import ezdxf

CUBE = [(0, 0, 0), (10, 0, 0), (10, 10, 0), (0, 10, 0)]


def add_cube(msp):
    for z in (0, 10):
        for i in range(4):
            a, b = CUBE[i], CUBE[(i + 1) % 4]
            msp.add_line((a[0], a[1], z), (b[0], b[1], z))
    for x, y, _ in CUBE:
        msp.add_line((x, y, 0), (x, y, 10))
    # The space diagonal marks the near and far corners in a view.
    msp.add_line((0, 0, 0), (10, 10, 10), dxfattribs={"color": 1})


def iso_box():
    doc = ezdxf.new("R2000")
    msp = doc.modelspace()
    add_cube(msp)
    doc.header["$EXTMIN"] = (0, 0, 0)
    doc.header["$EXTMAX"] = (10, 10, 10)
    active = doc.viewports.get("*Active")[0]
    active.dxf.direction = (1, -1, 1)
    active.dxf.target = (0, 0, 0)
    active.dxf.center = (0, 0)
    active.dxf.height = 30
    active.dxf.aspect_ratio = 1.5
    views = [
        ("FRONT", dict(direction=(0, -1, 0), target=(5, 5, 5), center=(0, 0), height=12, width=12)),
        ("TWISTED", dict(direction=(0, 0, 1), target=(5, 5, 0), center=(0, 0), height=12, width=12,
                         view_twist=90)),
        # Looking from the front, only the slab 2 <= y <= 8 around the target at y 5 is kept:
        # the cube's front and back faces are cut away, its diagonal is cut short.
        ("SLICE", dict(direction=(0, -1, 0), target=(5, 5, 5), center=(0, 0), height=12, width=12,
                       view_mode=2 | 4 | 16, front_clipping=3, back_clipping=-3)),
        # A camera 30 units from the cube's centre: the near edges come out longer than the far.
        ("CAMERA", dict(direction=(0, -30, 0), target=(5, 5, 5), center=(0, 0), height=12, width=12,
                        view_mode=1, focal_length=50)),
    ]
    for name, attribs in views:
        view = doc.views.new(name)
        for key, value in attribs.items():
            view.dxf.set(key, value)
    doc.saveas("iso_box.dxf")


def iso_layout():
    doc = ezdxf.new("R2000")
    msp = doc.modelspace()
    add_cube(msp)
    layout = doc.layouts.get("Layout1")
    layout.page_setup(size=(420, 297), margins=(0, 0, 0, 0), units="mm")
    plan = layout.add_viewport(center=(100, 150), size=(150, 150), view_center_point=(5, 5), view_height=12)
    iso = layout.add_viewport(center=(300, 150), size=(150, 150), view_center_point=(0, 0), view_height=25)
    iso.dxf.view_direction_vector = (1, -1, 1)
    iso.dxf.view_target_point = (5, 5, 5)
    # A triangle clips the isometric viewport to its lower left half.
    clip = layout.add_lwpolyline([(225, 75), (375, 75), (225, 225)], close=True)
    iso.dxf.clipping_boundary_handle = clip.dxf.handle
    iso.dxf.flags = iso.dxf.flags | 0x10000
    degenerate = layout.add_viewport(center=(300, 40), size=(60, 30), view_center_point=(0, 0), view_height=10)
    degenerate.dxf.view_direction_vector = (0, 0, 0)
    doc.saveas("iso_layout.dxf")


if __name__ == "__main__":
    iso_box()
    iso_layout()
