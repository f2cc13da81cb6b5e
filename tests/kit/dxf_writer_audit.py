#!/usr/bin/env python3
"""Checks that DXF files the kit writes load in another CAD library (ezdxf): every drawing of the
corpus and the sample is read and written again with dmdump --write-dxf, and the written file is
loaded with ezdxf's recovery loader and audited. A written file must load, and must not give the
auditor more to repair than the drawing it was written from (damaged corpus files stay damaged).

usage: dxf_writer_audit.py <dmdump> <corpus dir> <sample.dxf> <work dir>
"""
import os
import subprocess
import sys

try:
    from ezdxf import recover
except ImportError:
    print("ezdxf is not installed: skipped")
    sys.exit(0)


def problems(path):
    """The auditor's errors and fixes for a file, or None when ezdxf cannot load it at all."""
    try:
        doc, auditor = recover.readfile(path)
        audit = doc.audit()
    except Exception as error:  # a file ezdxf cannot read, whatever the reason
        return None, str(error)
    found = auditor.errors + auditor.fixes + audit.errors + audit.fixes
    return len(found), "; ".join(str(entry.message) for entry in found[:3])


def drawings(corpus, sample):
    for root, _, names in os.walk(corpus):
        for name in sorted(names):
            if name.lower().endswith((".dxf", ".dxfb")):
                yield os.path.join(root, name)
    yield sample


def main():
    if len(sys.argv) != 5:
        print(__doc__)
        return 2
    dmdump, corpus, sample, work = sys.argv[1:]
    os.makedirs(work, exist_ok=True)
    checked = failed = 0
    for index, source in enumerate(drawings(corpus, sample)):
        written = os.path.join(work, "written%03d.dxf" % index)
        run = subprocess.run([dmdump, "--summary", "--no-report", "--write-dxf", written, source],
                             stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        if run.returncode != 0:
            continue  # not a drawing the reader loads: nothing was written
        checked += 1
        count, detail = problems(written)
        if count is None:
            failed += 1
            print("FAIL %s: the written file does not load: %s" % (source, detail))
        elif count > 0:
            original, _ = problems(source)
            if original is None or count > original:
                failed += 1
                print("FAIL %s: %d problems in the written file (%s), %s in the drawing"
                      % (source, count, detail, "?" if original is None else original))
        os.remove(written)
    print("%d written drawings checked, %d failed" % (checked, failed))
    return 1 if failed or checked == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
