#!/usr/bin/python3
"""Writes the drawing of the stroke-width tests (run from this folder with python3-ezdxf):

weights.dxf  a 100 by 80 frame holding lines of 0.25 and 0.50 mm, a layer of 0.50 mm with a line,
             a circle, a dashed circle, an arc and a polyline on it, a polyline 2 units wide and a
             line of the default weight, each kind on a layer of its own.
"""
import ezdxf


def weights():
    doc = ezdxf.new("R2010", setup=True)
    for name, weight in (("FRAME", -3), ("QUARTER", -3), ("HALF", -3), ("W50", 50), ("GEOM", -3),
                         ("DEFAULT", -3)):
        doc.layers.add(name, lineweight=weight)
    msp = doc.modelspace()
    msp.add_lwpolyline([(0, 0), (100, 0), (100, 80), (0, 80)], close=True, dxfattribs={"layer": "FRAME"})
    msp.add_line((10, 10), (40, 10), dxfattribs={"layer": "QUARTER", "lineweight": 25})
    msp.add_line((10, 20), (40, 20), dxfattribs={"layer": "HALF", "lineweight": 50})
    msp.add_line((10, 30), (40, 30), dxfattribs={"layer": "W50"})
    msp.add_circle((70, 30), 10, dxfattribs={"layer": "W50"})
    msp.add_circle((70, 30), 5, dxfattribs={"layer": "W50", "linetype": "DASHED"})
    msp.add_arc((70, 60), 10, 0, 120, dxfattribs={"layer": "W50"})
    msp.add_lwpolyline([(10, 40), (25, 45), (40, 40)], dxfattribs={"layer": "W50"})
    msp.add_lwpolyline([(10, 60), (25, 65), (40, 60)], dxfattribs={"layer": "GEOM", "const_width": 2})
    msp.add_line((10, 70), (40, 70), dxfattribs={"layer": "DEFAULT"})
    doc.header["$EXTMIN"] = (0, 0, 0)
    doc.header["$EXTMAX"] = (100, 80, 0)
    doc.saveas("weights.dxf")


weights()
