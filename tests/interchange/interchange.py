"""What the tests of interchange share: a private folder with the broker and another program in it."""

import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAMS = None


class Interchange(unittest.TestCase):
    """Each test has a folder and an environment of its own. A subclass names the other program and its capability."""

    zone = "Europe/Berlin"
    other = None  # the other program, whose Debian package has its name
    capability = None

    def setUp(self):
        if not Path(self.other).exists():
            self.fail(f"{self.other} is missing: install the Debian package {Path(self.other).name}")
        folder = tempfile.TemporaryDirectory(prefix="vesk-interchange.")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.use_zone(self.zone)
        self.run_program(PROGRAMS / "vesk", "consent", "grant", self.capability, "--yes")

    def use_zone(self, zone):
        """Both programs run in that zone from now on."""
        self.environment = {
            "PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "TZ": zone, "HOME": str(self.folder),
            "XDG_CONFIG_HOME": str(self.folder / "config"), "XDG_DATA_HOME": str(self.folder / "data"),
            "XDG_STATE_HOME": str(self.folder / "state"), "XDG_CACHE_HOME": str(self.folder / "cache"),
        }

    def write_config(self, name, text):
        """Writes a file below the folder of configurations."""
        path = self.folder / "config" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def run_program(self, *command, text=""):
        """The standard output of a command that has to succeed, with that text on its standard input."""
        run = subprocess.run([str(word) for word in command], env=self.environment, cwd=self.folder, input=text,
                             capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual(run.returncode, 0, f"{command}\n{run.stdout}\n{run.stderr}")
        return run.stdout

    def broker(self, *arguments):
        return json.loads(self.run_program(PROGRAMS / "VeskCapabilityBroker", *arguments))


def main():
    """Runs the tests of the file that was started. Arguments: the folder of the programs, then unittest's own."""
    global PROGRAMS
    PROGRAMS = Path(sys.argv.pop(1)).resolve()
    unittest.main()
