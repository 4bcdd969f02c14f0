#!/usr/bin/python3
"""What a call from Python costs beside the same call by plain ctypes, and other bars."""

import ctypes
import subprocess
import sys
import time
from ctypes import POINTER, byref, c_int32, c_void_p

import orvix
from orvix import _platform as p


def seconds(call, rounds, repeats=7):
    best = float("inf")
    for _ in range(repeats):
        start = time.perf_counter()
        for _ in range(rounds):
            call()
        best = min(best, time.perf_counter() - start)
    return best / rounds


def plain():
    """GetElement by fixed types through the table of functions."""
    library = orvix._global()._checked()
    accessor = __import__("orvix._typelib", fromlist=["x"]).library().members("classOrvix")["GetElement"][1]
    call = p.method(library, accessor.slot, c_void_p, c_int32, c_void_p, POINTER(c_void_p))
    alloc, free, size = p.text_alloc, p.text_free, p.text_bytes

    def get(text, index, separator):
        first, second = text.encode("utf-16-le"), separator.encode("utf-16-le")
        a, b, result = alloc(first, len(first)), alloc(second, len(second)), c_void_p()
        code = call(library, a, index, b, byref(result))
        free(a)
        free(b)
        if code < 0:
            raise OSError(code)
        found = ctypes.string_at(result.value, size(result.value)).decode("utf-16-le")
        free(result.value)
        return found
    return get


def main():
    get = plain()
    rows = []
    raw = seconds(lambda: get("a,b,c", 2, ","), 20000)
    own = seconds(lambda: orvix.GetElement("a,b,c", 2, ","), 20000)
    rows.append(("GetElement by name / plain ctypes", own / raw, 2.5))
    data = bytes(10**6)
    stack = orvix.classStack()

    def cross():
        stack.Push(data)
        stack.Pop()
    once = seconds(lambda: bytes(bytearray(data)), 20)
    rows.append(("10^6 bytes in and out / four copies", seconds(cross, 20) / (2 * once), None))
    elements = ",".join("a" for _ in range(10**6))
    rows.append(("LengthList of 10^6 elements, ms", 1000 * seconds(lambda: orvix.LengthList(elements, ","), 5), None))

    def start(code):
        return seconds(lambda: subprocess.run([sys.executable, "-c", code], check=True), 5, 3)
    rows.append(("import, ms over an empty interpreter", 1000 * (start("import orvix") - start("pass")), 60))
    for name, value, bar in rows:
        print(f"{name:45}{value:9.2f}" + ("" if bar is None else f"   bar {bar}{'' if value <= bar else '  MISSED'}"))


if __name__ == "__main__":
    main()
