#!/usr/bin/python3
"""The private MIB's facts as the sources declare them, for the scripts: the
nodes (Libs/Snmp/sources/ObjectIdentifiers.def), the tables' shapes
(Libs/Snmp/sources/TableShapes.def, their row counts the domain's capacity
constants), the Ethernet counters (Dto/EthCounters.h) and the collector's calls
(Dto/Metrics/CollectorHealth.h). Nothing here is written twice.

    python3 scripts/mib_facts.py data-objects|health-objects|calls|columns
"""
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SNMP = os.path.join(ROOT, "Libs/Snmp/sources")
DTO = os.path.join(ROOT, "Libs/OrvoViaSwitch/Domain/include/Arq/OrvoViaSwitch/Domain")
PRIVATE = (3, 5, 1)  # arqSwitchOrvoVia
COLLECTOR = PRIVATE + (8,)
NOTIFICATIONS = COLLECTOR + (0,)


def _read(path):
    with open(path) as f:
        return f.read()


def nodes():
    """Name -> arcs below the enterprise arc."""
    return {name: tuple(int(a) for a in arcs.split(", "))
            for name, arcs in re.findall(r"^ARQ_MIB_NODE\((\w+), ([0-9, ]+)\)$",
                                         _read(os.path.join(SNMP, "ObjectIdentifiers.def")), re.M)}


def calls():
    """The collector's calls in the order they are made, as "Service:Method"."""
    text = _read(os.path.join(DTO, "Dto/Metrics/CollectorHealth.h"))
    return [f"{s}:{m}" for s, m in re.findall(r"^\s*X\((\w+), (\w+)\)", text, re.M)]


def _constants():
    found = {}
    for header in ("Monitoring/OrvoViaMonitoringValues.h", "Dto/Metrics/Metrics.h"):
        found.update((n, int(v)) for n, v in re.findall(
            r"inline constexpr std::size_t (k\w+) = (\d+);", _read(os.path.join(DTO, header))))
    found["kCollectorCallCount"] = len(calls())
    return found


def port_columns():
    """The columns of one Ethernet port: name, mode, speed, state, the counters, two rates."""
    counters = re.findall(r"^\s*X\((NbOf\w+)\)", _read(os.path.join(DTO, "Dto/EthCounters.h")), re.M)
    return 6 + len(counters)


def tables():
    """Table name -> (rows, served columns, from column 2 on)."""
    constants, ports = _constants(), port_columns()
    return {name: (constants[rows], int(own) + int(per) * ports)
            for name, rows, own, per in re.findall(r"^ARQ_MIB_TABLE\((\w+), (\w+), (\d+), (\d+)\)$",
                                                   _read(os.path.join(SNMP, "TableShapes.def")), re.M)}


def _objects(inside):
    """Scalars and table cells of the nodes whose arcs `inside` accepts."""
    all_nodes = nodes()
    arcs = set(all_nodes.values())
    shapes = tables()
    count = 0
    for name, node in all_nodes.items():
        if not inside(node) or any(a[:len(node)] == node and a != node for a in arcs):
            continue  # outside, or not a leaf
        if name.endswith("Entry"):
            rows, columns = shapes[name[:-len("Entry")] + "Table"]
            count += rows * columns
        else:
            count += 1
    return count


def data_objects():
    """Objects of a complete walk of the switch's data (arcs 1 to 7)."""
    return _objects(lambda n: n[:3] == PRIVATE and n[:4] != COLLECTOR)


def health_objects():
    """Objects of a complete walk of the collector's health (arc 8, notifications aside)."""
    return _objects(lambda n: n[:4] == COLLECTOR and n[:5] != NOTIFICATIONS)


if __name__ == "__main__":
    what = sys.argv[1] if len(sys.argv) == 2 else ""
    answers = {"data-objects": data_objects, "health-objects": health_objects,
               "calls": lambda: "\n".join(calls()),
               # Each entry with its columns, the index included: <entry>:<count>.
               "columns": lambda: "\n".join(f"{t[:-len('Table')]}Entry:{1 + c}" for t, (_, c) in tables().items())}
    if what not in answers:
        sys.exit(__doc__.rsplit("\n\n", 1)[1].strip())
    print(answers[what]())
