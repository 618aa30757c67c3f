"""What the full-capacity scenario must give, and what counts as a wrong answer."""
import collections
import json
import os
import re
import sys
import threading
import time

from .harness import PERIOD, ROOT, SetupError

sys.path.insert(0, os.path.join(ROOT, "scripts"))
import mib_facts  # noqa: E402  (the MIB's shapes and the collector's calls, as the sources declare them)

# EXPECTED_OBJECTS: every table has fixed rows, so every complete walk of the
# MIB has exactly this many objects, whatever the switch answers.
# PINNED: values the scenario file fixes (the last row of every table and the
# table sizes), relative to B = 1.3.6.1.4.1.<enterprise>.3.5.1; the first
# healthy walk must show them before it is taken as the reference.
# The collector's health (B.8) rides along: its scalars and call cells are
# counted, their names checked and, while healthy, the state must be ok; their
# other values (times, counts, last errors) move by design.
DATA_OBJECTS = mib_facts.data_objects()
HEALTH_OBJECTS = mib_facts.health_objects()
EXPECTED_OBJECTS = DATA_OBJECTS + HEALTH_OBJECTS
# The ten calls of a collection, the targets of "only".
CALLS = mib_facts.calls()
HEALTH_ARC = "8"
HEALTH_STATE = "8.1.0"
HEALTH_CALL_NAMES = "8.13.1.2."
PINNED = {
    "1.1.0": "Counter32: 48",
    "2.1.0": "Counter32: 24",
    "3.1.0": "Counter32: 5",
    "5.1.0": "Counter32: 60",
    "7.1.0": "Counter32: 3",
    "1.2.1.2.47": 'STRING: "eth48"',
    "2.2.1.2.23": 'STRING: "prs24"',
    "3.2.1.2.4": "INTEGER: 4",
    "5.2.1.5.59": 'STRING: "peer-60"',
    "5.2.1.6.59": 'STRING: "00:1b:21:00:00:3c"',
    "5.2.1.7.59": "IpAddress: 198.51.100.60",
    "5.2.1.10.59": "INTEGER: 120",
    "7.2.1.0": 'STRING: "lag1"',
    "7.4.1.0": 'STRING: "lag3"',
    "7.4.6.1.2.5": 'STRING: "3/18"',
}
# The tables, by entry OID relative to B, read column by column as snmptable does.
TABLES = ["1.2.1", "2.2.1", "3.2.1", "5.2.1", "7.2.6.1", "7.3.6.1", "7.4.6.1"]

# What an object may show when the daemon has no switch data for it: a row
# never written (" " and -1), a record whose data is absent (the empty string,
# -1 or 0 for numbers, the record's defaults), a count of nothing (0), an
# address not received (0.0.0.0). The "defined empty value" of each type.
EMPTY = {'STRING: " "', '""', "INTEGER: -1", "INTEGER: 0", "Counter32: 0", "IpAddress: 0.0.0.0"}
# A port counter without data shows the text "0".
EMPTY_COUNTER = EMPTY | {'STRING: "0"'}

# The switch's own chassis id: the one its LLDP configuration gives, or else
# its main MAC address as lower-case colon-separated hex; the second shows
# while LLDP:GetConfig fails, so it is one more right value while disturbed.
CHASSIS_ID = "4.1.0"


# What counts as a failed or wrong answer (checked by the walkers and the table
# reader, see check_value for the values):
#   - a walk that fails (snmpbulkwalk's status not 0, a time-out) or that does
#     not give exactly EXPECTED_OBJECTS objects, or a table read that fails or
#     does not give exactly the reference's objects of that table; excused only
#     when a master restart overlapped it (the master was down), never because
#     of a switch fault: the sub-agent must answer whatever the switch does;
#   - an object that the reference walk does not have;
#   - a value that is neither the scenario's (the reference walk's, or for a
#     counter a value not below the last one seen) nor, while a disturbance may
#     still show, the defined empty value of its type (EMPTY, EMPTY_COUNTER)
#     or the fallback that the daemon defines for it (CHASSIS_ID);
#     once no disturbance has touched the SETTLE seconds before a read, only
#     the scenario's value is right.
# Beside answers, these count as failures: the daemon not registered again
# with a restarted master in time, a collection starting while the options
# file has turned collection off, no call reaching the switch over a fault
# step while collection is on, a control command refused by the simulator.
#
# After a disturbance ends (a fault answered away, the master back, collection
# on again), the published values may still be those of the disturbed
# collection until a clean one has completed: a call in flight (up to the
# receive time-out), the rest of that collection, the longest period the
# options writer sets (3 s) and a whole clean collection. SETTLE covers that
# with a margin; a walk is "healthy" when no disturbance touched
# [its start - SETTLE, its end].
SETTLE = 7.0


class Failures:
    """Every failed or wrong answer, kept with its first few details."""

    def __init__(self):
        self.lock = threading.Lock()
        self.counts = collections.Counter()
        self.details = collections.defaultdict(list)

    def add(self, kind, detail):
        with self.lock:
            self.counts[kind] += 1
            if len(self.details[kind]) < 5:
                self.details[kind].append(detail)

    def total(self):
        with self.lock:
            return sum(self.counts.values())


class Disturbances:
    """Time intervals in which something was disturbed on purpose, by kind:
    "fault" (the switch), "restart" (the master: reads may fail then),
    "options" (collection turned off); [kind, start, end], end None while it lasts."""

    def __init__(self):
        self.lock = threading.Lock()
        self.intervals = []

    def begin(self, kind):
        with self.lock:
            interval = [kind, time.monotonic(), None]
            self.intervals.append(interval)
            return interval

    @staticmethod
    def end(interval):
        interval[2] = time.monotonic()

    def touches(self, start, end, settle, kinds=("fault", "restart", "options")):
        """Whether a disturbance of those kinds overlapped [start - settle, end]."""
        with self.lock:
            intervals = list(self.intervals)
        for kind, begin, finish in intervals:
            if kind in kinds and begin <= end and (finish is None or finish + settle >= start):
                return True
        return False


def parse_objects(text):
    """snmpbulkwalk/snmpbulkget -On output -> [(oid, value)]; a Hex-STRING or a
    text with line breaks continues on the following lines."""
    objects = []
    for line in text.splitlines():
        match = re.match(r"^(\.[0-9.]+) = (.*)$", line)
        if match:
            objects.append([match.group(1)[1:], match.group(2)])
        elif objects:
            objects[-1][1] += "\n" + line
    return [tuple(o) for o in objects]


def counter_value(value):
    match = re.fullmatch(r'STRING: "(-?[0-9]+)"', value)
    return int(match.group(1)) if match else None


class Oracle:
    """The reference walk (the first with the whole scenario in it) and the
    values a disturbance may show instead."""

    def __init__(self, base):
        self.base = base
        self.reference = {}  # oid -> value of the first healthy walk
        self.alternatives = {}  # oid -> the other value that a disturbance may show
        self.counter_columns = set()  # columns whose values grow (the port counters)

    def learn(self, lab):
        # The reference: the first walk with the whole scenario in it.
        deadline = time.monotonic() + 30
        while time.monotonic() < deadline:
            if lab.daemon.poll() is not None:
                raise SetupError("the daemon ended at start; see daemon.out and log/")
            status, output = lab.walk()
            objects = parse_objects(output) if status == 0 else []
            values = {oid[len(self.base) + 1:]: value for oid, value in objects}
            if len(objects) == EXPECTED_OBJECTS and all(values.get(k) == v for k, v in PINNED.items()):
                break
            time.sleep(0.5)
        else:
            raise SetupError(f"no walk of {EXPECTED_OBJECTS} objects with the scenario's values in 30 s; "
                             f"last walk: {len(objects)} objects")
        # The port counters are the columns of decimal texts (a counter is served
        # as the text of its value); some of them count with the simulator's
        # clock, which two walks a few collections apart must show.
        columns = collections.defaultdict(list)
        for oid, value in objects:
            columns[oid.rsplit(".", 1)[0]].append(counter_value(value))
        self.counter_columns = {c for c, v in columns.items() if None not in v and len(v) > 1}
        time.sleep(2.5 * PERIOD)
        _, later = lab.walk()
        later = dict(parse_objects(later))
        health = f"{self.base}.{HEALTH_ARC}."
        moved = {oid.rsplit(".", 1)[0] for oid, value in objects
                 if later.get(oid) != value and not oid.startswith(health)}
        if not moved or not moved <= self.counter_columns:
            raise SetupError(f"between two walks {len(moved)} columns moved, "
                             f"{len(moved - self.counter_columns)} of them not counters")
        self.reference = dict(objects)
        with open(lab.scenario) as f:
            digits = re.sub("[^0-9a-f]", "", json.load(f)["mainMacAddress"].lower())
        self.alternatives = {f"{self.base}.{CHASSIS_ID}":
                             'STRING: "' + ":".join(digits[i:i + 2] for i in range(0, 12, 2)) + '"'}
    def check_value(self, oid, value, healthy, seen, where):
        """A wrong answer is a value that is neither the scenario's nor the
        defined empty value:
          - an object that the reference walk does not have;
          - in a counter column: anything but the decimal text of a value not
            below the last one this reader saw for that object (the simulator's
            counters only grow), or, while disturbed, a value of EMPTY_COUNTER;
          - elsewhere: anything but the reference value or, while disturbed, a
            value of EMPTY or the fallback that the daemon defines (CHASSIS_ID).
        Healthy (no disturbance over the read and SETTLE seconds before it): the
        reference value only."""
        expected = self.reference.get(oid)
        if expected is None:
            return f"{where}: unexpected object {oid} = {value}"
        relative = oid[len(self.base) + 1:]
        if relative.startswith(HEALTH_ARC + "."):
            if relative.startswith(HEALTH_CALL_NAMES) and value != expected:
                return f"{where}: {oid} = {value}, expected {expected}"
            if relative == HEALTH_STATE and healthy and value != "INTEGER: 1":
                return f"{where}: collector state {value} while the switch is healthy, expected ok (1)"
            return None
        if oid.rsplit(".", 1)[0] in self.counter_columns:
            number = counter_value(value)
            if number is not None and number >= seen.get(oid, counter_value(expected)):
                seen[oid] = number
                return None
            if not healthy and value in EMPTY_COUNTER:
                return None
            return (f"{where}: {oid} = {value}, not a counter at or above "
                    f"{seen.get(oid, counter_value(expected))}" + ("" if healthy else " nor an empty value"))
        if value == expected or (not healthy and (value in EMPTY or value == self.alternatives.get(oid))):
            return None
        return f"{where}: {oid} = {value}, expected {expected}" + ("" if healthy else " or an empty value")