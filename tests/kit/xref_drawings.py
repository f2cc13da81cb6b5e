"""Writes the drawings of the external reference tests into a directory.

usage: xref_drawings.py <directory> [<dwg file>]

host.dxf      references ROOM (room.dxf, at 100,50, scale 2, rotated 90), GONE (a file that is not
              there) and the overlay NOTESOV (notes.dxf, drawn: overlays of the drawing itself are);
              it keeps its own state for ROOM|DOORS (frozen) and has no record for ROOM|FURNITURE;
              ROOMCOPY names room.dxf again as ./room.dxf (at 300,0).
room.dxf      inserts at base point 10,0; layers FURNITURE (red, DASHED), PIPES (GAS, with text),
              DOORS, FROZEN, OFF; a line
              on layer 0; references CHAIR (chair.dxf) and the overlay NOTES (notes.dxf).
chair.dxf     one text and one circle on layer SEAT (green).
notes.dxf     one text on layer NOTE.
loop_a.dxf    references loop_b.dxf, which references loop_a.dxf.
self.dxf      references itself.
deep0.dxf     references deep1.dxf, and so on to deep19.dxf; deepN.dxf shows the text DN.
badref.dxf    references broken.dxf, which is not a drawing.
dwghost.dxf   references the DWG file given (when one is).
"""
import sys

import ezdxf

XREF = 4
OVERLAY = 8


def new_drawing():
    return ezdxf.new("R2010")


def text(msp, content, layer, at):
    msp.add_text(content, dxfattribs={"layer": layer, "height": 2.5, "insert": at})


def xref(doc, name, path, at=(0, 0), flags=XREF, **attribs):
    doc.add_xref_def(path, name, flags=flags)
    return doc.modelspace().add_blockref(name, at, dxfattribs=attribs)


def write_room(directory):
    doc = new_drawing()
    doc.header["$INSBASE"] = (10, 0, 0)
    doc.linetypes.add("DASHED", pattern=[0.75, 0.5, -0.25], description="Dashed __ __")
    doc.linetypes.add("GAS", pattern='A,.5,-.2,["GAS",STANDARD,S=.1,U=0.0,X=-0.1,Y=-.05],-.25',
                      description="Gas ----GAS----", length=0.95)
    doc.layers.add("FURNITURE", color=1, linetype="DASHED")
    doc.layers.add("PIPES", color=1, linetype="GAS")
    doc.layers.add("DOORS", color=2)
    doc.layers.add("FROZEN", color=4).freeze()
    doc.layers.add("OFF", color=4).off()
    msp = doc.modelspace()
    msp.add_circle((20, 0), 3, dxfattribs={"layer": "FURNITURE"})
    text(msp, "ROOMTEXT", "FURNITURE", (12, 5))
    text(msp, "DOORTEXT", "DOORS", (12, 10))
    text(msp, "FROZENTEXT", "FROZEN", (12, 15))
    text(msp, "OFFTEXT", "OFF", (12, 20))
    msp.add_line((10, 0), (30, 0), dxfattribs={"layer": "0"})
    xref(doc, "CHAIR", "chair.dxf", (0, -10))
    xref(doc, "NOTES", "notes.dxf", flags=XREF | OVERLAY)
    doc.saveas(f"{directory}/room.dxf")


def write_single(directory, name, layer, color, content, references=()):
    doc = new_drawing()
    doc.layers.add(layer, color=color)
    msp = doc.modelspace()
    text(msp, content, layer, (0, 0))
    msp.add_circle((0, 0), 1, dxfattribs={"layer": layer})
    for block, path in references:
        xref(doc, block, path)
    doc.saveas(f"{directory}/{name}")


def write_host(directory):
    doc = new_drawing()
    doc.layers.add("HOST", color=5)
    doc.layers.add("ROOM|DOORS", color=6).freeze()
    msp = doc.modelspace()
    msp.add_line((0, 0), (10, 0), dxfattribs={"layer": "HOST"})
    text(msp, "HOSTTEXT", "HOST", (0, 5))
    xref(doc, "ROOM", "room.dxf", (100, 50), xscale=2, yscale=2, zscale=2, rotation=90, layer="HOST")
    xref(doc, "GONE", "missing/absent.dxf", (0, 0))
    xref(doc, "NOTESOV", "notes.dxf", (-50, 0), flags=XREF | OVERLAY)
    xref(doc, "ROOMCOPY", "./room.dxf", (300, 0))
    doc.saveas(f"{directory}/host.dxf")


def main():
    directory = sys.argv[1]
    write_room(directory)
    write_single(directory, "chair.dxf", "SEAT", 3, "CHAIRTEXT")
    write_single(directory, "notes.dxf", "NOTE", 4, "NOTETEXT")
    write_host(directory)
    write_single(directory, "loop_a.dxf", "A", 1, "ATEXT", [("LOOPB", "loop_b.dxf")])
    write_single(directory, "loop_b.dxf", "B", 2, "BTEXT", [("LOOPA", "loop_a.dxf")])
    write_single(directory, "self.dxf", "S", 3, "SELFTEXT", [("SELF", "self.dxf")])
    for level in range(20):
        references = [(f"DEEP{level + 1}", f"deep{level + 1}.dxf")] if level < 19 else []
        write_single(directory, f"deep{level}.dxf", "D", 1, f"D{level}", references)
    with open(f"{directory}/broken.dxf", "w") as broken:
        broken.write("this is not a drawing\n")
    write_single(directory, "badref.dxf", "BAD", 7, "BADREFTEXT", [("BROKEN", "broken.dxf")])
    if len(sys.argv) > 2:
        doc = new_drawing()
        xref(doc, "PLANT", sys.argv[2], (0, 0))
        doc.saveas(f"{directory}/dwghost.dxf")


if __name__ == "__main__":
    main()
