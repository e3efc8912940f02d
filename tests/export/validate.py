#!/usr/bin/python3
"""validate.py SCHEMA FILE: says which lines of FILE are no JSON objects as SCHEMA describes them.

Prints one line per fault, and the number of good lines at the end.
"""
import json
import sys

try:
    import jsonschema
except ImportError:
    sys.exit("validate.py: please install the Debian package python3-jsonschema")

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
good = 0
with open(sys.argv[2], encoding="utf-8") as lines:
    for number, line in enumerate(lines, 1):
        faults = [error.message for error in validator.iter_errors(json.loads(line))]
        good += not faults
        for fault in faults:
            print(f"{number}: {fault}")
print(f"{good} good")
