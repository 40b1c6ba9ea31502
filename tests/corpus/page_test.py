"""Runs what docs/corpora.md shows in R or Python over the table that workflow_test.py left: page_test.py r|python FOLDER."""

import os
import re
import shutil
import subprocess
import sys

TREE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
PROGRAMS = {
    "r": (["Rscript", "--vanilla"], ["-e", "library(nlme)"]),
    "python": (["/usr/bin/python3"], ["-c", "import pandas"]),
}


def main(language, work):
    program, asks = PROGRAMS[language]
    results = os.path.join(work, "results")
    there = shutil.which(program[0]) and subprocess.run([*program[:1], *asks], capture_output=True).returncode == 0
    if not there or not os.path.exists(os.path.join(results, "corpus.csv")):
        print(f"{program[0]} with its packages, or the table, is not there")
        return 77
    with open(os.path.join(TREE, "docs", "corpora.md"), encoding="utf-8") as page:
        blocks = re.findall(rf"^```{language}\n(.*?)^```$", page.read(), re.MULTILINE | re.DOTALL)
    script = os.path.join(work, f"page.{language}")
    with open(script, "w", encoding="utf-8") as file:
        file.write("\n".join(blocks))
    done = subprocess.run(
        [*program, script], cwd=results, capture_output=True, text=True, env={**os.environ, "LC_ALL": "C.UTF-8"}
    )
    print(done.stdout, done.stderr)
    # Both print a line for each of the four speakers, and numbers.
    wanted = ["甲 male", "it's", '"q"', "d,e", "duration"]
    return 0 if blocks and done.returncode == 0 and all(word in done.stdout for word in wanted) else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
