#!/usr/bin/python3
"""Checks docs/check.schema.json against shipped checks, examples and samples."""

import json
import pathlib
import re
import sys

import jsonschema

TOP = pathlib.Path(__file__).resolve().parents[3]


def read(path):
    return json.loads((TOP / path).read_text(encoding="utf-8"))


def main():
    schema = read("docs/check.schema.json")
    jsonschema.Draft7Validator.check_schema(schema)
    validator = jsonschema.Draft7Validator(schema)
    right = {str(path): json.loads(path.read_text(encoding="utf-8"))
             for path in (TOP / "doctor/checks").glob("*.json")}
    guide = (TOP / "docs/checks.md").read_text(encoding="utf-8")
    examples = re.findall(r"^```json\n(.*?)^```", guide, re.MULTILINE | re.DOTALL)
    right.update({f"example {i}": json.loads(text) for i, text in enumerate(examples, 1)})
    samples = "tests/doctor/format/samples/"
    right.update({f"right sample {i}": sample
                  for i, sample in enumerate(read(samples + "right.json"), 1)})
    faults = [f"{name}: {error.message[:300]}" for name, value in right.items()
              for error in validator.iter_errors(value)]
    faults += [f"wrong sample {i} is accepted"
               for i, sample in enumerate(read(samples + "wrong.json"), 1)
               if validator.is_valid(sample)]
    if len(examples) < 5:
        faults.append("docs/checks.md has fewer than five examples")
    print(f"{len(right)} right files")
    for fault in faults:
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
