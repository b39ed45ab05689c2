"""Tells which updates would break an installed package.

    python -c PROGRAM UPDATES [FILES]

UPDATES is a JSON array of objects with "package" and "latest", FILES one of requirement files.
Prints {"blocked": [{"package", "latest", "reason"}, ...]}; fails without a word on standard output.
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
import re
import signal
import subprocess

try:
    from packaging.requirements import Requirement
    from packaging.version import Version
except ImportError:  # all that a fresh environment has
    from pip._vendor.packaging.requirements import Requirement
    from pip._vendor.packaging.version import Version


def normalized(name):
    return name.strip().lower().replace("_", "-")


def parsed(text):
    """The requirement that a text is, or None."""
    try:
        return Requirement(text)
    except Exception:  # some releases let the errors of their parser through
        return None


def requirements_in(path):
    """Those of a requirement file, each with its line; none of one that can't be read."""
    try:
        with open(path, encoding="utf-8-sig") as file:
            lines = file.read().splitlines()
    except (OSError, ValueError):
        return
    for line in lines:
        line = line.partition("#")[0].strip()
        requirement = parsed(line) if line else None
        if requirement:
            yield requirement, line


def applies(requirement):
    """Whether it holds in this environment, without any extra."""
    try:
        return not requirement.marker or requirement.marker.evaluate({"extra": ""})
    except Exception:
        return False


def first_pin(requirement, line):
    """The exact version that is written first, or None: the clauses themselves have no order."""
    exact = [clause.version for clause in requirement.specifier if clause.operator == "=="]
    written = re.findall(r"==\s*([^\s,;)]+)", line)
    return next((version for version in written if version in exact), None)


def exact_pins(files):
    """From normalized name to version and file name; the first pin of a package counts."""
    pins = {}
    for path in files:
        for requirement, line in requirements_in(path):
            version = first_pin(requirement, line)
            if version:
                pin = (version, os.path.basename(path))
                pins.setdefault(normalized(requirement.name), pin)
    return pins


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


def label(name, version, pins):
    """Where the version of a package is said, or None for one that is not the pinned one."""
    if normalized(name) not in pins:
        return "installed"
    pinned, source = pins[normalized(name)]
    return "pinned in " + (source or "requirements") if version == pinned else None


def is_broken_by(requirement, latest):
    if not applies(requirement) or not requirement.specifier:
        return False
    try:
        version = Version(latest)
    except Exception:
        return False
    return not requirement.specifier.contains(version, prereleases=True)


def blocked(targets, pins):
    """The first reason against each target that has one, by normalized name."""
    reasons = {}
    for package in installed():
        metadata = package.get("metadata") or {}
        name = metadata.get("name") or package.get("name") or "unknown"
        version = metadata.get("version") or package.get("version") or ""
        source = label(name, version, pins)
        if normalized(name) in targets or not source:
            continue
        for requirement in map(parsed, metadata.get("requires_dist") or []):
            target = requirement and normalized(requirement.name)
            if target in targets and is_broken_by(requirement, targets[target]["latest"]):
                words = f"{requirement.name}{requirement.specifier}"
                reasons.setdefault(target, f"{name} {version} ({source}) requires {words}")
    return reasons


def main():
    # Whoever ends this ends what it has started too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    targets = {
        normalized(update["package"]): {"package": update["package"], "latest": update["latest"]}
        for update in json.loads(sys.argv[1])
        if update.get("package") and update.get("latest")
    }
    files = json.loads(sys.argv[2]) if len(sys.argv) > 2 else []
    reasons = blocked(targets, exact_pins(files)) if targets else {}
    told = [{**targets[target], "reason": reason} for target, reason in reasons.items()]
    sys.stdout.write(json.dumps({"blocked": told}))


main()
