"""The binding, through its public names."""

import os
import resource
import subprocess
import sys
import threading
from datetime import datetime
from decimal import Decimal
from pathlib import Path

import pytest

import orvix
from orvix import Missing, Nothing, Null, Ref

HERE = Path(__file__).resolve().parent


@pytest.fixture(autouse=True)
def place(tmp_path, monkeypatch):
    monkeypatch.setenv("ORVIX_MESSAGES", "off")
    return tmp_path


def run(code, **environment):
    return subprocess.run([sys.executable, "-c", code], capture_output=True, text=True,
                          env={**os.environ, **environment}, timeout=60)


def named(native):
    return "Z:" + str(native).replace("/", "\\")


def numbers_in_a_list(values):
    stack = orvix.classStack()
    stack.Push(values)
    return stack.Pop()


@pytest.mark.parametrize("value", [
    0, -2**31, 2**31 - 1, 1.5, True, False, None, Null, "", "a\0b", "\ud800 \U0001f600", datetime(2002, 11, 30, 10, 1, 2),
    datetime(1850, 1, 1, 18), Decimal("-79228162514264337593543950335"), Decimal("0.0001"), b"", b"\0\xff", [], [1, "a", None],
    [[1], [2, [3.5]]]])
def test_values_come_back(value):
    stack = orvix.classStack()
    stack.Push(value)
    back = stack.Pop()
    assert back == value and type(back) is type(value)


@pytest.mark.parametrize("value, back", [(2**31, Decimal(2**31)), ((1, 2), [1, 2]), (bytearray(b"x"), b"x")])
def test_values_of_a_nearby_type(value, back):
    assert numbers_in_a_list(value) == back


@pytest.mark.parametrize("call, wanted", [
    (lambda: orvix.GetElement("a,b,c", 2, ","), "b"),
    (lambda: orvix.GetElement(lIndex=1, sSeparator=";", sList="x;y"), "x"),
    (lambda: orvix.GetElement("x;y", 2, sseparator=";"), "y"),
    (lambda: orvix.Max([1, 7, 3]), 7),
    (lambda: orvix.IsInStringArray(["a b", "c"], "c"), True),
    (lambda: orvix.GetRGB(0x123456, orvix.enumRGB.oxGreen), 0x34),
    (lambda: orvix.SuperLTrim("\n x", Missing, True), "x"),
])
def test_members_of_the_global_object(call, wanted):
    assert call() == wanted


def test_properties():
    text = orvix.classString()
    text.Value = "Hello"
    assert (text.Value, text(), str(text), text.Length) == ("Hello",) * 3 + (5,)
    text.Mid[2, 3] = "ipp"
    assert (text.Mid(2, 3).Value, text.Mid[2].Value, text.Value) == ("ipp", "ippo", "Hippo")
    other = orvix.classString()
    other.Value = "YY"
    text.Left[2] = other
    assert str(text) == "YYppo"
    name = orvix.classFilename()
    name.CompleteFilename = "C:\\a\\b.txt"
    assert (name.Extension, str(name)) == ("txt", "C:\\a\\b.txt")
    operation = orvix.CSHFileOp()
    operation.SilentMode = True
    assert operation.SilentMode is True


def test_by_reference():
    removed = Ref()
    assert orvix.SuperRTrim("text  ", removed) == "text" and removed.value == 2
    number = Ref("unchanged")
    with pytest.raises(TypeError):
        orvix.SuperRTrim("text", number)
    stack = orvix.classStack()
    stack.Push(5)
    index = Ref(0)
    assert stack.IsOnStack(Ref(5), orvix.sdEndToStart, index) and index.value == 1


@pytest.mark.parametrize("call, error, words", [
    (lambda: orvix.GetElement("a"), TypeError, "needs lIndex"),
    (lambda: orvix.GetElement("a", 1, ",", 4), TypeError, "takes 3 arguments, not 4"),
    (lambda: orvix.GetElement("a", 1, ",", sList="b"), TypeError, "given sList twice"),
    (lambda: orvix.GetElement("a", 1, x=","), TypeError, "has no argument x"),
    (lambda: orvix.GetElement(1, 1, ","), TypeError, "sList takes a text, not int"),
    (lambda: orvix.GetElement("a", "1", ","), TypeError, "lIndex takes a whole number"),
    (lambda: orvix.GetElement("a", 2**31, ","), OverflowError, "from -2147483648 to 2147483647"),
    (lambda: orvix.IsInStringArray([1], "a"), TypeError, "takes texts, not int"),
    (lambda: orvix.classString().Nothing, AttributeError, "Nothing"),
    (lambda: orvix.Nonsense, AttributeError, "orvix has no member Nonsense"),
    (lambda: orvix.classString().Left(-1), orvix.Error, "error 5 from classString: Invalid length"),
    (lambda: orvix.classStack().Pop(), orvix.Error, "66000"),
    (lambda: orvix.host(Nonsense=print).__enter__(), TypeError, "the host has no Nonsense"),
])
def test_failures(call, error, words):
    with pytest.raises(error, match=words.replace("(", "\\(")):
        call()


def test_error_tells_number_source_and_description():
    with pytest.raises(orvix.Error) as caught:
        orvix.classString().Left(-1)
    assert (caught.value.number, caught.value.source, caught.value.description) == (5, "classString", "Invalid length")


def test_record(place):
    (place / "a.txt").write_text("four")
    listing = orvix.classDirectory()
    listing.Init(named(place) + "\\*.*")
    file = listing.File(1)
    assert (listing.lNumFiles, file.sFile, file.lSize, file.sExtension) == (1, "a.txt", 4, "txt")
    assert abs((file.dDate - datetime.now()).total_seconds()) < 120


class Combo:
    """What SetComboElement asks of a control."""

    def __init__(self, items):
        self.items, self.ListIndex = items, -1

    @property
    def ListCount(self):
        return len(self.items)

    def List(self, index):
        if self.items[index] is None:
            raise LookupError("no such line")
        return self.items[index]


def test_callers_objects():
    stack = orvix.classStackObject()
    mine = Combo(["a"])
    stack.Push(mine)
    assert stack.Pop() is mine
    stack.Push(orvix.classString())
    assert type(stack.Pop()) is orvix.classString
    assert stack.Peek is not None and stack.IsEmpty()
    held = orvix.Collection({"a": Combo([])})
    assert orvix.IsInCollection("a", held) and not orvix.IsInCollection("b", held)


def test_exception_of_a_callers_object_is_itself():
    box = Combo(["a", "b"])
    orvix.SetComboElement(box, "b")
    assert box.ListIndex == 1
    try:
        orvix.SetComboElement(Combo(["a", None]), "c")
    except LookupError as error:
        assert str(error) == "no such line"
    orvix.LengthList("a", ",")  # nothing is left over for the next call


def test_host(place, capsys, monkeypatch):
    seen, unraised = [], []
    monkeypatch.setattr(sys, "unraisablehook", unraised.append)
    (place / "a").write_text("a")
    (place / "b").write_text("b")

    def copy():
        operation = orvix.CSHFileOp()
        operation.ConfirmOperation = True
        operation.AddSourceFile(named(place / "a"))
        operation.AddDestFile(named(place / "b"))
        return operation.CopyFiles()

    def question(kind, name):
        seen.append((kind, Path(name.replace("\\", "/")).name))
        return 1
    with orvix.host(FileQuestion=question):
        with orvix.host(FileQuestion=lambda kind, name: 1 / 0):
            copy()
        assert (place / "b").read_text() == "b" and len(unraised) == 1
        assert copy()
    assert seen and (place / "b").read_text() == "a"


def test_threads():
    text = orvix.classString()
    found = []

    def other():
        try:
            text.Length
        except RuntimeError as error:
            found.append(str(error))
        found.append(orvix.GetElement("a,b", 2, ","))
    thread = threading.Thread(target=other)
    thread.start()
    thread.join()
    assert found == ["this classString belongs to another thread", "b"]


def test_closed_object():
    with orvix.classString() as text:
        text.Value = "a"
    with pytest.raises(RuntimeError, match="is closed"):
        text.Length


def test_a_list_that_changes_during_the_call():
    values = [1, 2, 3]

    class Greedy(Combo):
        def List(self, index):
            values.clear()
            return super().List(index)
    orvix.SetComboElement(Greedy(["a", "b"]), "b")
    assert numbers_in_a_list(values) == []


def test_recursion_through_a_callback():
    class Deep(Combo):
        def List(self, index):
            if self.depth:
                deeper = Deep(["a"])
                deeper.depth = self.depth - 1
                orvix.SetComboElement(deeper, "a")
            return "a"
    top = Deep(["a"])
    top.depth = 20
    orvix.SetComboElement(top, "a")
    assert top.ListIndex == 0


def test_nothing_leaks():
    text, stack = orvix.classString(), orvix.classStack()

    def round_():
        text.Value = "some text"
        text.Left(3)
        stack.Push(["a", b"bc"])
        stack.Pop()
        orvix.GetElement("a,b,c", 2, ",")
        stack.Push(round_)
        stack.Pop()
        with pytest.raises(orvix.Error):
            text.Left(-1)
    for _ in range(2000):
        round_()
    before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    for _ in range(20000):
        round_()
    assert resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - before < 1024
    assert not orvix._objects._living


def test_the_interpreter_ends_quietly():
    ran = run("import orvix; a = orvix.classStack(); b = orvix.classString(); a.Push(b); a.Push(print)\n"
              "import sys; sys.keep = a")
    assert (ran.returncode, ran.stdout, ran.stderr) == (0, "", "")


@pytest.mark.parametrize("library, words", [("/nonexistent", "liborvix.so is not in /nonexistent")])
def test_library_that_is_missing(library, words):
    ran = run("import orvix", ORVIX_LIBRARY=library)
    assert ran.returncode == 1 and words in ran.stderr


def test_stubs_are_those_of_the_type_library():
    from orvix import stubs
    assert (HERE.parent / "orvix/__init__.pyi").read_text() == stubs.text()


def test_stubs_carry_the_example():
    example = HERE.parents[2] / "examples/tidy/tidy.py"
    ran = subprocess.run(["mypy", "--strict", "--cache-dir", os.devnull, example], capture_output=True, text=True,
                         timeout=120)
    assert ran.returncode == 0, ran.stdout


def test_help_has_signature_and_help_string():
    assert "GetElement(sList: str, lIndex: int, sSeparator: str) -> str" in orvix.GetElement.__doc__
    assert "position Index in the list" in orvix.GetElement.__doc__


def test_prompt_and_script(place):
    script = place / "script.py"
    script.write_text("print(GetElement('a,b', 2, ','), classString().Length)")
    ran = subprocess.run([sys.executable, "-m", "orvix", script], capture_output=True, text=True, timeout=60)
    assert (ran.stdout, ran.stderr) == ("b 0\n", "")
    ran = subprocess.run([sys.executable, "-m", "orvix"], input="s = classString()\ns.Value = 'x'\ns\n",
                         capture_output=True, text=True, timeout=60)
    assert "<orvix.classString> 'x'" in ran.stdout
    from orvix.__main__ import _completions
    assert "s.LengthList" in _completions({"s": orvix.classString()}, "s.Len", "s.Len")
    assert "lIndex=" in _completions(__import__("orvix.__main__", fromlist=["_Names"])._Names(), "lI", "GetElement(lI")


def test_tidy(place):
    for name in ("b.PDF", "a.txt", "ą.jpg", "keep.bin"):
        (place / name).write_text(name)
    (place / "Papers").mkdir()
    (place / "Papers/a.txt").write_text("older")
    tidy = [sys.executable, str(HERE.parents[2] / "examples/tidy/tidy.py"), str(place)]
    dry = subprocess.run([*tidy, "--dry-run"], capture_output=True, text=True, timeout=60)
    assert [line.split()[0] + " " + line.split()[-1] for line in dry.stdout.splitlines()] == [
        "Papers a.txt", "Papers b.PDF", "Pictures ą.jpg"]
    assert (place / "a.txt").exists()
    ran = subprocess.run(tidy, capture_output=True, text=True, timeout=60)
    assert (ran.returncode, ran.stderr) == (0, "")
    assert sorted(p.name for p in place.iterdir()) == ["Papers", "Pictures", "keep.bin"]
    assert (place / "Papers/a.txt").read_text() == "older" and len(list((place / "Papers").iterdir())) == 3
    assert subprocess.run([*tidy[:2], "/nonexistent"], capture_output=True, timeout=60).returncode == 2
