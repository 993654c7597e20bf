#!/usr/bin/env python3
"""Writes SQL that copies the tables of the sample database into PostgreSQL, for psql.

Usage: sample_to_postgres.py SAMPLE_DATABASE > load.sql

Names keep their case (every identifier is quoted) and the declared types are mapped to the
server's: MONEY and CURRENCY to money, DATE to date, BOOLEAN to boolean, MEMO to text, and so
on. Rows go through COPY in its text format, NULLs included.
"""

import pathlib
import sqlite3
import sys

TYPES = {
    "INTEGER": "integer",
    "SMALLINT": "smallint",
    "TEXT": "text",
    "MEMO": "text",
    "DATE": "date",
    "MONEY": "money",
    "CURRENCY": "money",
    "REAL": "real",
    "BOOLEAN": "boolean",
}


def identifier(name):
    return '"' + name.replace('"', '""') + '"'


def copy_field(value, declared):
    if value is None:
        return "\\N"
    if declared == "BOOLEAN":
        return "t" if value else "f"
    text = str(value)
    for plain, escaped in (("\\", "\\\\"), ("\t", "\\t"), ("\n", "\\n"), ("\r", "\\r")):
        text = text.replace(plain, escaped)
    return text


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: sample_to_postgres.py SAMPLE_DATABASE")
    source = sqlite3.connect(pathlib.Path(sys.argv[1]).absolute().as_uri() + "?mode=ro", uri=True)
    out = ["SET client_encoding = 'UTF8';"]
    tables = [row[0] for row in source.execute(
        "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%' "
        "ORDER BY rowid")]
    for table in tables:
        columns = [(row[1], row[2].upper()) for row in
                   source.execute(f"PRAGMA table_info({identifier(table)})")]
        unknown = [declared for _, declared in columns if declared not in TYPES]
        if unknown:
            sys.exit(f"sample_to_postgres.py: no PostgreSQL type for {unknown} in {table}")
        out.append(f"CREATE TABLE {identifier(table)} (" + ", ".join(
            f"{identifier(name)} {TYPES[declared]}" for name, declared in columns) + ");")
        out.append(f"COPY {identifier(table)} FROM STDIN;")
        select = ", ".join(identifier(name) for name, _ in columns)
        for row in source.execute(f"SELECT {select} FROM {identifier(table)} ORDER BY rowid"):
            out.append("\t".join(copy_field(value, declared)
                                 for value, (_, declared) in zip(row, columns)))
        out.append("\\.")
    sys.stdout.buffer.write(("\n".join(out) + "\n").encode("utf-8"))


if __name__ == "__main__":
    main()
