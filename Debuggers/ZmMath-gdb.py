"""Shows the library's strings, containers and records in gdb as one reads them.

gdb loads this file with the library where it is installed below /usr; elsewhere say, or write into ~/.gdbinit:

    source <prefix>/share/zmmath/ZmMath-gdb.py
"""

import gdb
import gdb.printing
import gdb.types


def floats(value, names):
    return "(" + ", ".join(str(value[name]) for name in names) + ")"


def vector(value):
    return floats(value, "xyz")


class Text:
    """XString, XBaseString: the text with its NULs."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        buffer = self.value["m_Buffer"]
        if int(buffer) == 0:
            return ""
        return buffer.string("latin-1", length=int(self.value["m_Length"]))

    def display_hint(self):
        return "string"


class Array:
    """XArray: size, capacity, items."""

    def __init__(self, value):
        self.value = value

    def size(self):
        return int(self.value["m_End"] - self.value["m_Begin"])

    def to_string(self):
        room = int(self.value["m_CapacityEnd"] - self.value["m_Begin"])
        return "XArray of %d, room for %d" % (self.size(), room)

    def children(self):
        for i in range(self.size()):
            yield "[%d]" % i, self.value["m_Begin"][i]

    def display_hint(self):
        return "array"


class Table:
    """XHashTable: keys and values in their order."""

    def __init__(self, value):
        self.items = Array(value["m_Items"])

    def to_string(self):
        return "XHashTable of %d" % self.items.size()

    def children(self):
        for name, item in self.items.children():
            yield name + "k", item["key"]
            yield name + "v", item["value"]

    def display_hint(self):
        return "map"


class Matrix:
    """ZmMatrix: four rows; the last one is the translation."""

    def __init__(self, value):
        self.rows = value["m_Rows"]

    def to_string(self):
        return "ZmMatrix"

    def children(self):
        for i in range(4):
            yield "[%d]" % i, floats(self.rows[i], range(4))

    def display_hint(self):
        return "array"


class Record:
    """Small records, in one line."""

    LINES = {
        "Zm2DVector": lambda v: floats(v, "xy"),
        "ZmVector": vector,
        "ZmVector4": lambda v: floats(v, "xyzw"),
        "ZmQuaternion": lambda v: floats(v, "xyzw"),
        "ZmColor": lambda v: floats(v, "rgba"),
        "ZmBbox": lambda v: "[%s to %s]" % (vector(v["Min"]), vector(v["Max"])),
        "ZmOBB": lambda v: "[%s, %s]" % (vector(v["Center"]), ", ".join(
            "%s x %s" % (vector(v["Axis"][i]), v["Extent"][i]) for i in range(3))),
        "ZmPlane": lambda v: "%s . p + %s = 0" % (vector(v["Normal"]), v["D"]),
        "ZmRay": lambda v: "%s + t %s" % (vector(v["Origin"]), vector(v["Direction"])),
        "ZmSphere": lambda v: "[%s, %s]" % (vector(v["Center"]), v["Radius"]),
        "ZmRect": lambda v: "[(%s, %s) to (%s, %s)]" % (v["left"], v["top"], v["right"], v["bottom"]),
        "XGUID": lambda v: "{%08x, %08x}" % (int(v["first"]), int(v["second"])),
    }

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return self.LINES[gdb.types.get_basic_type(self.value.type).tag](self.value)


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("ZmMath")
    collection.add_printer("string", "^X(Base)?String$", Text)
    collection.add_printer("array", "^XArray<.*>$", Array)
    collection.add_printer("table", "^XHashTable<.*>$", Table)
    collection.add_printer("matrix", "^ZmMatrix$", Matrix)
    collection.add_printer("record", "^(%s)$" % "|".join(Record.LINES), Record)
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
