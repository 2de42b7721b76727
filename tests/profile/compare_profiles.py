#!/usr/bin/env python3
"""Reads the generated profile files with Linux kalvor and with kalvor.dll under
Wine, and fails on any difference, showing the smallest file that has one.

    compare_profiles.py <source folder> <Linux build folder> <corpus folder> \\
        <runner...> <profile_host.exe>

The corpus is written afresh by make_profiles.py. The Linux host is built
from profile_host.c against the Linux build; the Windows host runs through
the runner (wine-run.sh with the recording LASER.DLL on its path). Exits 77
(skipped) when Wine is not installed.
"""
import os
import subprocess
import sys
import tempfile

SKIPPED = 77


def run(command, names, env=None):
    result = subprocess.run(command, input=names, capture_output=True, text=True, env=env,
                            errors="replace", timeout=900)
    if result.returncode != 0:
        sys.exit("%s failed (%d):\n%s" % (command[-2], result.returncode, result.stderr[-2000:]))
    return result.stdout.replace("\r", "").splitlines()


def by_file(lines):
    results = {}
    for line in lines:
        results.setdefault(line.split(" ", 1)[0], []).append(line)
    return results


def main():
    source, native, corpus = sys.argv[1:4]
    runner, host_exe = sys.argv[4:-1], sys.argv[-1]
    loader = runner[1] if runner[0].endswith("wine-run.sh") else runner[0]
    if not os.access(loader, os.X_OK):
        print("skipped: %s is not installed, so the Windows reading cannot be compared" % loader)
        return SKIPPED

    subprocess.run([sys.executable, os.path.join(source, "tests/profile/make_profiles.py"), corpus], check=True)
    with open(os.path.join(corpus, "index.txt")) as index:
        names = index.read()

    with tempfile.TemporaryDirectory() as work:
        host = os.path.join(work, "profile_host")
        subprocess.run(["cc", "-std=c11", "-I" + os.path.join(source, "include"),
                        os.path.join(source, "tests/profile/profile_host.c"), "-L" + native, "-lkalvor", "-ldl",
                        "-Wl,-rpath," + native, "-o", host], check=True)
        env = dict(os.environ, LD_LIBRARY_PATH=os.path.join(native, "transports/recorder"))
        linux = by_file(run([host, corpus], names, env))
    windows = by_file(run(runner + [host_exe, "Z:" + corpus], names))

    files = names.split()
    differing = [f for f in files if linux.get(f) != windows.get(f)]
    if not differing:
        print("%d files, %d results alike on Linux and Windows" % (len(files), sum(map(len, linux.values()))))
        return 0
    smallest = min(differing, key=lambda f: (os.path.getsize(os.path.join(corpus, f)), f))
    with open(os.path.join(corpus, smallest), "rb") as f:
        content = f.read()
    print("%d of %d files read differently; the smallest is %s (%d bytes):" %
          (len(differing), len(files), smallest, len(content)))
    print(repr(content[:600]) + (" ..." if len(content) > 600 else ""))
    print("fields: file scanner result send-name receive-name signal weights")
    for ours, theirs in zip(linux.get(smallest, []), windows.get(smallest, [])):
        if ours != theirs:
            print("  Linux:   " + ours[:200])
            print("  Windows: " + theirs[:200])
    return 1


if __name__ == "__main__":
    sys.exit(main())
