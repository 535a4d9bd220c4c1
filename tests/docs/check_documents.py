#!/usr/bin/env python3
"""Holds the documents against the code: check_documents.py WHAT PATH-TO-TABULEX

    options    docs/command-line.md lists exactly the options of each command's help
    templates  each example of docs/templates.md reads as told, and so do its defaults
    readme     what README.md shows is what the tool says
    dispids    docs/hosting.md has a table for each interface that is called by number, with the
               names, numbers and arguments of the dispatch tables
    ids        docs/hosting.md has the ids of fields and resolutions that hosts use
    quotes     the code that docs/hosting.md shows of an example stands there, and what the
               example tells is what the test of the installed package expects
    picture    docs/architecture.svg and docs/before-after.svg are what their scripts draw
    links      links between the documents and their headings lead somewhere
"""
import json
import os
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True  # the modules lie in the source tree

from hosting import check_dispids, check_ids, check_quotes
from tables import ROOT, read, rows, rows_below, run, sections

OPTION = re.compile(r"--[a-z][a-z-]*(?: [^\s`]*[A-Za-z][^\s`]*)?")


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
    groups = {"[settings](#settings)": "Settings", "[range](#range)": "Range",
              "[lines and cells](#lines-and-cells)": "Lines and cells"}
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


def check_examples(tool, text):
    head, tried = "| template | type | text | result |", 0
    for row in rows_below(text, head):
        template, kind, sample, result = (cell.strip("`") for cell in row)
        told, _, why = result.partition(": ")
        status, value = run(tool, "template", "--", kind, template, sample)
        tried += 1
        if status != (1 if told.startswith("refused") else 0) or (status == 0 and value != told):
            yield f"{template} on {sample}: status {status}, {value}; told {result}"
    if tried < 80:
        yield f"only {tried} examples found"
    for heading, part in sections(text, 3).items():
        if not list(rows_below(part, head)):
            yield f"no example of {heading}"


def check_defaults(text):
    listed = {row[0]: re.findall(r"`([^`]+)`", row[1])
              for row in rows_below(text, "| type | templates |")}
    source = read("src/parsing/DataTypes.cpp")
    for kind, templates in listed.items():
        places = [source.find(f'"{template}"') for template in templates]
        if -1 in places or places != sorted(places):
            yield f"{kind}: the defaults differ from the code's: {templates}"
    if {kind: len(templates) for kind, templates in listed.items()} != {"Date": 25, "Time": 10}:
        yield "25 date and 10 time templates expected"


def check_detection(tool, text):
    """A file of a row's dates is found to have the row's template."""
    tried = list(rows_below(text, "| dates of a file | found |"))
    for dates, found in tried:
        with tempfile.NamedTemporaryFile("w", suffix=".csv") as file:
            for date in re.findall(r"`([^`]+)`", dates):
                file.write(f"{date},10.5,11.5,10,10.75,100\n")
            file.flush()
            status, report = run(tool, "inspect", "--json", file.name)
        column = json.loads(report)["columns"][0] if status == 0 else report
        if column != {"type": "Date", "template": found.strip("`")}:
            yield f"{dates}: {column}; told {found}"
    if len(tried) < 3:
        yield f"only {len(tried)} files told"


def check_templates(tool):
    text = read("docs/templates.md")
    yield from check_examples(tool, text)
    yield from check_defaults(text)
    yield from check_detection(tool, text)


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


# ---- the picture


def check_picture(tool):
    sys.path.insert(0, os.path.join(ROOT, "scripts"))
    import draw_architecture
    import draw_before_after

    if draw_architecture.draw() != read("docs/architecture.svg"):
        yield "docs/architecture.svg is an old picture: run scripts/draw_architecture.py"
    if draw_before_after.draw(tool) != read("docs/before-after.svg"):
        yield "docs/before-after.svg is an old picture: run scripts/draw_before_after.py"


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
              "dispids": check_dispids, "ids": check_ids,
              "quotes": check_quotes, "picture": check_picture, "links": check_links}
    what, tool = sys.argv[1], os.path.abspath(sys.argv[2])
    faults = list(checks[what](tool))
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
