#!/usr/bin/env python3
"""Validates what gbdriver-cli prints with --json.

usage: validate_events.py SCHEMA FILE...

Each file holds the output of one run: every line must be an object that the schema describes, and
the last one, and no other, the event "end". Prints one line of JSON for each file: the definitions
that its lines matched, in order; and the problem, which says which line is wrong, and how.
"""
import json
import sys

try:
    import jsonschema
except ImportError:
    sys.exit("The package python3-jsonschema is missing; tools/setup.sh test installs it.")


def definition_of(validators, event):
    """The one definition that the event matches."""
    matches = [name for name, validator in validators.items() if validator.is_valid(event)]
    if len(matches) == 1:
        return matches[0]
    reasons = [
        "%s: %s" % (name, error.message)
        for name, validator in validators.items()
        for error in validator.iter_errors(event)
    ]
    raise ValueError("matches %s\n  %s" % (matches or "nothing", "\n  ".join(reasons)))


def validate(validators, whole, output):
    """The definitions that the lines match, and the first problem."""
    lines = output.split("\n")
    if lines.pop() != "" or not lines:
        return [], "The output is empty or does not end with a line break."
    definitions = []
    for number, line in enumerate(lines, 1):
        try:
            event = json.loads(line)
            definitions.append(definition_of(validators, event))
            whole.validate(event)
            if (event["event"] == "end") != (number == len(lines)):
                raise ValueError('"end" must be the last line, and only that')
        except (ValueError, jsonschema.ValidationError) as error:
            return definitions, "line %d, %s\n  %s" % (number, line, error)
    return definitions, ""


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft7Validator.check_schema(schema)
    validators = {
        row["$ref"].rsplit("/", 1)[1]: jsonschema.Draft7Validator(
            {"$ref": row["$ref"], "definitions": schema["definitions"]}
        )
        for row in schema["oneOf"]
    }
    whole = jsonschema.Draft7Validator(schema)
    for name in sys.argv[2:]:
        with open(name, "rb") as file:
            definitions, problem = validate(validators, whole, file.read().decode("utf-8"))
        print(json.dumps({"definitions": definitions, "problem": problem}))


main()
