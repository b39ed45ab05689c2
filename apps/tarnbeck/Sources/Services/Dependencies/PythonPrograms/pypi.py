"""Asks the package index for the latest release of each package.

    python -c PROGRAM PACKAGES

PACKAGES is a JSON array of objects with "name" and "version". Prints one of those whose latest
release is another, each with a "latest_version" besides. A lookup that fails loses its package.

The index is the one that pip's settings name where it speaks TLS, or else pip's own.
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

import configparser
import glob
import json
import ssl
import sysconfig
import urllib.parse
import urllib.request
from concurrent.futures import ThreadPoolExecutor

# pip's configuration files on Linux and macOS; what a later one says holds.
SETTINGS = (
    "/Library/Application Support/pip/pip.conf",
    "/etc/xdg/pip/pip.conf",
    "/etc/pip.conf",
    "~/.pip/pip.conf",
    "~/.config/pip/pip.conf",
    "~/Library/Application Support/pip/pip.conf",
    os.path.join(sys.prefix, "pip.conf"),
)


def settings():
    """What pip goes by when it lists packages."""
    sections = {"global": {}, "list": {}}
    for path in SETTINGS:
        parser = configparser.RawConfigParser()
        try:
            parser.read(os.path.expanduser(path), encoding="utf-8")
        except (configparser.Error, ValueError):
            continue
        for section in filter(parser.has_section, sections):
            for name, value in parser.items(section):
                sections[section][name.replace("_", "-")] = value.strip()
    return {**sections["global"], **sections["list"]}


def default_index():
    """pip's own, from the wheel that Python carries where pip is not installed; or nothing."""
    try:
        from pip._internal.models.index import PyPI
    except ImportError:
        wheels = glob.glob(sysconfig.get_path("stdlib") + "/ensurepip/_bundled/pip-*.whl")
        wheels += glob.glob("/usr/share/python-wheels/pip-*.whl")
        if not wheels:
            return ""
        sys.path.insert(0, wheels[0])
        from pip._internal.models.index import PyPI
    return PyPI.url


def index_host(named):
    """Of the index with this address, which counts only over TLS; otherwise of pip's own."""
    index = urllib.parse.urlsplit(named)
    if index.scheme != "https":
        index = urllib.parse.urlsplit(default_index())
    return index.netloc.rpartition("@")[2]


def trust(certificates):
    """A context that trusts who pip would trust."""
    if certificates:
        path = os.path.expanduser(certificates)
        kind = "capath" if os.path.isdir(path) else "cafile"
        return ssl.create_default_context(**{kind: path})
    context = ssl.create_default_context()
    try:  # not every interpreter finds the system's
        from pip._vendor import certifi

        context.load_verify_locations(certifi.where())
    except (ImportError, OSError):
        pass
    return context


def opener(context):
    """Speaks TLS and nothing else, wherever it is sent to."""
    director = urllib.request.OpenerDirector()
    director.add_handler(urllib.request.HTTPSHandler(context=context))
    director.add_handler(urllib.request.HTTPRedirectHandler())
    director.add_handler(urllib.request.HTTPDefaultErrorHandler())
    director.add_handler(urllib.request.HTTPErrorProcessor())
    return director


def main():
    packages = json.loads(sys.argv[1])
    chosen = settings()
    host = index_host(chosen.get("index-url", ""))
    asked = opener(trust(chosen.get("cert")))

    def outdated(package):
        try:
            name, version = package["name"], package["version"]
            url = f"https://{host}/pypi/{urllib.parse.quote(name, safe='')}/json"
            request = urllib.request.Request(url, headers={"Accept": "application/json"})
            with asked.open(request, timeout=10) as answer:
                latest = json.load(answer)["info"]["version"]
            if isinstance(latest, str) and latest != version:
                return {"name": name, "version": version, "latest_version": latest}
        except Exception:
            pass
        return None

    with ThreadPoolExecutor(max_workers=10) as pool:
        found = list(filter(None, pool.map(outdated, packages if host else [])))
    sys.stdout.write(json.dumps(found))


main()
