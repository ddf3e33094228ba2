"""Finds the build tree (TESSALINE_BUILD_DIR, else ./build) and puts its
Python package first on the path, for this process and for Dask workers."""
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
BUILD = os.environ.get("TESSALINE_BUILD_DIR", os.path.join(ROOT, "build"))
PACKAGE = os.path.join(BUILD, "python")
PROGRAM = os.path.join(BUILD, "tools", "tessaline", "tessaline")
DXF = os.path.join(ROOT, "tests", "data", "dxf")

sys.path[:0] = [PACKAGE, HERE]
os.environ["PYTHONPATH"] = os.pathsep.join(
    [PACKAGE, HERE] + [p for p in os.environ.get("PYTHONPATH", "").split(os.pathsep) if p])
