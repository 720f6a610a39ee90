"""Bad input from Python: an exception with the program's message, never a crash."""

import subprocess

import numpy as np
import pytest

import velmoria
from checks import program

BAD_CONTROL = "TITLE  bad group\nSPGR  Q 99 z\nKVEC  0 0 0  GM\nATOM  Fe FE 0 0 0\n"


def command_line_error(*args):
    """The message that the command line gives on its error stream, without its name."""
    run = subprocess.run([program(), *args], capture_output=True, text=True, errors="replace",
                         timeout=60)
    assert run.returncode == 1
    return run.stderr.strip().removeprefix("velmoria: ")


def test_malformed_control_text_stops_the_run_quietly_or_raises_with_check():
    result = velmoria.run(BAD_CONTROL)
    assert result["finished"] is False
    message = result["stop_message"]
    assert isinstance(message, str) and message
    assert message in result["console"] and message in result["result"]
    with pytest.raises(velmoria.InputError) as raised:
        velmoria.run(BAD_CONTROL, check=True)
    assert str(raised.value) == message.strip()
    assert raised.value.result["console"] == result["console"]
    # (Good control files pass the check: test_analysis.)


def test_odd_control_texts_never_crash():
    for text in ["", "\n", "SPGR", "SPGR  P 1\nKVEC  a b c\n", "KVEC 0 0 0\n",
                 "SPGR  P 1\x00\nKVEC 0 0 0\nATOM A A 0 0 0\n", "SPGR  " + "P" * 100000,
                 "SPGR  P 4\nKVEC  1e30 0 0\nATOM A A 0 0 0\n", "ΣPGR  P 1\nKVEC 0 0 0\n",
                 # the program cuts texts at fixed widths, through a character of two bytes
                 "SPGR  P " + "é" * 40 + "\nKVEC  0 0 0\nATOM  A A 0 0 0\n"]:
        result = velmoria.run(text)
        assert isinstance(result["console"], str)
        assert isinstance(result["finished"], bool)


def test_bad_input_raises_the_program_message():
    cases = [(lambda t=t: velmoria.group(t), ["--group", t])
             for t in ["Q 99 z", "P 7/q", "231", "x,y", "P " + "é" * 40]]
    cases += [(lambda: velmoria.group(generators="x,y,z+1/3; q"),
               ["--group", "--gen", "x,y,z+1/3; q"]),
              (lambda: velmoria.irreps("Q 99 z", (0, 0, 0)), ["--irreps", "Q 99 z", "0", "0", "0"]),
              (lambda: velmoria.irreps("P n m a", ("a", "b", "c")),
               ["--irreps", "P n m a", "a", "b", "c"]),
              (lambda: velmoria.irreps("P n m a", (2.0e6, 0, 0)),
               ["--irreps", "P n m a", "2000000", "0", "0"])]
    for call, args in cases:
        with pytest.raises(velmoria.InputError) as raised:
            call()
        assert str(raised.value) == command_line_error(*args)
        assert isinstance(raised.value, ValueError)
    assert command_line_error("--irreps", "P n m a", "a", "b", "c") == (
        "the component a of k is not a number")
    for k in [("1/0", 0, 0), (0, "1/", 0), (float("nan"), 0, 0), (0, 0, float("inf")), "0 0"]:
        with pytest.raises(velmoria.InputError):
            velmoria.irreps("P n m a", k)


def test_wrong_types_raise_type_errors():
    calls = [
        lambda: velmoria.run(None),
        lambda: velmoria.run(b"SPGR  P 1\n"),
        lambda: velmoria.run("SPGR  P 1\n", code=3),
        lambda: velmoria.group(3.5),
        lambda: velmoria.group(True),
        lambda: velmoria.group(None),
        lambda: velmoria.group("P 1", generators="x,y,z"),
        lambda: velmoria.group(generators=["x,y,z", 3]),
        lambda: velmoria.group(generators="-x,-y,z", hall=True),
        lambda: velmoria.irreps("P 1", 5),
        lambda: velmoria.irreps("P 1", (None, 0, 0)),
        lambda: velmoria.irreps("P 1", (True, 0, 0)),
        lambda: velmoria.irreps("P 1", (0, 0, 0), label=5),
        lambda: velmoria.irreps(2.0, (0, 0, 0)),
    ]
    for call in calls:
        with pytest.raises(TypeError):
            call()


def test_numpy_numbers_are_numbers():
    k = np.array([0, 0, 1], dtype=np.int64) / np.int64(2)
    assert velmoria.irreps("P n m a", k)["k"]["components"] == [0.0, 0.0, 0.5]
    # P n m a at Z: two 2-dimensional representations (the screws along a and c anticommute).
    assert velmoria.irreps("P n m a", (np.float32(0), np.int32(0), 0.5))["dims"] == [2, 2]
