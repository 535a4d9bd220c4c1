#!/usr/bin/env python3
"""Holds the documents against the code: check_documents.py WHAT PATH-TO-TABULEX

    options    docs/command-line.md lists exactly the options of each command's help
    templates  each example of docs/templates.md reads as told, and so do its defaults
    readme     what README.md shows is what the tool says
    dispids    docs/hosting.md has the names and numbers of the dispatch tables
    links      links between the documents and their headings lead somewhere
"""
import os
import re
import subprocess
import sys
import tempfile

ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
OPTION = re.compile(r"--[a-z][a-z-]*(?: [^\s`]*[A-Za-z][^\s`]*)?")


def read(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read()


def cells(line):
    """The cells of a table's row; \\| is a bar within one."""
    return [cell.strip().replace("\\|", "|") for cell in re.split(r"(?<!\\)\|", line)[1:-1]]


def rows(text):
    """The rows of all tables of a text, without heads and rules."""
    lines = text.splitlines()
    for i, line in enumerate(lines):
        is_rule = re.fullmatch(r"\|[-|]+\|", line)
        is_head = i + 1 < len(lines) and re.fullmatch(r"\|[-|]+\|", lines[i + 1])
        if line.startswith("|") and not is_rule and not is_head:
            yield cells(line)


def sections(text, level):
    """What stands under each heading of a level, up to the next of that level or above."""
    parts = re.split(rf"^(#{{1,{level}}}) (.+)$", text, flags=re.M)
    return {heading: part for marks, heading, part in zip(parts[1::3], parts[2::3], parts[3::3])
            if len(marks) == level}


def run(*command):
    done = subprocess.run(command, capture_output=True, text=True, timeout=60)
    return done.returncode, done.stdout.strip()


# ---- options


def documented_options(text):
    return {option for row in rows(text) if row[0].startswith("`-")
            for option in OPTION.findall(row[0].replace("`", " "))}


def help_options(text):
    """Options at the head of a line of the help, with their value's name."""
    found = set()
    for line in text.splitlines():
        match = re.match(r"  (?:-\w,)?(--[a-z][a-z-]*(?: \S+)?)(?:  |$)", line)
        if match:
            found.add(match.group(1))
    return found


def check_options(tool):
    parts = sections(read("docs/command-line.md"), 2)
    groups = {"[settings](#settings)": "Settings", "[range](#range)": "Range"}
    status, text = run(tool, "--help")
    commands = re.findall(r"^  (\w+)  ", text.split("Commands:")[1].split("\n\n")[0], re.M)
    if status or not commands:
        yield f"--help: status {status}, commands {commands}"
    for command in commands:
        part = parts.get(command)
        if part is None:
            yield f"no section of {command}"
            continue
        told = documented_options(part) | documented_options(parts["General options"])
        for link, group in groups.items():
            if link in part:
                told |= documented_options(parts[group])
        has = help_options(run(tool, command, "--help")[1])
        if not has:
            yield f"{command}: the help shows no options"
        for option in sorted(told ^ has):
            where = "the document" if option in told else "the help"
            yield f"{command}: only {where} has {option}"


# ---- templates


def check_templates(tool):
    text = read("docs/templates.md")
    tried = 0
    for row in rows(sections(text, 3)["Examples"]):
        template, kind, sample, result = (cell.strip("`") for cell in row)
        status, value = run(tool, "template", kind, template, sample)
        tried += 1
        if status != (1 if result.startswith("refused") else 0) or (status == 0 and value != result):
            yield f"{template} on {sample}: status {status}, {value}; told {result}"
    if tried < 10:
        yield f"only {tried} examples found"
    listed = {row[0]: re.findall(r"`([^`]+)`", row[1]) for row in rows(text)
              if row[0] in ("Date", "Time") and len(row) == 2}
    source = read("src/DataTypes.cpp")
    for kind, templates in listed.items():
        places = [source.find(f'"{template}"') for template in templates]
        if -1 in places or places != sorted(places):
            yield f"{kind}: the defaults differ from the code's: {templates}"
    if sorted(len(templates) for templates in listed.values()) != [10, 25]:
        yield "25 date and 10 time templates expected"


# ---- what the README shows


def check_readme(tool):
    shown = re.search(r"^```\n(\$ .*?)^```$", read("README.md"), re.S | re.M).group(1)
    commands = re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", shown, re.M)
    environment = dict(os.environ, LC_ALL="C",
                       PATH=os.path.dirname(tool) + os.pathsep + os.environ["PATH"])
    with tempfile.TemporaryDirectory() as folder:
        os.symlink(os.path.join(ROOT, "samples"), os.path.join(folder, "samples"))
        for command, told in commands:
            said = subprocess.run(command, shell=True, text=True, cwd=folder, env=environment,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
            if said.stdout.rstrip() != told.rstrip():
                yield f"{command}: the README shows\n{told}the tool says\n{said.stdout}"
    if len(commands) < 3:
        yield f"only {len(commands)} commands found"


# ---- dispids


def check_dispids(_):
    told = {}
    for name, part in sections(read("docs/hosting.md"), 3).items():
        told[name] = {(int(row[0]), row[1].strip("`")) for row in rows(part) if row[0].isdigit()}
    source = read("module/DispatchTables.cpp")
    tables = re.findall(r"DispatchTable<(\w+)>\(\)\n\{(.*?)\n\}\n", source, re.S)
    for name, body in tables:
        has = {(int(number, 0), row) for row, number in re.findall(
            r'Row<[^>]*>\(\s*OLESTR\("(\w+)"\),\s*(0x[0-9a-f]+|\d+)', body)}
        for number, row in sorted(has ^ told.get(name, set())):
            if name in told:
                yield f"{name}: {number} {row} stands on one side only"
    for name in ("IDataParser", "IRecordParser", "IDataParserEvents", "IValueMultiplier"):
        if not told.get(name) or name not in dict(tables):
            yield f"no table of {name}"


# ---- links


def anchors(text):
    return {re.sub(r"[^\w\- ]", "", heading).strip().lower().replace(" ", "-")
            for heading in re.findall(r"^#+ (.+)$", text, re.M)}


def check_links(_):
    pages = ["README.md", "CHANGELOG.md"] + [
        f"docs/{name}" for name in sorted(os.listdir(os.path.join(ROOT, "docs")))
        if name.endswith(".md")]
    for page in pages:
        text = read(page)
        for link in re.findall(r"\]\(([^)\s]+)\)", text):
            path, _, anchor = link.partition("#")
            if "://" in path:
                continue
            target = os.path.normpath(os.path.join(os.path.dirname(page), path)) if path else page
            if not os.path.exists(os.path.join(ROOT, target)):
                yield f"{page}: {link} leads nowhere"
            elif anchor and anchor not in anchors(read(target)):
                yield f"{page}: {link} names no heading"


def main():
    checks = {"options": check_options, "templates": check_templates, "readme": check_readme,
              "dispids": check_dispids, "links": check_links}
    what, tool = sys.argv[1], os.path.abspath(sys.argv[2])
    faults = list(checks[what](tool))
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
