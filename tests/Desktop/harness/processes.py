"""Children that never outlive the test, however it ends."""
import ctypes
import os
import shutil
import signal
import subprocess

from .waiting import wait_until

PR_SET_CHILD_SUBREAPER = 36


def adopt_orphans():
    """What a child leaves behind becomes a child of this process, so that it can be found."""
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def start(command, environment, **options):
    """A child that the system kills together with this process."""
    options.setdefault("stdin", subprocess.DEVNULL)
    return subprocess.Popen([shutil.which("setpriv"), "--pdeathsig", "KILL", *command],
                            env=environment, **options)


def parents(with_the_dead=False):
    """Of each process the parent. The dead are those whose end their parent has not yet seen."""
    found = {}
    for name in os.listdir("/proc"):
        if not name.isdigit():
            continue
        try:
            with open(f"/proc/{name}/stat", "rb") as stat:
                state, parent = stat.read().rpartition(b")")[2].split()[:2]
        except OSError:
            continue  # it has just ended
        if with_the_dead or state != b"Z":
            found[int(name)] = int(parent)
    return found


def descendants(process, with_the_dead=False):
    """The children of the process, their children, and so on."""
    all_parents = parents(with_the_dead)
    found = set()
    generation = {process}
    while generation:
        generation = {child for child, parent in all_parents.items()
                      if parent in generation and child not in found}
        found |= generation
    return found


def command_of(process):
    try:
        with open(f"/proc/{process}/cmdline", "rb") as line:
            return line.read().replace(b"\0", b" ").decode(errors="replace").strip()
    except OSError:
        return ""


def end_all_descendants():
    """Kills whatever this process has started that still runs, and waits until it has gone."""
    def nothing_runs():
        for child in descendants(os.getpid()):
            try:
                os.kill(child, signal.SIGKILL)
            except ProcessLookupError:
                pass
        reap_orphans()
        return not descendants(os.getpid(), with_the_dead=True)

    wait_until(nothing_runs, "the end of everything that was started")


def reap_orphans():
    try:
        while os.waitpid(-1, os.WNOHANG)[0] != 0:
            pass
    except ChildProcessError:
        pass
