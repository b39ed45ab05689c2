"""A user's home with real git repositories and a configuration."""
import json
import os
import subprocess


class Home:
    """Below the folder of a session, with which it is removed."""

    def __init__(self, path):
        self.path = path
        os.makedirs(path)
        self.write(".gitconfig", "[user]\n\tname = Ada Example\n\temail = ada@example.com\n"
                                 "[init]\n\tdefaultBranch = main\n[commit]\n\tgpgSign = false\n")

    def __truediv__(self, name):
        return os.path.join(self.path, name)

    def write(self, name, content):
        path = self / name
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(content)
        return path

    def read(self, name):
        """Empty where there is no file, as for a moment while git writes one anew."""
        try:
            with open(self / name, encoding="utf-8") as file:
                return file.read()
        except FileNotFoundError:
            return ""

    def git(self, repository, *arguments):
        subprocess.run(["git", *arguments], cwd=self / repository, check=True, capture_output=True,
                       stdin=subprocess.DEVNULL,
                       env={"HOME": self.path, "PATH": os.environ["PATH"],
                            "GIT_CONFIG_NOSYSTEM": "1"})

    def add_clean_repository(self, name):
        """With one commit, of the file notes.txt."""
        os.makedirs(self / name)
        self.git(name, "init", "--quiet")
        self.write(f"{name}/notes.txt", "as committed\n")
        self.git(name, "add", ".")
        self.git(name, "commit", "--quiet", "--message", "Begin")
        return self / name

    def add_dirty_repository(self, name):
        """Whose file notes.txt was changed."""
        self.add_clean_repository(name)
        self.write(f"{name}/notes.txt", "changed\n")
        return self / name

    def add_repository_with_worktree(self, name):
        """With a second work tree beside it, in which a file is new."""
        self.add_clean_repository(name)
        self.git(name, "worktree", "add", "--quiet", "-b", "topic", self / f"{name}-topic")
        self.write(f"{name}-topic/idea.txt", "new\n")
        return self / name

    def add_repository_behind_its_remote(self, name):
        self.add_clean_repository(name)
        self.git(name, "commit", "--quiet", "--allow-empty", "--message", "Go on")
        self.git(name, "clone", "--quiet", "--bare", ".", self / f"{name}.git")
        self.git(name, "remote", "add", "origin", self / f"{name}.git")
        self.git(name, "fetch", "--quiet", "origin")
        self.git(name, "branch", "--quiet", "--set-upstream-to", "origin/main")
        self.git(name, "reset", "--quiet", "--hard", "HEAD~1")
        return self / name

    def configure(self, **values):
        """Names are those of the configuration; keep-awake is off unless it is asked for."""
        self.write(".config/tarnbeck/config.json",
                   json.dumps({"keepAwakeOnLaunch": False, **values}))

    def configuration(self):
        return json.loads(self.read(".config/tarnbeck/config.json"))

    def contents(self):
        """Each file and folder with its time of change and its size."""
        found = {}
        for folder, _, files in os.walk(self.path):
            for path in [folder, *(os.path.join(folder, name) for name in files)]:
                status = os.lstat(path)
                found[path] = (status.st_mtime_ns, status.st_size)
        return found
