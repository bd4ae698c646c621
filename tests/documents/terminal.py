# SPDX-License-Identifier: MIT
"""A program on a terminal of its own: keys in, text out."""
import os
import pty
import select
import signal
import time

PATIENCE = 60  # seconds until a text that does not come counts as missing


class Terminal:
    def __init__(self, command, cwd, env):
        self.text = ""
        self.child, self.master = pty.fork()
        if self.child == 0:
            os.chdir(cwd)
            os.execvpe(command[0], command, env)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.close(self.master)
        try:
            os.kill(self.child, signal.SIGKILL)
        except ProcessLookupError:
            pass
        os.waitpid(self.child, 0)

    def type(self, keys):
        os.write(self.master, keys.encode())

    def wait_for(self, text):
        """Forgets what came up to the text."""
        end = time.monotonic() + PATIENCE
        while text not in self.text:
            readable, _, _ = select.select([self.master], [], [], max(0, end - time.monotonic()))
            if not readable:
                raise AssertionError(f"no {text!r} in {self.text!r}")
            try:
                chunk = os.read(self.master, 65536)
            except OSError:
                chunk = b""
            if not chunk:
                raise AssertionError(f"ended without {text!r}: {self.text!r}")
            self.text += chunk.decode(errors="replace")
        self.text = self.text.split(text, 1)[1]
