"""Views of OxaBase's types for gdb: print shows texts, names and counts instead of members.

gdb loads them by itself for a library installed under /usr; elsewhere: source <this file>, by hand or in ~/.gdbinit.
They only read memory, so they work on core files, and on a library without debug information. What is not initialised
yet, or overwritten, is shown as "<garbage>" or as far as it can be read.
"""

import re

import gdb

NAMESPACE = "Oxa_1_1::"
GARBAGE = "<garbage>"
# Of a node whose destruction is decided.
DEAD = 0xF000DEAD
# How many entries and characters are believed at most, before they are taken for garbage.
MOST_ENTRIES = 1 << 24
MOST_UNITS = 1 << 30

# Places of members, in bytes. Compilers describe classes with virtual functions only where these are compiled, so a
# program's debug information does not tell them.
STRING_SIZE = 40
STRING_PRESENT = 32
NODE_COUNTER = 24
CLASS_NAME, CLASS_BASE, CLASS_VERSION = 8, 16, 32
INFO_MAP = 16
ITEM_IMPLEMENTATION = 8
FILE_BASE_NAME, FILE_FOLDER, FILE_EXTENSION = 8, 48, 72
FOLDER_PATH = 8
PATH_ABSOLUTE, PATH_LEVELS, PATH_ROOT = 0, 8, 24
BLOCK_LEVELS = 24


class Unreadable(Exception):
    """What lies there cannot be an object of the type."""


def read(address, size):
    try:
        return bytes(gdb.selected_inferior().read_memory(address, size))
    except (gdb.error, OverflowError, ValueError):
        raise Unreadable() from None


def number(address, size=8):
    return int.from_bytes(read(address, size), "little")


def zero_terminated(address, width, most):
    """The units, of some bytes each, in front of the first zero."""
    units = b""
    while len(units) < width * most:
        unit = read(address + len(units), width)
        if not any(unit):
            break
        units += unit
    return units


def text_at(address, most=None):
    """The String at an address; None for NIL."""
    raw = read(address, STRING_SIZE)
    data, length = (int.from_bytes(raw[i : i + 8], "little") for i in (0, 8))
    present = raw[STRING_PRESENT]
    if present > 1 or length > MOST_UNITS or (present == 0 and length != 0):
        raise Unreadable()
    if present == 0:
        return None
    units = length if most is None else min(length, most)
    return read(data, 2 * units).decode("utf-16-le", "replace")


def shown(text):
    return "NIL" if text is None else text


def class_at(address):
    """The name of the most derived class of a polymorphic object, by its virtual table; None when there is none. It is
    read of the type information, since the table's own symbol is not exported for every class and gone when stripped."""
    try:
        information = number(number(address) - 8)
        name = zero_terminated(number(information + 8), 1, 1024)
        if not re.fullmatch(rb"\*?[\w.$]+", name):
            return None
        shown = gdb.execute("demangle -l c++ -- _ZTI" + name.lstrip(b"*").decode(), to_string=True).strip()
    except (Unreadable, gdb.error):
        return None
    match = re.match(r"typeinfo for (.+)$", shown)
    return match[1] if match else None


def plain(name):
    return name[len(NAMESPACE) :] if name.startswith(NAMESPACE) else name


def folder_text(address):
    """The full name of the implementation of a folder."""
    path = number(address + FOLDER_PATH)
    block, count = number(path + PATH_LEVELS), number(path + PATH_LEVELS + 8)
    if count > MOST_ENTRIES or (block == 0 and count):
        raise Unreadable()
    text = text_at(path + PATH_ROOT) or ""
    if number(path + PATH_ABSOLUTE, 1):
        text += "\\"
    for index in range(count):
        text += shown(text_at(block + BLOCK_LEVELS + index * STRING_SIZE)) + "\\"
    return text or ".\\"


def item_text(address):
    """The full name of the File or Directory at an address, or what its implementation is."""
    if class_at(address) is None:
        raise Unreadable()
    implementation = number(address + ITEM_IMPLEMENTATION)
    if implementation == 0:
        return "moved from"
    kind = class_at(implementation)
    if kind is None:
        raise Unreadable()
    kind = plain(kind)
    if kind == "OxaWindowsFileSystemDirectory":
        return folder_text(implementation)
    if kind == "OxaWindowsFileSystemFile":
        folder = folder_text(implementation + FILE_FOLDER)
        name = shown(text_at(implementation + FILE_BASE_NAME))
        extension = text_at(implementation + FILE_EXTENSION)
        return ("" if folder == ".\\" else folder) + name + ("." + extension if extension else "")
    return "in %s at %#x" % (kind, implementation)


def place_of_base(kind, base):
    """Where in objects of a type its base class lies, as far as the type is described."""
    for field in kind.strip_typedefs().fields() if kind.code == gdb.TYPE_CODE_STRUCT else ():
        if field.is_base_class:
            place = 0 if field.type.name == base else place_of_base(field.type, base)
            if place is not None:
                return field.bitpos // 8 + place
    return None


def node_text(pointer):
    """A node by its class and the number of its owners."""
    address = int(pointer)
    kind = class_at(address)
    if kind is None:
        raise Unreadable()
    place = place_of_base(pointer.type.strip_typedefs().target().strip_typedefs(), NAMESPACE + "BaseNode") or 0
    counter = number(address + place + NODE_COUNTER, 4)
    count = "dead" if counter == DEAD else "%d owner%s" % (counter, "" if counter == 1 else "s")
    return "%s at %#x, %s" % (plain(kind), address, count)


def string_value(address):
    """The String at an address as a value that has a view of its own."""
    return gdb.Value(address).cast(gdb.lookup_type(NAMESPACE + "String").pointer()).dereference()


class View:
    """A view by a text; to_string never fails."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            return self.text()
        except (Unreadable, gdb.error, OverflowError, ValueError):
            return GARBAGE

    def address(self):
        """Where the value lies; results of functions lie nowhere."""
        if self.value.address is None:
            raise Unreadable()
        return int(self.value.address)


class StringView(View):
    """NIL, "", or the text in quotes."""

    def __init__(self, value):
        super().__init__(value)
        try:
            self.content = self.load()
        except (Unreadable, gdb.error, OverflowError, ValueError):
            self.content = GARBAGE
            self.quoted = False
        else:
            self.quoted = self.content is not None

    def load(self):
        limit = gdb.parameter("print elements") or None
        # One more than is shown makes gdb write the dots.
        limit = limit and limit + 1
        if self.value.address is not None:
            return text_at(int(self.value.address), limit)
        present, text = int(self.value["m_present"]), self.value["m_text"]
        length = int(text["_M_string_length"])
        if present == 0 and length == 0:
            return None
        if present != 1 or length > MOST_UNITS:
            raise Unreadable()
        if length <= 7:
            units = (int(text["_M_local_buf"][i]) for i in range(length))
            return b"".join(u.to_bytes(2, "little") for u in units).decode("utf-16-le", "replace")
        return read(int(text["_M_dataplus"]["_M_p"]), 2 * min(length, limit or length)).decode("utf-16-le", "replace")

    def to_string(self):
        return shown(self.content)

    def display_hint(self):
        return "string" if self.quoted else None


class SmartPtrView(View):
    """The class of the node and the number of its owners; the pointer to it as a child."""

    def text(self):
        node = self.value["m_node"]
        return node_text(node) if int(node) else "empty"

    def children(self):
        if int(self.value["m_node"]):
            yield "node", self.value["m_node"]


class WeakHandleView(View):
    def text(self):
        node = self.value["m_node"]
        return "watches " + node_text(node) if int(node) else "node is gone"


class WeakPtrView(View):
    """A std::weak_ptr to a WeakHandle."""

    def text(self):
        handle, count = self.value["_M_ptr"], self.value["_M_refcount"]["_M_pi"]
        if int(count) == 0:
            return "empty"
        # The block begins with its virtual table and the number of owners.
        if number(int(count) + 8, 4) == 0:
            return "node is gone"
        return WeakHandleView(handle.dereference()).text()


class ItemView(View):
    """A File or Directory by its full name."""

    def text(self):
        return item_text(self.address())


class SharedItemView(View):
    """A std::shared_ptr to one, by the full name; the pointer as a child."""

    def text(self):
        item = int(self.value["_M_ptr"])
        return item_text(item) if item else "empty"

    def children(self):
        if int(self.value["_M_ptr"]):
            yield "get()", self.value["_M_ptr"]


class ModuleView(View):
    def text(self):
        if not self.value["m_initialized"]:
            return "not initialised"
        # A unique_ptr is the pointer alone.
        name = number(int(self.value["m_name"].address))
        return shown(text_at(name)) if name else "without name"


def version_text(address):
    return ".".join(str(number(address + i, 2)) for i in range(0, 8, 2))


class ClassVersionView(View):
    def text(self):
        return version_text(self.address())


class ClassView(View):
    """A class record: its name, its bases, its version."""

    def text(self):
        names = []
        record = self.address()
        if class_at(record) is None:
            raise Unreadable()
        while record and len(names) < 64:
            names.append(zero_terminated(number(record + CLASS_NAME), 2, 256).decode("utf-16-le", "replace"))
            record = number(record + CLASS_BASE)
        return " : ".join(names) + " " + version_text(self.address() + CLASS_VERSION)


class InfoStringMapView(View):
    """Keys and values as a map."""

    # A std::map: its header holds the root, the leftmost node and the number of nodes.
    ROOT, LEFTMOST, COUNT = 16, 24, 40
    PARENT, LEFT, RIGHT, KEY = 8, 16, 24, 32

    def tree(self):
        if class_at(self.address()) is None:
            raise Unreadable()
        return self.address() + INFO_MAP

    def count(self):
        count = number(self.tree() + self.COUNT)
        if count > MOST_ENTRIES:
            raise Unreadable()
        return count

    def text(self):
        count = self.count()
        return "%d entr%s" % (count, "y" if count == 1 else "ies")

    def children(self):
        try:
            header = self.tree() + 8
            node = number(self.tree() + self.LEFTMOST)
            for i in range(self.count()):
                if node == header:
                    return
                yield "key%d" % i, string_value(node + self.KEY)
                yield "value%d" % i, string_value(node + self.KEY + STRING_SIZE)
                node = self.next(node)
        except (Unreadable, gdb.error):
            return

    def next(self, node):
        """The node that follows in the order of the tree, which is never deeper than this."""
        right, parent = number(node + self.RIGHT), number(node + self.PARENT)
        for _ in range(2 * MOST_ENTRIES.bit_length()):
            if right:
                node, right = right, number(right + self.LEFT)
                if right == 0:
                    return node
            elif node != number(parent + self.RIGHT):
                return parent
            else:
                node, parent = parent, number(parent + self.PARENT)
        raise Unreadable()

    def display_hint(self):
        return "map"


class Vec3dView(View):
    def text(self):
        return "(%s, %s, %s)" % tuple(self.value[axis] for axis in "xyz")


class CounterView(View):
    def text(self):
        return str(int(self.value["m_value"]["_M_i"]))


class StringResourceView(View):
    def text(self):
        module = self.value["m_module"]
        if int(module) == 0:
            return "none"
        return "entry %d of %s" % (int(self.value["m_id"]), ModuleView(module.dereference()).to_string())

    def children(self):
        yield "text", self.value["m_text"]


class CodePageView(View):
    """Narrow text with its code page."""

    def text(self):
        page, data = int(self.value["m_codePage"]), self.value["m_data"]
        if int(data) == 0:
            return "NIL"
        return "code page %d, %s" % (page, data.format_string(address=False))


VIEWS = [
    (r"String", StringView),
    (r"SmartPtr<.*>", SmartPtrView),
    (r"WeakHandle", WeakHandleView),
    (r"FileSystemItem|File|Directory", ItemView),
    (r"Module", ModuleView),
    (r"ClassVersion", ClassVersionView),
    (r"uZClass", ClassView),
    (r"InfoStringMap", InfoStringMapView),
    (r"Vec3d<(?:float|double)>", Vec3dView),
    (r"InterlockedCounter", CounterView),
    (r"StringResource", StringResourceView),
    (r"CodePageInterface|UTF8Interface", CodePageView),
]
STANDARD_VIEWS = [
    (r"shared_ptr<(?:const )?Oxa_1_1::(?:FileSystemItem|File|Directory)(?: const)?>", SharedItemView),
    (r"(?:weak_ptr|shared_ptr)<Oxa_1_1::WeakHandle>", WeakPtrView),
]
PATTERNS = [(re.compile(NAMESPACE + "(?:" + name + ")$"), view) for name, view in VIEWS]
PATTERNS += [(re.compile("std::" + name + "$"), view) for name, view in STANDARD_VIEWS]


class Views:
    """The views as one entry of "info pretty-printer"."""

    name = "OxaBase"
    enabled = True

    def __call__(self, value):
        kind = value.type
        if kind.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
            value = value.referenced_value()
        name = value.type.strip_typedefs().unqualified().name
        if name is None:
            return None
        return next((view(value) for pattern, view in PATTERNS if pattern.match(name)), None)


VIEWS_OF_PROGRAM = Views()


def register(_event=None):
    """Makes the views those of the program's own file, which gdb asks before the standard library's."""
    for program in gdb.objfiles()[:1]:
        if not any(getattr(p, "name", None) == Views.name for p in program.pretty_printers):
            program.pretty_printers.append(VIEWS_OF_PROGRAM)


register()
gdb.events.new_objfile.connect(register)
