#!/usr/bin/python3
"""Writes the drawing of the metadata tests (run from this folder with python3-ezdxf):

layouts.dxf  a line in model space and two layouts, "Plan" and "Section", each with a line of its
             own, so that converting all spaces writes several files.
"""
import ezdxf


def layouts():
    doc = ezdxf.new("R2000")
    doc.modelspace().add_line((0, 0), (100, 50))
    for name in ("Plan", "Section"):
        doc.layouts.new(name).add_line((0, 0), (10, 5))
    doc.layouts.delete("Layout1")
    doc.saveas("layouts.dxf")


if __name__ == "__main__":
    layouts()
