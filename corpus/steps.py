"""The steps of the workflow. All work in the current folder, that of the results:

groups/GROUP.json   what a job measures: program, options, folder, and the recordings with their keys
groups/GROUP.csv    its table, written beside and renamed
plan.json           the recordings in order, each with the group that has its rows
corpus.csv, .db     the gathered table
report/             index.html and its pictures

A recording's key says everything that its rows depend on: the program, the options, its name, size and time of change,
and the label file beside it with its content. A recording whose key stands in a finished group is not measured again; the
others are put into new groups. A group is named by its list, so that a table belongs to its list for ever.
"""

import collections
import csv
import functools
import hashlib
import html
import json
import os
import shutil
import sqlite3
import subprocess
import sys

MOST_IN_GROUP = 500  # paths that surely fit into one command line
LABEL_ENDINGS = (".TextGrid", ".textgrid", ".TEXTGRID", ".lbl", ".LBL", ".txt", ".TXT")  # in the step's order
TEXT_COLUMNS = ("recording", "tier", "label", "problem")
WHOLE_COLUMNS = ("index", "sample_rate", "analysis_rate")
BAD_NAME = "the file name is not UTF-8"

csv.field_size_limit(1 << 30)


class Refused(Exception):
    pass


# --- Files


def read_json(path):
    try:
        with open(path, encoding="utf-8") as file:
            return json.load(file)
    except FileNotFoundError:
        return None


def replace(path, data):
    """Writes a file beside its target, flushes, renames."""
    part = f"{path}.part{os.getpid()}"
    with open(part, "wb") as file:
        file.write(data)
        file.flush()
        os.fsync(file.fileno())
    os.replace(part, path)


def replace_json(path, value):
    """The same, and nothing when the file has that value: its time is what the engine goes by."""
    text = json.dumps(value, indent=0).encode()
    try:
        with open(path, "rb") as file:
            if file.read() == text:
                return
    except FileNotFoundError:
        pass
    replace(path, text)


def digest(value):
    return hashlib.sha256(json.dumps(value).encode()).hexdigest()[:24]


def digest_of_file(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


# --- Discover


def find_program(config, key, name, tree):
    if config.get(key):
        found = shutil.which(os.path.expanduser(str(config[key])))
    else:
        builds = [os.path.join(tree, "build", preset, "bin", name) for preset in ("release", "ci", "dev")]
        found = next((path for path in builds if os.access(path, os.X_OK)), None) or shutil.which(name)
    if not found:
        raise Refused(f"no {name}: build it (./run.sh builds all), or name it in the config under {key}")
    return os.path.abspath(found)


def options_of(config):
    def words(key):
        value = config.get(key)
        value = [] if value is None else value if isinstance(value, list) else [value]
        return [str(word) for word in value]

    options = []
    for tier in words("tiers"):
        options += ["--tier", tier]
    if words("measures"):
        options += ["--measures", ",".join(words("measures"))]
    for key in ("points", "range", "channel"):
        for word in words(key)[:1]:
            options += [f"--{key}", word]
    return options


def recordings_of(folder, endings, without):
    """Paths from `folder`, links followed once, hidden files and the results left out."""
    seen = {os.path.realpath(without)}
    found = []
    for here, folders, files in os.walk(folder, followlinks=True):
        real = os.path.realpath(here)
        if real in seen:
            folders.clear()
            continue
        seen.add(real)
        folders[:] = [name for name in folders if not name.startswith(".")]
        for name in files:
            path = os.path.join(here, name)
            if name.lower().endswith(endings) and not name.startswith(".") and os.path.isfile(path):
                found.append(os.path.relpath(path, folder))
    return found


def label_of(path):
    """The label file that the step will find, and its content; None without one."""
    stem = os.path.splitext(path)[0]
    for ending in LABEL_ENDINGS:
        if os.path.isfile(stem + ending):
            try:
                return [ending, digest_of_file(stem + ending)]
            except OSError:
                return [ending, "unreadable"]
    return None


def settings_of(program, options):
    return [digest_of_file(program), options]


def key_of(settings, name, path):
    stamp = os.stat(path)
    readable = os.access(path, os.R_OK)
    return digest([settings, name, stamp.st_size, stamp.st_mtime_ns, readable, label_of(path)])


def discover(config, corpus_folder):
    """Writes the groups that are to be measured, and the plan."""
    program = find_program(config, "program", "parlowen-measure", os.path.dirname(corpus_folder))
    reporter = find_program(config, "report_program", "parlowen-report", os.path.dirname(corpus_folder))
    options = options_of(config)
    settings = settings_of(program, options)
    try:
        size = int(config["group"])
    except (KeyError, TypeError, ValueError):
        size = 0
    if not 1 <= size <= MOST_IN_GROUP:
        raise Refused(f"group must be a number from 1 to {MOST_IN_GROUP}")
    folders = [str(folder) for folder in config.get("folders") or []]
    if not folders:
        raise Refused("no folder of recordings: run.sh FOLDER, or folders in the config")
    endings = tuple(str(ending).lower() for ending in config["endings"])

    # One folder: names from there. Several: names begin with the folder's own.
    wanted = {}  # name -> folder to stand in
    for folder in folders:
        if not os.path.isabs(folder) or not os.path.isdir(folder):
            raise Refused(f"no folder {folder} (full paths are asked for)")
        folder = os.path.normpath(folder)
        base = folder if len(folders) == 1 else os.path.dirname(folder)
        for path in recordings_of(folder, endings, os.getcwd()):
            name = os.path.relpath(os.path.join(folder, path), base)
            if wanted.setdefault(name, base) != base:
                raise Refused(f"two folders are called {os.path.basename(folder)}: their recordings have the same names")
    if not wanted:
        raise Refused(f"no recordings ({' '.join(endings)}) in {' '.join(folders)}")

    os.makedirs("groups", exist_ok=True)
    os.makedirs("logs", exist_ok=True)
    finished = {}  # key -> group
    for file in sorted(os.listdir("groups")):
        group, ending = os.path.splitext(file)
        if ending == ".csv" and (made := read_json(f"groups/{group}.json")):
            for _, key in made["recordings"]:
                finished[key] = group

    plan, missing = [], collections.defaultdict(list)
    for name in sorted(wanted):
        try:
            name.encode()
        except UnicodeEncodeError:
            plan.append([os.fsencode(name).decode(errors="replace"), None])
            continue
        key = key_of(settings, name, os.path.join(wanted[name], name))
        plan.append([name, finished.get(key)])
        if key not in finished:
            missing[wanted[name]].append((plan[-1], key))
    for base, entries in missing.items():
        for at in range(0, len(entries), size):
            some = entries[at : at + size]
            content = {
                "program": program,
                "options": options,
                "folder": base,
                "recordings": [[entry[0], key] for entry, key in some],
            }
            group = digest(content)
            replace_json(f"groups/{group}.json", content)
            for entry, _ in some:
                entry[1] = group
    if not any(group for _, group in plan):
        raise Refused("the name of no recording is UTF-8")
    replace_json(
        "plan.json",
        {
            "reporter": reporter,
            "groups": sorted({group for _, group in plan if group}),
            "recordings": plan,
        },
    )


# --- Measure


def records_of(path):
    """The records of a table as they stand, with their line ends; notes and the byte order mark left out."""
    with open(path, encoding="utf-8-sig", newline="\n") as file:
        record, inside, header = "", False, False
        for line in file:
            if not header and not inside and line.startswith("#"):
                continue
            record += line
            inside ^= line.count('"') % 2 == 1
            if not inside:
                yield record
                record, header = "", True
    if record:
        raise Refused(f"{path} is cut off; remove it and start again")


def cells(record):
    return next(csv.reader([record], strict=True))


def read_table(path):
    """The header of a group's table, and the records of each recording."""
    records = records_of(path)
    header = next(records, None)
    if header is None or cells(header)[0] != "recording":
        raise Refused(f"{path} is no table; remove it and start again")
    rows = collections.defaultdict(list)
    for record in records:
        rows[cells(record)[0]].append(record)
    return header, rows


def measure(group_file, table):
    job = read_json(group_file)
    part = os.path.abspath(f"{table}.part{os.uname().nodename}-{os.getpid()}")
    command = [job["program"], *job["options"], "--output", part, "--"]
    command += [name for name, _ in job["recordings"]]
    try:
        # 1: some recordings could not be read; the table says which.
        status = subprocess.run(command, cwd=job["folder"], stdin=subprocess.DEVNULL).returncode
        if status not in (0, 1):
            raise Refused(f"{job['program']} ended with {status}")
        header, rows = read_table(part)
        # What only seemed damaged because it vanished or was being written is no result.
        settings, start = settings_of(job["program"], job["options"]), cells(header).index("start")
        for name, key in job["recordings"]:
            failed = any(not cells(record)[start] for record in rows.get(name, []))
            if failed and key_of(settings, name, os.path.join(job["folder"], name)) != key:
                raise Refused(f"{name} changed while it was measured")
        os.replace(part, table)
    finally:
        if os.path.exists(part):
            os.remove(part)


# --- Gather


def sql_type(column):
    return "TEXT" if column in TEXT_COLUMNS else "INTEGER" if column in WHOLE_COLUMNS else "REAL"


def gather():
    """corpus.csv and corpus.db, a recording after the other; then groups that nobody needs any more are removed."""
    plan = read_json("plan.json")
    table_of = functools.lru_cache(maxsize=16)(lambda group: read_table(f"groups/{group}.csv"))
    header = table_of(plan["groups"][0])[0]
    columns = cells(header)

    def rows():
        for name, group in plan["recordings"]:
            if group is None:
                record = {"recording": name, "problem": BAD_NAME}
                values = [record.get(column, "") for column in columns]
                yield ",".join('"' + v.replace('"', '""') + '"' if v else "" for v in values) + "\n"
                continue
            own, records = table_of(group)
            if own != header:
                raise Refused(f"groups/{group}.csv has other columns; remove it and start again")
            yield from records.get(name, [])  # none when its tiers hold no text

    quoted = ['"' + column.replace('"', '""') + '"' for column in columns]
    kinds = [sql_type(column) for column in columns]
    for name in ("corpus.db.part", "corpus.db.part-journal"):
        if os.path.exists(name):
            os.remove(name)
    database = sqlite3.connect("corpus.db.part")
    database.execute("CREATE TABLE intervals (" + ", ".join(map(" ".join, zip(quoted, kinds))) + ")")
    insert = f"INSERT INTO intervals VALUES ({', '.join('?' * len(columns))})"
    with open("corpus.csv.part", "w", encoding="utf-8", newline="\n") as file:
        file.write("\ufeff" + header)
        for record in rows():
            file.write(record)
            values = zip(cells(record), kinds, strict=True)
            # Texts are texts, also empty ones; an empty number is none. The columns' types make numbers of the rest.
            database.execute(insert, [value if value or kind == "TEXT" else None for value, kind in values])
        file.flush()
        os.fsync(file.fileno())
    database.execute("CREATE INDEX intervals_label_tier ON intervals (label, tier)")
    database.commit()
    database.close()
    os.replace("corpus.csv.part", "corpus.csv")
    os.replace("corpus.db.part", "corpus.db")

    for folder, needed in (("groups", set(plan["groups"])), ("logs", set(plan["groups"]))):
        for file in os.listdir(folder):
            if file.split(".")[0] not in needed or ".part" in file:
                os.remove(os.path.join(folder, file))


# --- Report

PAGE = """<!DOCTYPE html>
<html lang="zh-CN"><head><meta charset="utf-8"><title>语料测量报告</title>
<style>body{{font-family:sans-serif;max-width:60em;margin:2em auto;padding:0 1em}} table{{border-collapse:collapse}}
td,th{{border:1px solid #c8c8c8;padding:.2em .6em;text-align:left}} td.n{{text-align:right}} img{{max-width:100%}}</style>
</head><body>
<h1>语料测量报告</h1>
<table>{counts}</table>
<h2>各层</h2>
<table><tr><th>层</th><th>行数</th><th>有声行</th><th>平均时长（秒）</th><th>平均基频（Hz）</th></tr>{tiers}</table>
<h2>不能测量的录音</h2>
{failures}
<h2>不全的行</h2>
{gaps}
<h2>分布</h2>
{pictures}
<p>表：<a href="../corpus.csv">corpus.csv</a>、<a href="../corpus.db">corpus.db</a>（表 intervals）</p>
</body></html>
"""
PICTURES = (("duration.svg", "时长"), ("f0.svg", "基频"), ("formants.svg", "F1–F2"))
MOST_LISTED = 1000


def html_rows(rows):
    def cell(value):
        if isinstance(value, float):
            value = f"{value:.3f}" if value < 10 else f"{value:.1f}"
        return ('<td class="n">' if not isinstance(value, str) else "<td>") + html.escape(str(value)) + "</td>"

    return "".join("<tr>" + "".join(cell("" if v is None else v) for v in row) + "</tr>\n" for row in rows)


def html_table(head, rows):
    if not rows:
        return "<p>没有。</p>"
    return "<table><tr>" + "".join(f"<th>{title}</th>" for title in head) + "</tr>\n" + html_rows(rows) + "</table>"


def report():
    """The page, its pictures, and the counts on standard output."""
    os.makedirs("report", exist_ok=True)
    subprocess.run([read_json("plan.json")["reporter"], "corpus.csv", "report"], check=True)
    database = sqlite3.connect("corpus.db")
    columns = {row[1] for row in database.execute("PRAGMA table_info(intervals)")}

    def mean(column):
        return f"AVG({column})" if column in columns else "NULL"

    voiced = "SUM(voiced > 0)" if "voiced" in columns else "NULL"
    # A recording that could not be read has a row without a beginning.
    failures = database.execute(
        "SELECT recording, problem FROM intervals WHERE start IS NULL ORDER BY rowid"
    ).fetchall()
    gaps = database.execute(
        "SELECT problem, COUNT(*), MIN(recording) FROM intervals WHERE problem <> '' AND start IS NOT NULL"
        " GROUP BY problem ORDER BY 2 DESC"
    ).fetchall()
    with_rows, rows = database.execute("SELECT COUNT(DISTINCT recording), COUNT(*) FROM intervals").fetchone()
    recordings = len(read_json("plan.json")["recordings"])
    tiers = database.execute(
        f"SELECT CASE tier WHEN '' THEN '（无层名）' ELSE tier END, COUNT(*), {voiced}, {mean('duration')}, {mean('f0_mean')}"
        " FROM intervals WHERE start IS NOT NULL GROUP BY tier ORDER BY MIN(rowid)"
    ).fetchall()
    database.close()
    incomplete = sum(count for _, count, _ in gaps)
    counts = [("录音", recordings), ("不能测量的", len(failures)), ("没有标注文字的", recordings - with_rows)]
    counts += [("行", rows), ("不全的行", incomplete)]
    more = f"<p>另有 {len(failures) - MOST_LISTED} 个。</p>" if len(failures) > MOST_LISTED else ""
    page = PAGE.format(
        counts=html_rows(counts),
        tiers=html_rows(tiers),
        failures=html_table(("录音", "原因"), failures[:MOST_LISTED]) + more,
        gaps=html_table(("原因", "行数", "例"), gaps),
        pictures="\n".join(
            f'<h3>{title}</h3><img src="{file}" alt="{title}">'
            for file, title in PICTURES
            if os.path.exists(os.path.join("report", file))
        ),
    )
    replace("report/index.html", page.encode())
    print(f"{recordings} recordings, {rows} rows, {len(failures)} failures, {incomplete} rows with gaps")
    for name, problem in failures[:10]:
        print(f"  {name}: {problem}")
    if len(failures) > 10:
        print(f"  and {len(failures) - 10} more: report/index.html")


if __name__ == "__main__":
    sys.stdout.reconfigure(errors="backslashreplace")  # a name that the terminal cannot show ends no run
    try:
        {"measure": measure, "gather": gather, "report": report}[sys.argv[1]](*sys.argv[2:])
    except (Refused, OSError, ValueError, csv.Error, sqlite3.Error, subprocess.CalledProcessError) as error:
        sys.exit(f"corpus: {error}")
