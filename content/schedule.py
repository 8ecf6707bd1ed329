"""The show's schedule as the content's checks need it, read from tarvisk/src/schedule.h."""

import os
import re

HEADER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tarvisk", "src", "schedule.h")
CUE = re.compile(r'constexpr cue_t (?P<id>\w+)\{"(?P<name>[^"]+)", (?P<beat>[\d.]+)f\};')
NUMBER = re.compile(r"constexpr float (?P<id>\w+) = (?P<from>(?:cue::)?[a-z]\w*)?(?:\.beat)?(?: \+ )?(?:(?P<plus>[\d.]+)f)?;")


def read():
    """({event name: beat}, {constant: number}); a definition in another form is an error that names it."""
    cues, numbers = {}, {}
    with open(HEADER, encoding="utf-8") as file:
        definitions = [line for line in file if line.startswith("constexpr")]
    for line in definitions:
        if cue := CUE.match(line):
            cues[cue["name"]] = numbers["cue::" + cue["id"]] = float(cue["beat"])
        elif number := NUMBER.match(line):
            numbers[number["id"]] = (numbers[number["from"]] if number["from"] else 0.0) + float(number["plus"] or 0)
        else:
            raise ValueError(f"schedule.h: cannot read: {line.strip()}")
    return cues, {name: value for name, value in numbers.items() if not name.startswith("cue::")}


CUES, NUMBERS = read()
