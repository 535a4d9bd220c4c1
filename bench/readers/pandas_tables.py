"""pandas_tables.py FILE...: what pandas reads in each file with its defaults, as a line of JSON."""
import json
import sys
import warnings

import pandas


def typed(column):
    """As moments where all of a column can be parsed so, as a person would ask for."""
    if column.dtype != object:
        return column
    try:
        return pandas.to_datetime(column)
    except (ValueError, TypeError, OverflowError):
        return column


def rows_of(path):
    table = pandas.read_csv(path, sep=None, engine="python").apply(typed)
    # Times alone are given the day of today, which isn't a fault.
    today = pandas.Timestamp.today().strftime("%Y-%m-%d ")
    return [[str(cell).removeprefix(today) for cell in row] for row in table.astype(str).values]


def main():
    warnings.simplefilter("ignore")
    for path in sys.argv[1:]:
        try:
            print(json.dumps({"rows": rows_of(path)}))
        except Exception as fault:  # whatever it is, the file wasn't read
            print(json.dumps({"fault": str(fault)}))


if __name__ == "__main__":
    main()
