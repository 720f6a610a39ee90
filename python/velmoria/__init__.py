"""Velmoria from Python: runs and look-ups of the representation analysis as data.

    >>> import velmoria
    >>> velmoria.irreps("P n m a", (0, 0, "1/2"))["dims"]
    [2, 2]

Three functions, each returning the JSON document of the command line's ``--json`` option as
Python data (dicts, lists, str, int, float, bool, None), with numpy arrays in place of the
numeric tables:

- ``run(control_text)``: a whole run on the text of a control file, with its three texts;
- ``group(text)``: a space group from a symbol, a number, a Hall symbol or generators;
- ``irreps(group, k, label=None)``: the irreducible representations of the little group of k.

In the returned data, each representation's "matrices" is a complex array of shape
(operators, d, d) and its "characters" a complex array (operators,); every operator's
"rotation" is an int array (3, 3); every atom's "position" a float array (3,); and the
"basis_functions" of a representation of a site a complex array (functions, atoms, 3).

Errors in what is asked raise InputError (a ValueError) with the program's message; an
argument of the wrong type raises TypeError.  A run that stops early is a result, whose
"finished" is False and whose "stop_message" says why; ``run(..., check=True)`` raises
InputError for it instead.  Every call releases the interpreter lock while the library works,
so that calls from several threads run at once and give what they give one after another.
"""

import math
import numbers

import numpy as np

from . import _velmoria

__all__ = ["InputError", "run", "group", "irreps", "format_version"]

format_version = _velmoria.format_version


class InputError(ValueError):
    """Input the program refuses, with its message.  For a stopped run (``check=True``),
    ``result`` holds what the run gave; otherwise it is None."""

    def __init__(self, message, result=None):
        super().__init__(message)
        self.result = result


def _text(value, what):
    if not isinstance(value, str):
        raise TypeError(f"{what} must be a str, not {type(value).__name__}")
    return value


def _complex(values, shape):
    """Nested [re, im] pairs as a complex array of the given shape."""
    pairs = np.asarray(values, dtype=float).reshape(shape + (2,))
    return pairs[..., 0] + 1j * pairs[..., 1]


def _with_arrays(node):
    """The document with its numeric tables as numpy arrays, in place."""
    if isinstance(node, list):
        for item in node:
            _with_arrays(item)
        return node
    if not isinstance(node, dict):
        return node
    for key, value in node.items():
        if value is None:
            continue
        if key == "rotation":
            node[key] = np.asarray(value, dtype=int).reshape(3, 3)
        elif key == "position":
            node[key] = np.asarray(value, dtype=float).reshape(3)
        elif key == "matrices":
            d = node.get("dimension", 1)
            node[key] = _complex(value, (len(value), d, d))
        elif key == "characters":
            node[key] = _complex(value, (len(value),))
        else:
            _with_arrays(value)
    # A site: the basis functions of each representation, one row of atoms a function.
    if isinstance(node.get("atoms"), list) and isinstance(node.get("representations"), list):
        atoms = len(node["atoms"])
        for rep in node["representations"]:
            functions = rep.get("basis_functions")
            if isinstance(functions, list):
                rep["basis_functions"] = _complex(functions, (len(functions), atoms, 3))
    return node


def run(control_text, code="run", *, check=False):
    """Runs the program on the text of a control file, without touching the file system.

    Returns the run document: "title", "finished", "stop_message", "warnings", "vectors",
    "space_group", "k", "star", "little_group", "representations", "sites" (see the module's
    help for the arrays), and the texts the program writes: "console", "result" (the .vmr
    file) and "block" (the .tw file).  ``code`` is the name the texts give the files.

    A run that stops early (a control file the program cannot follow) returns normally with
    "finished" False and "stop_message" set; with ``check=True`` it raises InputError with
    that message, the result in the exception's ``result``.
    """
    _text(control_text, "control_text")
    _text(code, "code")
    result, stop = _velmoria.run(control_text, code)
    _with_arrays(result)
    if check and stop is not None:
        raise InputError(stop.strip(), result)
    return result


def _group_argument(text, generators):
    """The text and whether it holds generators, from a symbol or number, or generators as
    a "; "-separated text or a sequence of operator texts."""
    if generators is not None:
        if text is not None:
            raise TypeError("give either a group text or generators, not both")
        text = generators
        if isinstance(text, (list, tuple)):
            text = "; ".join(_text(g, "a generator") for g in text)
        return _text(text, "generators"), True
    if isinstance(text, numbers.Integral) and not isinstance(text, bool):
        return str(int(text)), False
    return _text(text, "the group"), False


def group(text=None, *, hall=False, generators=None):
    """The space group of a text, as ``velmoria --group`` reads it.

    ``text`` is a number ("62" or 62), number:setting, a tabulated Hermann-Mauguin symbol or
    a Hall symbol; ``hall=True`` reads it as a Hall symbol even where it is also a tabulated
    symbol (as ``--group --hall``).  Instead of a text, ``generators`` gives operators in the
    x,y,z form: one text separated by ";" or a list of texts (as ``--group --gen``).

    Returns the group document's "space_group": "number", "hermann_mauguin", "hall",
    "operators" (each with "rotation" as an int array (3, 3), "translation" as fraction
    strings and "text"), "generators", "centring_vectors" and the rest.  An unknown group
    raises InputError with the program's message.
    """
    text, by_generators = _group_argument(text, generators)
    if by_generators and hall:
        raise TypeError("hall=True reads a Hall symbol, not generators")
    kind = "generators" if by_generators else ("hall" if hall else "symbol")
    error, document = _velmoria.group(text, kind)
    if error is not None:
        raise InputError(error.strip())
    return _with_arrays(document)["space_group"]


def _k_component(value):
    if isinstance(value, str):
        read = _velmoria.k_component(value)
        if read is None:
            raise InputError(f"the component {value} of k is not a number")
        return read
    if isinstance(value, numbers.Real) and not isinstance(value, bool):
        number = float(value)
        if not math.isfinite(number):
            raise InputError(f"the component {value} of k is not a number")
        if abs(number) > 1.0e6:
            raise InputError("a component of k lies beyond +/-1000000")
        return number
    raise TypeError(f"a component of k must be a number or a str, not {type(value).__name__}")


def irreps(group, k, label=None):
    """The irreducible representations of the little group of k, as ``velmoria --irreps``.

    ``group`` is read as an SPGR line reads it (a tabulated symbol or number with the
    generators of the tables, any other text as a Hall symbol), or is a list of generator
    texts in the x,y,z form.  ``k`` is three components, each a number or a text such as
    "1/2" (or one text "0 0 1/2"); components are rounded to simple fractions as a KVEC line
    rounds them.  ``label`` names the k point (two characters; a longer one keeps its last
    two).

    Returns the irreps document: "space_group", "k", "star", "little_group" (its operators in
    the order of the matrices), "representations" (each with "dimension", "label", "matrices"
    as a complex array (operators, d, d) and "characters" (operators,)), and "dims", the list
    of the dimensions.  An unknown group or a k that is not three numbers raises InputError.
    """
    if isinstance(group, (list, tuple)):
        text, by_generators = _group_argument(None, group)
    else:
        text, by_generators = _group_argument(group, None)
    if isinstance(k, str):
        k = k.split()
    try:
        components = list(k)
    except TypeError:
        raise TypeError(f"k must be a sequence of three components, not {type(k).__name__}") from None
    if len(components) != 3:
        raise InputError(f"k needs three components, not {len(components)}")
    k = [_k_component(c) for c in components]
    label = "" if label is None else _text(label, "label")
    error, document = _velmoria.irreps(text, by_generators, k, label)
    if error is not None:
        raise InputError(error.strip())
    _with_arrays(document)
    document["dims"] = [rep["dimension"] for rep in document.get("representations", [])]
    return document
