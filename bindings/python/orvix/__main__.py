"""python3 -m orvix: a prompt, or a script, with all of orvix at hand."""

import code
import inspect
import runpy
import sys

import orvix
from orvix._proxy import Object


class _Names(dict):
    """The names of a prompt: its own, then those of orvix."""

    def __missing__(self, name):
        try:
            return getattr(orvix, name)
        except AttributeError:
            raise KeyError(name) from None


def _completions(names, text, line):
    """Members behind a point, names, and arguments by name inside a call."""
    owner, point, start = text.rpartition(".")
    if point:
        try:
            found = dir(eval(owner, {}, names))  # noqa: S307  what the person typed
        except Exception:  # noqa: BLE001
            return []
        return [f"{owner}.{name}" for name in found if name.startswith(start) and not name.startswith("_")]
    found = [name for name in {*names, *dir(orvix)} if name.startswith(text) and not name.startswith("_")]
    called = line.rpartition("(")[0].split()
    if called:
        try:
            target = eval(called[-1].lstrip("(=,"), {}, names)  # noqa: S307
            found += [f"{name}=" for name in inspect.signature(target).parameters if name.startswith(text)]
        except Exception:  # noqa: BLE001
            pass
    return sorted(found)


class _Completer:
    def __init__(self, names):
        self._names, self._found = names, []

    def __call__(self, text, state):
        import readline
        if state == 0:
            self._found = _completions(self._names, text, readline.get_line_buffer())
        return self._found[state] if state < len(self._found) else None


def _show(value):
    if value is None:
        return
    if isinstance(value, Object):
        shown = repr(value) + (f" {str(value)!r}" if type(value).__str__ is not object.__str__ else "")
    else:
        shown = repr(value)
    print(shown)


def main(arguments):
    if arguments:
        sys.argv = arguments
        members = {name: getattr(orvix, name) for name in dir(orvix) if not name.startswith("_")}
        runpy.run_path(arguments[0], members, "__main__")
        return
    names = _Names(orvix=orvix, __name__="__console__", __builtins__=__builtins__)
    try:
        import readline
        readline.set_completer(_Completer(names))
        readline.set_completer_delims(" \t\n`~!@#$%^&*()-=+[{]}\\|;:'\",<>/?")
        readline.parse_and_bind("tab: complete")
    except ImportError:
        pass
    sys.displayhook = _show
    console = code.InteractiveConsole()
    console.locals = names
    console.interact(f"Orvix {orvix.__version__}: its members have their names, such as GetElement('a,b', 1, ',').", "")


if __name__ == "__main__":
    main(sys.argv[1:])
