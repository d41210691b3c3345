"""Run by gdb: stops the program and compares what it prints for the table's expressions. $views, $table."""

import fnmatch
import os
import re

import gdb


def expected(path):
    with open(path, encoding="utf-8") as table:
        for line in table:
            if line.strip() and not line.startswith("#"):
                yield line.rstrip("\n").split(None, 1)


def check():
    for command in ("set confirm off", "set pagination off", "set width 0", "set host-charset UTF-8",
                    "set debuginfod enabled off", "source " + os.environ["OXA_VIEWS"], "break stop", "run", "up"):
        gdb.execute(command, to_string=True)
    failures = passed = 0
    for expression, text in expected(os.environ["OXA_VIEWS_TABLE"]):
        try:
            shown = gdb.execute("output " + expression, to_string=True)
            # The debugger follows a reference to the type that the virtual table names, with or without views. Where
            # the library has symbols but no debug information, a class that only it knows cannot be found, and the
            # debugger says so in front of what it prints. Views cannot keep it from that.
            shown = re.sub(r"^warning: RTTI symbol not found for class .*\n", "", shown)
        except gdb.error as error:
            shown = "error: %s" % error
        if fnmatch.fnmatchcase(shown, text.replace("[", "[[]")):
            passed += 1
        else:
            failures += 1
            print("%s\n  shows    %s\n  expected %s" % (expression, shown, text))
    print("%d expressions as expected, %d not" % (passed, failures))
    gdb.execute("kill")
    return failures == 0 and passed > 0


gdb.execute("quit %d" % (0 if check() else 1))
