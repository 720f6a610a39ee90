"""Shared by the tests of the command line: named checks with a tally, and a run of the program."""
import subprocess

failures = []
checks = 0


def check(condition, what):
    global checks
    checks += 1
    if not condition:
        failures.append(what)
        print("FAILED", what)


def run(binary, args, cwd, stdin=None):
    return subprocess.run([binary] + args, cwd=cwd, input=stdin, capture_output=True, text=True,
                          timeout=60)


def summary(name):
    """Prints the tally and gives the exit status of the test."""
    print(f"{name}: {checks - len(failures)} passed, {len(failures)} failed")
    return 1 if failures else 0
