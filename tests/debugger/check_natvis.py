"""Run by gdb on an object file: every member that the views for Visual Studio name is a member of its type."""

import os
import re
import xml.etree.ElementTree as xml

import gdb

SCHEMA = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"
INSTANCES = {"SmartPtr<*>": "SmartPtr<Oxa_1_1::BaseNode>", "Vec3d<*>": "Vec3d<float>",
             "ScanPtColor<*>": "ScanPtColor<Oxa_1_1::Vec3d<float> >"}
WORDS = {"nullptr", "true", "false", "int"}


def expressions(element):
    """What the debugger evaluates in an element, without format specifiers."""
    found = [element.get("Condition", ""), element.get("Expression", "")]
    text = element.text or ""
    if element.tag == SCHEMA + "DisplayString":
        found += re.findall(r"\{([^{}]*)\}", text)
    elif not len(element):
        found.append(text)
    return [re.sub(r",[\w()]+$", "", expression.strip()) for expression in found if expression.strip()]


def member(kind, name):
    """The type of a member of a class or of its bases; None when there is none."""
    for field in kind.fields():
        if field.name == name and not field.is_base_class:
            return field.type
        inherited = member(field.type.strip_typedefs(), name) if field.is_base_class else None
        if inherited is not None:
            return inherited
    return None


def pointee(kind):
    """The class behind pointers, the standard library's included."""
    kind = kind.strip_typedefs()
    while kind.code == gdb.TYPE_CODE_PTR or re.match(r"std::(unique|shared)_ptr<", kind.name or ""):
        kind = (kind.target() if kind.code == gdb.TYPE_CODE_PTR else kind.template_argument(0)).strip_typedefs()
    return kind.unqualified()


def unknown_members(kind, expression, known):
    for chain in re.findall(r"(?<![\w.>])[A-Za-z_]\w*(?:(?:\.|->)\w+)*", re.sub(r"0x\w+|\([\w:]+\*\)", "", expression)):
        names = re.split(r"\.|->", chain)
        if names[0] in known:
            continue
        at = kind
        for name in names:
            at = pointee(at)
            # Members of the standard library are those of another compiler.
            if (at.name or "").startswith("std::"):
                break
            field = member(at, name)
            if field is None:
                yield "%s: no member %s in %s" % (expression, name, at.name)
                break
            at = field


def check(path):
    failures = checked = 0
    for view in xml.parse(path).getroot():
        name = view.get("Name")
        for pattern, instance in INSTANCES.items():
            name = name.replace(pattern, instance)
        try:
            kind = gdb.lookup_type(name)
        except gdb.error as error:
            print(error)
            failures += 1
            continue
        known = WORDS | {e.get("Name") for e in view.iter() if e.tag in (SCHEMA + "Intrinsic", SCHEMA + "Parameter")}
        for expression in (e for element in view.iter() for e in expressions(element)):
            checked += 1
            for problem in unknown_members(kind, expression, known):
                print("%s: %s" % (name, problem))
                failures += 1
    print("%d expressions looked at, %d wrong" % (checked, failures))
    return failures == 0 and checked > 0


gdb.execute("quit %d" % (0 if check(os.environ["OXA_NATVIS"]) else 1))
