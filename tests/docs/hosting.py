"""docs/hosting.md against the code: numbers, ids, and the examples that it quotes."""
import os
import re

from tables import ROOT, read, rows, sections

# ---- dispids

KINDS = {"BYTE": "UI1", "LONG": "I4", "ULONG": "UI4", "LONG_PTR": "I8", "ULONG_PTR": "UI8",
         "ULONGLONG": "UI8", "FLOAT": "R4", "VARIANT_BOOL": "BOOL", "BSTR": "BSTR",
         "VARIANT": "VARIANT", "IDispatch*": "DISPATCH", "BOOL": "I4", "OLE_COLOR": "UI4"}
ACCESS = {"Property": "get and put", "ReadOnly": "get", "Result": "get", "WriteOnly": "put"}


def kind_of(argument):
    """What the document calls an argument as it is declared: ULONGLONG* is UI8*."""
    kind = re.sub(r"\s*\w+$", "", argument.strip())
    pointer = "" if kind in KINDS else "*"
    return KINDS[kind.removesuffix(pointer)] + pointer


def declared_kinds():
    """The kinds of the arguments of each operation, by interface and operation."""
    found = {}
    for name in os.listdir(os.path.join(ROOT, "interfaces")):
        for interface, body in re.findall(r"^struct (\w+) : IDispatch\n\{(.*?)\n\};",
                                          read(f"interfaces/{name}"), re.S | re.M):
            for operation, arguments in re.findall(
                    r"STDMETHODCALLTYPE (\w+)\((.*?)\) = 0;", body, re.S):
                found[interface, operation] = [kind_of(argument) for argument
                                               in arguments.split(",") if argument.strip()]
    return found


def dispatch_tables():
    """The rows of each dispatch table as the document has them: number, name, arguments."""
    kinds = declared_kinds()
    source = "".join(read(f"module/{name}DispatchTables.cpp") for name in ("", "Host", "Control"))
    tables = {}
    for interface, body in re.findall(r"DispatchTable<(\w+)>\(\)\n\{(.*?)\n\}\n", source, re.S):
        tables[interface] = set()
        for row, operation, name, number, names in re.findall(
                r'(\w+)Row<&\w+::(\w+)[^>]*>\(\s*OLESTR\("(\w+)"\),\s*(0x[0-9a-f]+|-?\d+)'
                r"(?:,\s*\{(.*?)\})?", body, re.S):
            arguments = kinds[interface, operation]
            if row == "Method":
                names = re.findall(r'"(\w+)"', names)
                text = ", ".join(f"`{kind} {argument}`"
                                 for kind, argument in zip(arguments, names, strict=True))
            else:
                text = f"`{arguments[0].removesuffix('*')}`, {ACCESS[row]}"
            tables[interface].add((int(number, 0), name, text))
    return tables


def check_dispids(_):
    parts = sections(read("docs/hosting.md"), 3)
    tables = dispatch_tables()
    if len(tables) < 15 or not all(tables.values()):
        yield f"tables of {sorted(tables)} only"
    for name, has in tables.items():
        told = {(int(row[0]), row[1].strip("`"), row[2]) for row in rows(parts.get(name, ""))
                if row[0].removeprefix("-").isdigit()}
        for row in sorted(has ^ told):
            yield f"{name}: only {'the code' if row in has else 'the document'} has {row}"


# ---- ids of fields and resolutions


def code_enum(source, name):
    body = re.search(rf"enum {name} : \w+\n\{{(.*?)\}};", source, re.S).group(1)
    return {key: int(value) for key, value in re.findall(r"^\s*(\w+) = (\d+),", body, re.M)}


def code_list(source, name):
    return re.search(rf"\b{name}\[\w+\] = \{{(.*?)\n\}};", source, re.S).group(1)


def check_ids(_):
    parts = sections(read("docs/hosting.md"), 3)
    source = read("interfaces/FieldsAndResolutions.h")
    types = [row[1].strip("`") for row in rows(sections(read("docs/templates.md"), 2)["Types"])
             if row[0].isdigit()]
    ids = code_enum(source, "HostField")
    listed = re.findall(r'\{OLESTR\("([^"]+)"\), (\w+)\}', code_list(source, "kFieldTypes"))
    fields = {"(none)": ids["HostFieldUndefined"]} | {name: ids[host] for name, host in listed}
    if [name for name, _ in listed] != types:
        yield f"types: the documents have {types}"
    told = {name: int(row[0]) for row in rows(parts["Fields"])
            for name in re.findall(r"`([^`]+)`|(\(none\))", row[1])
            for name in name if name}
    for name in sorted(set(fields) | set(told)):
        if fields.get(name) != told.get(name):
            yield f"{name}: the code has {fields.get(name)}, the document {told.get(name)}"
    resolutions = [(int(row[0]), int(row[1])) for row in rows(parts["Resolutions"])]
    ids = code_enum(source, "HostResolution")
    hosts = re.findall(r"\w+", code_list(source, "kHostResolutions"))
    if resolutions != list(enumerate(ids[host] for host in hosts)):
        yield f"resolutions: the document has {resolutions}"


# ---- code of the examples


def check_quotes(_):
    text = read("docs/hosting.md")
    quotes = re.findall(r"\]\(\.\./(examples/[\w./]+)\):\n+```cpp\n(.*?)```", text, re.S)
    for path, quote in quotes:
        lines = iter(line.strip() for line in read(path).splitlines())
        for line in quote.splitlines():
            if line.strip() not in lines:  # goes on behind the line before
                yield f"{path} lacks, or has elsewhere: {line}"
                break
    if len(quotes) < 8:
        yield f"only {len(quotes)} quotes found"
    expected = read("tests/install/installed_package_test.cmake").replace('\\"', '"')
    told = re.search(r"^\$ tabulex_host .*\n((?:.+\n)+?)```$", text, re.M).group(1)
    for line in told.splitlines():
        if line not in expected:
            yield f"the host doesn't tell: {line}"
