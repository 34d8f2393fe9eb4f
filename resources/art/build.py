#!/usr/bin/env python3
"""Draws every image of quorvane.dll into the folder given: runs generate(out) of each art module here."""
import importlib.util
import pathlib
import sys


def main():
    out = pathlib.Path(sys.argv[1])
    out.mkdir(parents=True, exist_ok=True)
    here = pathlib.Path(__file__).resolve().parent
    sys.path.insert(0, str(here))
    for path in sorted(here.glob("*.py")):
        if path.name in ("build.py", "artlib.py"):
            continue
        spec = importlib.util.spec_from_file_location(path.stem, path)
        module = importlib.util.module_from_spec(spec)
        spec.loader.exec_module(module)
        if hasattr(module, "generate"):
            module.generate(out)
    (out / "art.stamp").write_text("ok\n")


if __name__ == "__main__":
    main()
