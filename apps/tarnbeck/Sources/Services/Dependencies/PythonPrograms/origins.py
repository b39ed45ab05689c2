"""Tells for packages whether the manifest names them, needs them, or neither.

    python -c PROGRAM PACKAGES FILES

PACKAGES is a JSON array of names, FILES one of requirement files. Prints an object from normalized
name to "manifestDirect", "manifestTransitive" or "venvOnly"; fails without a word on standard
output.
"""
import sys

# The current folder is a user's project: nothing in it may be taken for a module, neither because
# it comes first with -c, nor because the project, or a folder of it, is installed in place.
sys.path[:] = [folder for folder in sys.path if folder]

import os


def lies_in(folder, root):
    folder, root = [os.path.join(os.path.realpath(path), "") for path in (folder, root)]
    return folder.startswith(root)


def is_of_project(folder):
    """Whether it lies in the project, but not in an environment or a Python that lies there."""
    pythons = [root for root in (sys.prefix, sys.base_prefix) if lies_in(root, os.curdir)]
    return lies_in(folder, os.curdir) and not any(lies_in(folder, root) for root in pythons)


sys.path[:] = [folder for folder in sys.path if not is_of_project(folder)]

import json
import signal
import subprocess

try:
    from packaging.requirements import Requirement
except ImportError:  # all that a fresh environment has
    from pip._vendor.packaging.requirements import Requirement


def normalized(name):
    return name.strip().lower().replace("_", "-")


def applying(texts):
    """The normalized names in those texts that are requirements of this environment."""
    for text in texts:
        try:
            requirement = Requirement(text)
            marker = requirement.marker
            if not marker or marker.evaluate({"extra": ""}):
                yield normalized(requirement.name)
        except Exception:  # no requirement, or none that can be judged
            continue


def lines_in(path):
    """Those of a requirement file, without comments; none of one that can't be read."""
    try:
        with open(path, encoding="utf-8-sig") as file:
            lines = file.read().splitlines()
    except (OSError, ValueError):
        return []
    return [line.partition("#")[0].strip() for line in lines]


def installed():
    """What pip tells of each installed package."""
    inspected = subprocess.run(
        [sys.executable, "-m", "pip", "inspect", "--local"],
        cwd=sys.prefix,  # not the project, for the same reason as above
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
        check=True,
    )
    return json.loads(inspected.stdout.decode("utf-8", "replace"))["installed"]


def needed_by(direct):
    """The names that the packages of these names ask for themselves."""
    needed = set()
    for package in installed():
        metadata = package.get("metadata") or {}
        name = metadata.get("name") or package.get("name") or ""
        if normalized(name) in direct:
            needed.update(applying(metadata.get("requires_dist") or []))
    return needed


def main():
    # Whoever ends this ends what it has started too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    packages, files = json.loads(sys.argv[1]), json.loads(sys.argv[2])
    direct = set()
    for path in files:
        direct.update(applying(lines_in(path)))
    needed = needed_by(direct) if direct else set()
    origins = {}
    for name in map(normalized, packages):
        if name in direct:
            origins[name] = "manifestDirect"
        else:
            origins[name] = "manifestTransitive" if name in needed else "venvOnly"
    sys.stdout.write(json.dumps(origins))


main()
