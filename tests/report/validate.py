"""usage: validate.py SCHEMA STREAM: every line of the stream is what the schema says."""
import json
import sys

import jsonschema

with open(sys.argv[1], encoding="utf-8") as file:
    validator = jsonschema.Draft7Validator(json.load(file))
faults = 0
with open(sys.argv[2], encoding="utf-8") as stream:
    for number, line in enumerate(stream, 1):
        for error in validator.iter_errors(json.loads(line)):
            print(f"line {number}: {error.message}")
            faults += 1
sys.exit(1 if faults else 0)
