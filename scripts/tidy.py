#!/usr/bin/env python3
"""tidy.py: clang-tidy over src/, on all processors; a file is looked at again only when it changed.

What a file's verdict hangs on (the file, the project headers that it includes, the configuration, the command, the
version) is hashed, and the hash of a clean file is kept in build/lint. Status 77: this version is not the one that
decides. Exits 1 with the findings when there are any.
"""
import concurrent.futures
import hashlib
import json
import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/lint"
CLEAN = BUILD / "clean"
INCLUDE = re.compile(rb'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def project_files(path, seen):
    """`path` and every header of the project that it includes, directly or not."""
    if path in seen or not path.exists():
        return seen
    seen.add(path)
    for name in INCLUDE.findall(path.read_bytes()):
        project_files(ROOT / "src" / name.decode(), seen)
    return seen


def verdict_key(entry, common):
    digest = hashlib.sha256(common)
    digest.update(entry["command"].encode())
    for path in sorted(project_files(Path(entry["file"]), set())):
        digest.update(str(path).encode() + b"\0" + path.read_bytes() + b"\0")
    return digest.hexdigest()


def look_at(entry, common):
    """The findings in one file, or nothing."""
    mark = CLEAN / verdict_key(entry, common)
    if mark.exists():
        return None
    run = subprocess.run(["clang-tidy", "--quiet", "-p", str(BUILD), entry["file"]],
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if run.returncode == 0:
        mark.touch()
        return None
    return run.stdout


def main():
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, text=True, check=True).stdout
    major = re.search(r"version (\d+)", version).group(1)
    if major != "14":
        print(f"clang-tidy 14 decides, and this is {major}: not checked")
        return 77
    # A precompiled header of one compiler is of no use to the other: a build description of its own, without them.
    subprocess.run(["cmake", "--preset", "lint"], cwd=ROOT, stdout=subprocess.DEVNULL, check=True)
    CLEAN.mkdir(exist_ok=True)
    entries = [entry for entry in json.loads((BUILD / "compile_commands.json").read_text())
               if Path(entry["file"]).is_relative_to(ROOT / "src")]
    if not entries:
        print("no source under src/: nothing was checked")
        return 1
    settings = [ROOT / ".clang-tidy", *sorted((ROOT / "src").rglob(".clang-tidy"))]
    common = version.encode() + b"".join(path.read_bytes() for path in settings)
    findings = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for text in pool.map(lambda entry: look_at(entry, common), entries):
            if text is not None:
                findings += 1
                print(text)
    print(f"{len(entries)} sources looked at, {findings} with findings")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
