"""gdb -batch -x Gdb.py <program>, with ZMMATH_DEBUGGERS naming the folder of the files to be tested.

Shows each record by the pretty printers, and evaluates every expression of the Natvis file on it.
"""

import os
import re
import sys
import xml.etree.ElementTree as ElementTree

import gdb

SHOWN = {
    "text": r'"a\tlittle \"text\""',
    "empty": '""',
    "array": "XArray of 2, room for 2 = {(1, 2, 3), (-1, 0.5, 0)}",
    "nothing": "XArray of 0, room for 0",
    "table": 'XHashTable of 2 = {["one"] = 1, ["two"] = 2}',
    "guid": "{00000012, 00abcdef}",
    "vector": "(1, 2, 3)",
    "reference": "(1, 2, 3)",
    "vector4": "(1, 2, 3, 4)",
    "vector2": "(1, 2)",
    "quaternion": "(0, 0, 0, 1)",
    "colour": "(1, 0.5, 0.25, 1)",
    "matrix": 'ZmMatrix = {(1, 0, 0, 0), (0, 2, 0, 0), (0, 0, 3, 0), (4, 5, 6, 1)}',
    "box": "[(-1, -2, -3) to (1, 2, 3)]",
    "obb": "[(1, 2, 3), (1, 0, 0) x 4, (0, 1, 0) x 5, (0, 0, 1) x 6]",
    "plane": "(0, 1, 0) . p + -2 = 0",
    "ray": "(1, 2, 3) + t (0, 0, 1)",
    "sphere": "[(1, 2, 3), 4]",
    "rect": "[(1, 2) to (3, 4)]",
}
failures = []


def expect(what, found, wanted):
    if found != wanted:
        failures.append("%s: %s instead of %s" % (what, found, wanted))


def fields(kind):
    for field in kind.fields():
        yield from fields(field.type) if field.is_base_class else [field.name]


def natvis_expressions(node):
    for part in node.iter():
        text = (part.text or "").strip()
        tag = part.tag.split("}")[1]
        if tag == "DisplayString":
            yield from re.findall(r"{([^}]*)}", text)
        elif tag in ("Item", "Size", "ValuePointer", "StringView"):
            yield text
        if "Condition" in part.attrib:
            yield part.attrib["Condition"]


def evaluate(variable, expression):
    kind = variable.type.strip_typedefs()
    kind = kind.target() if kind.code == gdb.TYPE_CODE_REF else kind
    expression = re.sub(r",\s*(\[\w+\])?[a-z]+$", "", expression)
    for name in set(fields(kind)):
        expression = re.sub(r"(?<![.\w])%s\b" % name, "record." + name, expression)
    gdb.set_convenience_variable("record", variable)
    return gdb.parse_and_eval(expression.replace("record.", "$record."))


gdb.execute("set breakpoint pending off")
gdb.execute("source %s/ZmMath-gdb.py" % os.environ["ZMMATH_DEBUGGERS"])
gdb.execute("break Look")
try:
    gdb.execute("run", to_string=True)
    gdb.execute("up", to_string=True)
except gdb.error as error:
    print("gdb cannot run programs here: %s" % error)
    gdb.execute("quit 77")

for name, wanted in SHOWN.items():
    shown = gdb.execute("print " + name, to_string=True).split(" = ", 1)[1].strip()
    expect(name, re.sub(r"^@0x[0-9a-f]+: |^\(const \w+ &\) ", "", shown), wanted)

variables = [gdb.parse_and_eval(name) for name in list(SHOWN) + ["item"]]
evaluated = 0
for node in ElementTree.parse(os.environ["ZMMATH_DEBUGGERS"] + "/ZmMath.natvis").getroot():
    pattern = re.escape(node.attrib["Name"]).replace(r"\*", ".*")
    pattern = pattern.replace("XBaseString", "X(Base)?String")
    records = [v for v in variables if re.fullmatch("(const )?" + pattern + "( &)?", str(v.type))]
    expect("records like " + node.attrib["Name"], bool(records), True)
    for record in records:
        for expression in natvis_expressions(node):
            try:
                evaluate(record, expression)
                evaluated += 1
            except gdb.error as error:
                failures.append("%s of %s: %s" % (expression, node.attrib["Name"], error))
expect("expressions at all", evaluated > 0, True)

gdb.execute("kill")
print("\n".join(failures) if failures else "%d records, %d expressions" % (len(SHOWN), evaluated))
sys.stdout.flush()
gdb.execute("quit %d" % bool(failures))
