"""Runs and look-ups in several Python threads at once give what they give one after another."""

import random
from concurrent.futures import ThreadPoolExecutor

import velmoria
from checks import control_file, same_data

RUNS = ["examples/mnf2.vrn", "examples/hematite.vrn", "examples/p42_x.vrn",
        "examples/pnma_supplied.vrn", "tests/e2e/cases/p21c_incomm.vrn"]


def tasks():
    work = [("run", control_file(path)) for path in RUNS]
    work.append(("run", "SPGR  Q 99 z\nKVEC  0 0 0\nATOM  Fe FE 0 0 0\n"))
    work += [("irreps", ("P n m a", (0, 0, 0.5))), ("irreps", ("F d -3 m", (1, 0, 0))),
             ("irreps", ("P 63/m m c", (0, 0, 0.3))), ("irreps", ("I a -3 d", (0, 0, 0))),
             ("irreps", ("Q 99", (0, 0, 0)))]
    work += [("group", text) for text in ("P 42/m n m", "-F 4vw 2vw 3", "R -3 c", "x,y")]
    return work


def perform(task):
    kind, argument = task
    call = {"run": velmoria.run, "irreps": lambda a: velmoria.irreps(*a), "group": velmoria.group}
    try:
        return call[kind](argument)
    except velmoria.InputError as error:
        return ("InputError", str(error))


def in_threads(work):
    with ThreadPoolExecutor(max_workers=4) as pool:
        return list(pool.map(perform, work))


def test_threads_give_the_sequential_documents():
    # The documents of runs hold their texts, which hold every number a run prints.
    work = tasks() * 3
    random.Random(15).shuffle(work)
    alone = [perform(task) for task in work]
    together = in_threads(work)
    for task, a, b in zip(work, alone, together):
        assert same_data(a, b), task
    assert sum(isinstance(a, tuple) for a in alone) == 2 * 3  # the two bad look-ups
