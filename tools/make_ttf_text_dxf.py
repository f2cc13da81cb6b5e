#!/usr/bin/python3
"""Writes truetype_texts.dxf for the vectorizer's TrueType text test (tests/vectorizer/drawings).

The text "HAVE", 10 high, in a style whose font file is arial.ttf, once per alignment, each on a
layer named after it: LEFT at (0, 0); RIGHT, CENTER and MIDDLE at (100, 50), (100, 100) and
(100, 200); FIT and ALIGNED from (0, 150) and (0, 250) to (100, ...); TOP_RIGHT at (100, 300).

Needs python3-ezdxf.

    /usr/bin/python3 tools/make_ttf_text_dxf.py
"""

import pathlib

import ezdxf
from ezdxf.enums import TextEntityAlignment

OUTPUT = pathlib.Path(__file__).resolve().parent.parent / "tests" / "vectorizer" / "drawings"


def main():
    doc = ezdxf.new("R2010")
    doc.styles.new("ARIAL", dxfattribs={"font": "arial.ttf"})
    msp = doc.modelspace()
    cases = [
        ("LEFT", TextEntityAlignment.LEFT, (0, 0), None),
        ("RIGHT", TextEntityAlignment.RIGHT, (100, 50), None),
        ("CENTER", TextEntityAlignment.CENTER, (100, 100), None),
        ("FIT", TextEntityAlignment.FIT, (0, 150), (100, 150)),
        ("MIDDLE", TextEntityAlignment.MIDDLE, (100, 200), None),
        ("ALIGNED", TextEntityAlignment.ALIGNED, (0, 250), (100, 250)),
        ("TOP_RIGHT", TextEntityAlignment.TOP_RIGHT, (100, 300), None),
    ]
    for layer, alignment, p1, p2 in cases:
        doc.layers.add(layer)
        text = msp.add_text("HAVE", height=10, dxfattribs={"style": "ARIAL", "layer": layer})
        text.set_placement(p1, p2, align=alignment)
    doc.saveas(OUTPUT / "truetype_texts.dxf")


if __name__ == "__main__":
    main()
