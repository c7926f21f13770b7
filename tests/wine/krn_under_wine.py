"""KRN.EXE, the stand-in, as it runs under Wine in a prefix of its own, and the helper that speaks to it."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import time


class Missing(Exception):
    """Wine or a program for it is not here."""


class Wine:
    """A prefix in the folder `prefix`, which is kept, because making it takes seconds; what runs in it ends with the block.
    `folder` is for the files of this run."""

    def __init__(self, programs, prefix):
        if not shutil.which("wine"):
            raise Missing("Wine is not installed (packages wine, wine64)")
        for program in ("zenvora-dde.exe", "KRN.EXE"):
            if not (programs / program).exists():
                raise Missing(f"{program} was not built (package g++-mingw-w64-x86-64-posix)")
        self.programs = programs
        self.prefix = prefix

    def __enter__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="zenvora-road-"))
        self.environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "LANG": "C.UTF-8",
                            "WINEPREFIX": str(self.prefix), "WINEARCH": "win64",
                            "WINEDLLOVERRIDES": "mscoree=;mshtml=", "WINEDEBUG": "-all"}
        if not (self.prefix / "ready").exists():
            self._make_prefix()
        return self

    def __exit__(self, *unused):
        self._end_session()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _make_prefix(self):
        shutil.rmtree(self.prefix, ignore_errors=True)
        self.prefix.mkdir(parents=True)
        # No display is needed with the driver "null".
        for command in (["wineboot", "-i"],
                        ["wine", "reg", "add", r"HKCU\Software\Wine\Drivers", "/v", "Graphics", "/d", "null", "/f"]):
            subprocess.run(command, env=self.environment, check=True, stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=300)
        # The session that made the prefix looked for a display; windows of the next one find each other.
        self._end_session()
        (self.prefix / "ready").touch()

    def _end_session(self):
        for end in ("-k", "-w"):
            subprocess.run(["wineserver", end], env=self.environment, stderr=subprocess.DEVNULL, timeout=60, check=False)

    def start(self, program, *arguments, **options):
        return subprocess.Popen(["wine", str(self.programs / program), *arguments], env=self.environment,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, **options)

    def krn(self, *lines):
        return Krn(self, *lines)

    def ask_helper(self, *queries):
        """Asks zenvora-dde.exe itself; returns its replies and the seconds that they took."""
        with self.start("zenvora-dde.exe", stdin=subprocess.PIPE) as process:
            if process.stdout.readline() != b"*READY\t1\n":
                raise AssertionError("the helper did not come up")
            replies = []
            start = time.monotonic()
            for number, query in enumerate(queries, 1):
                process.stdin.write(("\t".join([str(number), *query]) + "\n").encode())
                process.stdin.flush()
                replies.append(process.stdout.readline().decode().rstrip("\n").split("\t"))
            seconds = time.monotonic() - start
            process.stdin.close()
            # Its status tells nothing: Wine kills a program that takes over a second to leave, on a busy machine, say.
            process.wait(timeout=60)
        return replies, seconds


class Krn:
    """KRN.EXE with the report Smith, while the block lasts."""

    def __init__(self, wine, *lines):
        self.wine = wine
        self.file = wine.folder / "KRN.txt"
        self.file.write_text("\n".join(["[Smith]", "forms = 1004MC,Text,ICU,", *lines]) + "\n", encoding="utf-8")

    def __enter__(self):
        self.process = self.wine.start("KRN.EXE", str(self.file), stdin=subprocess.DEVNULL, start_new_session=True)
        if self.process.stdout.readline().strip() != b"ready":
            raise AssertionError("KRN.EXE did not come up")
        return self

    def __exit__(self, *unused):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    def values(self, count):
        """The fields of the form by item, as saved: KRN.EXE saves a moment after a poke, so this waits for `count`."""
        patience = time.monotonic() + 20
        while True:
            lines = self.file.read_text(encoding="utf-8").splitlines()
            values = dict(line.split(" = ", 1) for line in lines if line.startswith("1004MC|"))
            if len(values) >= count or time.monotonic() > patience:
                return values
            time.sleep(0.1)
