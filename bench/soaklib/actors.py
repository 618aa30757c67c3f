"""The soak run's workload, each a loop on a thread of its own until the run
stops: walkers, a table reader, a fault cycler, master restarts and an
options writer. `soak` is the run (bench/soak): the lab's processes, the
oracle, the failures, the disturbances and the tallies."""
import time

from .harness import FIFO, FOLDER_RECREATED, OVERSIZED, PERIOD, RECEIVE_TIMEOUT_MS
from .oracle import CALLS, EXPECTED_OBJECTS, SETTLE, TABLES, parse_objects
from .sampler import thread_cpu

LEVELS = ("Trace", "Debug", "Info", "Warning", "Error", "Fatal")
# CPU seconds a thread other than the SNMP one may use in the 4 s of a
# collection-off check: its log lines and a wake-up or two.
IDLE_THREAD_CPU = 0.2
# The daemon must register again with a restarted master within this time
# (with agentxPingInterval 2 it takes about 2 s here, snmpd's start included).
REGISTER_SECONDS = 10.0


def judge(soak, tally, kind, span, failure, objects, seen, where):
    """One read (a walk or a table read) over `span` (start, end): a failure
    is excused only when a master restart overlapped it, never because of a
    switch fault (the sub-agent must answer whatever the switch does);
    otherwise every value is checked, "healthy" when no disturbance touched it.
    Then the reader's pause: two readers at full speed would take more than the
    core this run may use (snmpd, the daemon and the tool share it)."""
    healthy = not soak.disturbances.touches(*span, SETTLE)
    if failure is not None:
        if soak.disturbances.touches(*span, 1.0, kinds=("restart",)):
            with soak.stats_lock:
                tally["failed during a master restart (excused)"] += 1
        else:
            soak.failures.add(f"failed {kind}", failure)
    else:
        wrong = [w for w in (soak.oracle.check_value(oid, value, healthy, seen, where)
                             for oid, value in objects) if w]
        for detail in wrong[:3]:
            soak.failures.add(f"wrong value in a {kind}", detail)
        with soak.stats_lock:
            tally["healthy" if healthy else "disturbed"] += 1
    soak.stop.wait(soak.args.walk_pause)


def walker(soak, number):
    seen = {}
    while not soak.stop.is_set():
        start = time.monotonic()
        status, output = soak.walk()
        end = time.monotonic()
        if soak.stop.is_set():
            break
        objects = parse_objects(output) if status == 0 else []
        with soak.stats_lock:
            soak.walk_counts[len(objects)] += 1
        # A walk fails when snmpbulkwalk fails or does not give every object.
        failure = None
        if status != 0 or len(objects) != EXPECTED_OBJECTS:
            failure = f"walker {number}: status {status}, {len(objects)} objects: {output.strip()[-200:]}"
        judge(soak, soak.walks, "walk", (start, end), failure, objects, seen, f"walker {number}")


def read_table(soak, entry, seen):
    """One table, as snmptable reads it: GETBULK (non-repeaters 0,
    max-repetitions 10) of up to ten columns at once, each request going on
    from the last row of the previous answer; (objects, error)."""
    prefix = f"{soak.base}.{entry}"
    columns = sorted({int(oid[len(prefix) + 1:].split(".")[0]) for oid in soak.oracle.reference
                      if oid.startswith(prefix + ".")})
    objects = []
    for first in range(0, len(columns), 10):
        cursors = {c: f"{prefix}.{c}" for c in columns[first:first + 10]}
        for _ in range(100):  # bounded: 10 rows a request, 60 rows at most
            if not cursors:
                break
            status, output = soak.run_tool(["snmpbulkget", "-v2c", "-c", "public", "-On", "-Cn0", "-Cr10",
                                            "-t", "2", "-r", "1", soak.peer] + list(cursors.values()), 30)
            if status != 0:
                return objects, output.strip()[-200:]
            answer = parse_objects(output)
            width = len(cursors)
            order = list(cursors)
            for i, (oid, value) in enumerate(answer):
                column = order[i % width]
                if column not in cursors:
                    continue
                if not oid.startswith(f"{prefix}.{column}.") or value.startswith("No more variables"):
                    del cursors[column]  # past the column's last row
                    continue
                objects.append((oid, value))
                cursors[column] = oid
        else:
            return objects, "more requests than the table can need"
    return objects, None

def table_reader(soak):
    seen = {}
    while not soak.stop.is_set():
        for entry in TABLES:
            if soak.stop.is_set():
                return
            start = time.monotonic()
            objects, error = read_table(soak, entry, seen)
            end = time.monotonic()
            if soak.stop.is_set():
                return
            expected = sorted(o for o in soak.oracle.reference if o.startswith(f"{soak.base}.{entry}."))
            failure = None
            if error is not None or sorted(o for o, _ in objects) != expected:
                failure = f"table {entry}: {len(objects)} of {len(expected)} objects; {error}"
            judge(soak, soak.table_reads, "table read", (start, end), failure, objects, seen,
                  f"table {entry}")


def fault_cycler(soak):
    """One fault at a time on one call or on every call, held a few
    seconds, then "answer" and a quiet spell long enough for healthy reads;
    "calls" checks that the collection goes on throughout."""
    behaviours = [
        "fault 3 soak: busy",
        # What a web server on the switch's port answers.
        "garbage HTTP/1.1 400 Bad Request",
        f"delay {RECEIVE_TIMEOUT_MS + 500}", "close", "exception soak: server failure", "garbage",
        "delay 300",
        # A valid binary-protocol version header followed by text.
        "garbage \x80\x01\x00\x02not a reply at all",
        "fault 15 soak: code beyond the list",
    ]
    step = 0
    last_calls = soak.calls()
    while not soak.stop.is_set():
        behaviour = behaviours[step % len(behaviours)]
        # Every other step on every call, else on one call in turn; as the
        # list has an odd length, each behaviour gets both in two rounds.
        target = "*" if step % 2 else CALLS[step % len(CALLS)]
        interval = soak.disturbances.begin("fault")
        for command in (f"only {target}", behaviour):
            answer = soak.control(command)
            if answer != "ok":
                soak.failures.add("simulator control", f"{command!r} answered {answer!r}")
        with soak.stats_lock:
            soak.fault_steps[behaviour.split()[0] + (" (every call)" if target == "*" else " (one call)")] += 1
        soak.stop.wait(soak.args.fault_seconds)
        if soak.control("answer") != "ok":
            soak.failures.add("simulator control", "answer refused")
        soak.disturbances.end(interval)
        soak.stop.wait(soak.args.quiet_seconds)
        calls = soak.calls()
        if calls <= last_calls and not soak.stop.is_set() and soak.collecting:
            soak.failures.add("collection stalled", f"no call reached the switch in step {step}")
        last_calls = calls
        step += 1

def master_restarter(soak):
    while not soak.stop.wait(soak.args.restart_every):
        interval = soak.disturbances.begin("restart")
        soak.end_process(soak.snmpd, 5)
        soak.start_snmpd()
        start = time.monotonic()
        while time.monotonic() - start < REGISTER_SECONDS and not soak.stop.is_set():
            if soak.registered():
                break
            time.sleep(0.2)
        else:
            if not soak.stop.is_set():
                soak.failures.add("not registered again", f"no answer {REGISTER_SECONDS:.0f} s after "
                                  "the master restarted")
        with soak.stats_lock:
            soak.restarts.append(time.monotonic() - start)
        soak.disturbances.end(interval)

def options_writer(soak):
    """Valid files change the period, the level and the collection; a file
    that is no JSON (cut short, empty) changes nothing, a member of the
    wrong type or an unknown level leaves that setting as it was. Collection
    off counts as a disturbance (the values stay those of the last
    collection, maybe a faulted one) and is checked on the switch's side."""
    files = [
        ({"CollectMetrics": True, "CollectMetricsPeriod": 2, "DebugLevel": "Debug"}, None),
        (None, '{ "SwitchMonitoringControl": { "CollectMetrics": tru'),
        ({"CollectMetrics": True, "CollectMetricsPeriod": 3, "DebugLevel": "Warning"}, None),
        ({"CollectMetrics": "yes", "CollectMetricsPeriod": 1}, None),
        (None, FIFO),
        (None, OVERSIZED),
        # Off with a period of 0, in a folder made again: the watcher must
        # find the folder and apply the file, and the idle collector must
        # not spin (check_collection_off checks both).
        ({"CollectMetrics": False, "CollectMetricsPeriod": 0, "DebugLevel": "Info"}, FOLDER_RECREATED),
        ({"CollectMetrics": True, "CollectMetricsPeriod": "1", "DebugLevel": "Verbose"}, None),
        ({"CollectMetrics": True, "CollectMetricsPeriod": 1, "DebugLevel": "Trace"}, None),
        (None, ""),
        ({"CollectMetrics": True, "CollectMetricsPeriod": PERIOD, "DebugLevel": "Info"}, None),
    ]
    off = None
    step = 0
    while not soak.stop.wait(soak.args.options_every):
        control, raw = files[step % len(files)]
        if control is not None and control.get("CollectMetrics") is False:
            if off is None:
                off = soak.disturbances.begin("options")
            soak.collecting = False
        soak.write_options(control, raw)
        if off is not None and control is not None and control.get("CollectMetrics") is False:
            check_collection_off(soak)
        if off is not None and control is not None and control.get("CollectMetrics") is True:
            soak.collecting = True
            soak.disturbances.end(off)
            off = None
        with soak.stats_lock:
            if raw is FIFO or raw is OVERSIZED or raw is FOLDER_RECREATED:
                soak.option_writes[{id(FIFO): "a FIFO in place of the file",
                                    id(OVERSIZED): "a 50 MB file",
                                    id(FOLDER_RECREATED): "folder deleted and made again"}[id(raw)]] += 1
            soak.option_writes["valid" if control is not None and raw in (None, FOLDER_RECREATED) and
                               isinstance(control.get("CollectMetrics"), bool) and
                               isinstance(control.get("CollectMetricsPeriod"), int) and
                               control.get("DebugLevel") in LEVELS else "invalid (wholly or partly)"] += 1
        step += 1
    if off is not None:
        soak.write_options({"CollectMetrics": True, "CollectMetricsPeriod": PERIOD, "DebugLevel": "Info"})
        soak.disturbances.end(off)

def check_collection_off(soak):
    """Collection turned off: no collection may start. Every collection
    starts with Interfaces:GetIfList, at once (a collection in progress,
    however slowed by the switch, asks for it no more), so its count must
    stand still from shortly after the write."""
    soak.stop.wait(2.0)
    before = soak.calls(CALLS[0])
    cpu_before = thread_cpu(soak)
    soak.stop.wait(4.0)
    if soak.stop.is_set():
        return
    started = soak.calls(CALLS[0]) - before
    if started:
        soak.failures.add("options not applied", f"{started} collections started in 4 s with "
                          "collection off")
    # Every thread but the main one (which answers the walkers) idles while
    # collection is off, whatever the period: a collector that spins on a
    # period of 0 would burn about a second of these 4 s.
    spent = {tid: cpu - cpu_before.get(tid, 0.0) for tid, cpu in thread_cpu(soak).items()}
    busy = {tid: cpu for tid, cpu in spent.items() if tid != soak.daemon.pid and cpu > IDLE_THREAD_CPU}
    if busy:
        soak.failures.add("idle collector spins", f"threads {busy} used more than "
                          f"{IDLE_THREAD_CPU} s of CPU in 4 s with collection off")
    with soak.stats_lock:
        soak.option_writes["collection off, checked: no collection started in 4 s"] += 1