"""What a long run measures, what is asked for, and the table of both."""
import json
import statistics
import time

LOG_SPAN = 60  # seconds in which a line may be repeated once


def quarters(values):
    """The medians of the four quarters of a series."""
    count = len(values)
    parts = [values[count * i // 4:count * (i + 1) // 4] for i in range(4)]
    return [statistics.median(part) for part in parts if part]


def growth(values):
    """By how much of the second quarter the last one is above it."""
    medians = quarters(values)
    return (medians[3] - medians[1]) / medians[1] if len(medians) == 4 and medians[1] else None


class RepeatedLines:
    """Finds lines that are repeated more than once within a minute by one run of
    the program, which starts itself again when the session's bus does."""

    def __init__(self):
        self.said, self.repeated = {}, {}

    def add(self, line, moment):
        if " top-level items" in line:  # the line of a start
            self.said = {}
        times = self.said.setdefault(line, [])
        if len(times) == 2 and moment - times[0] < LOG_SPAN:
            self.repeated[line] = self.repeated.get(line, 0) + 1
        self.said[line] = times[-1:] + [moment]


class Table:
    """Figures beside their targets."""

    def __init__(self, part):
        self.part, self.rows, self.series, self.notes = part, [], {}, []

    def add(self, what, value, unit, target, good):
        self.rows.append({"what": what, "value": value, "unit": unit, "target": target, "ok": bool(good)})

    def at_most(self, what, value, limit, unit=""):
        self.add(what, value, unit, f"at most {limit:g}", value is not None and value <= limit)

    def at_least(self, what, value, limit, unit=""):
        self.add(what, value, unit, f"at least {limit:g}", value is not None and value >= limit)

    def flat(self, what, values, allowed, unit):
        """The last quarter is at most `allowed` (a part) above the second."""
        medians, grown = quarters(values), growth(values)
        self.series[what] = values
        self.notes.append(f"{what}, each quarter: {', '.join(f'{each:.1f}' for each in medians)} {unit}")
        self.add(f"{what}, last quarter over the second", None if grown is None else 100 * grown, "%",
                 f"at most {100 * allowed:g}", grown is not None and grown <= allowed)

    def write(self, path):
        data = {"part": self.part, "time": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime()), "figures": self.rows,
                "series": self.series, "notes": self.notes}
        path.write_text(json.dumps(data, indent=1, ensure_ascii=False) + "\n", encoding="utf-8")


def show(data):
    """Prints what write() wrote; true when every target is met."""
    print(f"{data['part']}:")
    for row in data["figures"]:
        value = "-" if row["value"] is None else f"{row['value']:.2f}"
        print(f"  {row['what']:58}{value:>10} {row['unit']:5}{'ok  ' if row['ok'] else 'MISS'} {row['target']}")
    for note in data["notes"]:
        print(f"    {note}")
    return all(row["ok"] for row in data["figures"])
