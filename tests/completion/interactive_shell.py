"""A shell with zelkor's completion, driven through a terminal."""

import os
import pathlib
import pty
import re
import select
import signal
import time

PATIENCE = 30
PACKAGING = pathlib.Path(__file__).resolve().parents[2] / "packaging"

# A zelkor that writes the number of its arguments and all of them to a file.
COMMON = r"""
PS1='ready> ' PS2='unfinished> '
zelkor() {
  printf '%s\0' "$#" "$@" >"$HOME/arguments"
  echo '<zelkor-has-run>'
}
"""
BASH = r"""
bind 'set completion-query-items 0'
bind 'set page-completions off'
bind '"\C-x*": insert-completions'
source "$PACKAGING"/zelkor.bash-completion
"""
ZSH = r"""
bindkey -e
setopt bang_hist
LISTMAX=-1
fpath=("$PACKAGING" $fpath)
autoload -Uz compinit && compinit -u
insert_all() { _main_complete; compstate[insert]=all; }
zle -C insert-all complete-word insert_all
bindkey '^X*' insert-all
"""
START = {
    "bash": (".bashrc", BASH, ["bash", "--noprofile", "-i"]),
    "zsh": (".zshrc", ZSH, ["zsh", "-d", "-i"]),
}


class InteractiveShell:
    """Types command lines that begin with "zelkor" into bash or zsh."""

    def __init__(self, name, directory, home):
        self.home = pathlib.Path(home)
        script, own, command = START[name]
        (self.home / script).write_text(COMMON + own)
        environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(home),
            "PACKAGING": str(PACKAGING),
            "TERM": "xterm",
            "LC_ALL": "C.UTF-8",
            "HISTFILE": "",
        }
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(directory)
            os.execvpe(command[0], command, environment)
        self._wait_for(b"ready> ")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.kill(self.process, signal.SIGKILL)
        os.close(self.terminal)
        os.waitpid(self.process, 0)

    def arguments(self, typed):
        """Types "zelkor ", the keys and Return. Returns zelkor's arguments."""
        kept = self.home / "arguments"
        kept.unlink(missing_ok=True)
        os.write(self.terminal, b"zelkor " + typed + b"\n")
        seen = self._wait_for(b"<zelkor-has-run>.*ready> |unfinished> ")
        if b"unfinished> " in seen:
            raise SyntaxError(f"no whole command in {seen}")
        return kept.read_bytes().split(b"\0")[1:-1]

    def completed(self, typed):
        return self.arguments(typed + b"\t")

    def offered(self, typed):
        """All completions of the typed text, in order."""
        before = self.arguments(typed)
        after = self.arguments(typed + b"\x18*")
        kept = len(before) - (typed[-1:] not in (b"", b" "))
        return [] if after == before else sorted(after[kept:])

    def _wait_for(self, pattern):
        seen = b""
        deadline = time.monotonic() + PATIENCE
        while not re.search(pattern, seen, re.DOTALL):
            left = deadline - time.monotonic()
            if left <= 0 or not select.select([self.terminal], [], [], left)[0]:
                raise TimeoutError(f"{pattern} is not in {seen}")
            seen += os.read(self.terminal, 4096)
        return seen
