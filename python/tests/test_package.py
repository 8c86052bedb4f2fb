"""The package as a whole: docstrings, stubs, types, examples, README, import time, memory, the wheel."""
import doctest
import importlib
import inspect
import os
import pkgutil
import re
import shutil
import subprocess
import sys
import zipfile
from pathlib import Path

import numpy as np
import pytest

import gxshape as gx

PYTHON = Path(__file__).resolve().parents[1]
ROOT = PYTHON.parent
PACKAGE = Path(gx.__file__).parent
SOAK = os.environ.get("GXSHAPE_SOAK") == "1"
NEEDS = {"distributed": "dask", "_plot": "matplotlib"}


def modules():
    names = [info.name for info in pkgutil.iter_modules([str(PACKAGE)]) if info.name != "_gxshape"]
    for name in names:
        if name in NEEDS:
            pytest.importorskip(NEEDS[name])
    return [gx] + [importlib.import_module(f"gxshape.{name}") for name in names]


def test_every_example_in_a_docstring_runs():
    attempted = 0
    for module in modules():
        result = doctest.testmod(module)
        assert result.failed == 0, module.__name__
        attempted += result.attempted
    assert attempted > 60


def test_every_public_name_is_documented():
    missing = []
    for module in modules():
        assert module.__doc__
        for name, value in vars(module).items():
            if name.startswith("_") or getattr(value, "__module__", None) != module.__name__:
                continue
            if inspect.isfunction(value) and not value.__doc__:
                missing.append(f"{module.__name__}.{name}")
            if inspect.isclass(value):
                members = [value] + [m for key, m in vars(value).items() if not key.startswith("_") and (
                    inspect.isfunction(m) or isinstance(m, (property, classmethod)))]
                missing += [f"{name}.{getattr(m, '__name__', m)}" for m in members
                            if not (m.__func__ if isinstance(m, classmethod) else m).__doc__]
    assert missing == []
    assert set(gx.__all__) <= set(dir(gx)) | {"plot"} and callable(gx.plot)
    with pytest.raises(AttributeError):
        gx.no_such_name


@pytest.mark.skipif(not shutil.which("stubtest"), reason="mypy is not installed")
def test_stubs_and_types(tmp_path):
    config = str(PYTHON / "mypy.ini")  # strict = True, and which packages have no types
    environment = {**os.environ, "MYPY_CACHE_DIR": str(tmp_path), "MYPYPATH": str(PACKAGE.parent)}
    for command in (["stubtest", "gxshape._gxshape", "--mypy-config-file", config],
                    ["mypy", "--config-file", config, "-p", "gxshape"],
                    ["mypy", "--config-file", config, *map(str, sorted((PYTHON / "examples").glob("*.py")))]):
        done = subprocess.run(command, capture_output=True, text=True, env=environment, cwd=tmp_path, check=False)
        assert done.returncode == 0, done.stdout + done.stderr


def test_the_examples_print_what_is_expected(tmp_path):
    pytest.importorskip("matplotlib")
    for example in sorted((PYTHON / "examples").glob("*.py")):
        arguments = [] if example.stem == "first_lines" else [str(tmp_path / f"{example.stem}.png")]
        done = subprocess.run([sys.executable, str(example), *arguments], capture_output=True, text=True, check=True)
        assert done.stdout == example.with_suffix(".expected").read_text(), example.name
    pictures = sorted(tmp_path.glob("*.png"))
    assert [picture.stem for picture in pictures] == ["coins", "inspect_mask"]
    assert all(picture.read_bytes()[:4] == b"\x89PNG" for picture in pictures)


def test_the_lines_of_the_readme_are_the_example():
    block = re.search(r"```python\n(.*?)```", (ROOT / "README.md").read_text(), re.DOTALL).group(1)
    example = (PYTHON / "examples" / "first_lines.py").read_text()
    assert example.split('"""\n', 1)[1] == block


def test_importing_is_quick_and_brings_nothing_but_numpy():
    code = ("import sys, time, numpy; t = time.perf_counter(); import gxshape; t = time.perf_counter() - t;"
            "bad = [m for m in ('dask', 'matplotlib', 'pandas', 'scipy', 'shapely', 'cv2', 'tqdm') if m in sys.modules];"
            "print(t, bad)")
    done = [subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True).stdout.split(" ", 1)
            for _ in range(3)]
    assert {bad.strip() for _, bad in done} == {"[]"}


def resident() -> int:
    return int(Path("/proc/self/statm").read_text().split()[1]) * os.sysconf("SC_PAGE_SIZE")


@pytest.mark.skipif(not Path("/proc/self/statm").exists(), reason="needs /proc")
def test_objects_leave_nothing_behind():
    rounds = 1_000_000 if SOAK else 20_000
    hole = [[0.2, 0.2], [0.4, 0.2], [0.4, 0.4]]

    def some(count):
        for i in range(count):
            region = gx.Region([[0, 0], [1, 0], [1, 1]] if i % 2 else [[0, 0], [9, 0], [9, 9], [0, 9]], holes=[] if i % 2 else [hole])
            view = region.points
            region.label = i
            assert region.area > 0 and view.shape[1] == 2
            if i % 16 == 0:
                region.inside([0.1, 0.05])
                region.repaired()
                gx.Region.from_wkt(region.to_wkt())
                gx.Shapes.from_objects([region])
                try:
                    region.holes = [[[0, 0], [20, 0], [20, 20]]]
                except gx.BadParamsError:
                    pass

    some(4000)
    before = resident()
    some(rounds)
    assert resident() - before < 4_000_000


@pytest.mark.skipif("GXSHAPE_BUILD" not in os.environ, reason="needs GXSHAPE_BUILD, the folder of a finished build")
def test_a_wheel_is_built_installed_and_tried_offline(tmp_path):
    wheels = tmp_path / "wheels"
    done = subprocess.run([sys.executable, "-m", "pip", "wheel", str(PYTHON), "--no-deps", "--no-index",
                           "--no-build-isolation", "-w", str(wheels), "--quiet"], capture_output=True, text=True,
                          check=False, env={**os.environ, "TMPDIR": str(tmp_path)})
    assert done.returncode == 0, done.stdout + done.stderr
    (wheel,) = wheels.glob("gxshape-*-linux_*.whl")
    names = zipfile.ZipFile(wheel).namelist()
    for name in ("gxshape/py.typed", "gxshape/_gxshape.pyi", "gxshape/names.csv", "gxshape/batch.py"):
        assert name in names
    assert not any(name.startswith(("tests", "examples")) for name in names)
    venv = tmp_path / "venv"
    subprocess.run([sys.executable, "-m", "venv", "--system-site-packages", "--without-pip", str(venv)], check=True)
    site = next(venv.glob("lib/python*/site-packages"))
    subprocess.run([sys.executable, "-m", "pip", "install", "--no-index", "--no-deps", "--quiet", "--target", str(site),
                    str(wheel)], check=True)
    code = ("import gxshape as gx, sys; assert gx.__file__.startswith(sys.prefix), gx.__file__;"
            "print(gx.Region([[0, 0], [4, 0], [4, 3]]).area, gx.describe([[[0, 0], [4, 0], [4, 3]]])['feret_max'])")
    environment = {key: value for key, value in os.environ.items() if key != "PYTHONPATH"}
    said = subprocess.run([str(venv / "bin" / "python3"), "-c", code], capture_output=True, text=True, check=True,
                          env=environment, cwd=tmp_path).stdout
    assert said == "6.0 [5.]\n"
    (extension,) = site.glob("gxshape/_gxshape*.so")
    linked = subprocess.run(["ldd", str(extension)], capture_output=True, text=True, check=True).stdout
    assert "velstd" not in linked and "gxshape" not in linked


def test_the_extension_exports_its_entry_point_alone():
    if not shutil.which("nm"):
        pytest.skip("needs nm")
    said = subprocess.run(["nm", "-D", "--defined-only", gx._gxshape.__file__], capture_output=True, text=True,
                          check=True).stdout.split("\n")
    assert [line.split()[-1] for line in said if line] == ["PyInit__gxshape"]
