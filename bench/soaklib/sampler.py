"""The daemon's resources from /proc: resident set, peak, descriptors,
threads and CPU, once a second; descriptors left on a split-off log."""
import os
import re
import time


def thread_cpu(soak):
    """CPU seconds of each of the daemon's threads, by thread id."""
    result = {}
    task = f"/proc/{soak.daemon.pid}/task"
    for tid in os.listdir(task):
        try:
            fields = open(f"{task}/{tid}/stat").read().rsplit(")", 1)[1].split()
        except OSError:
            continue
        result[int(tid)] = (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
    return result

def sample(soak):
    pid = soak.daemon.pid
    status = open(f"/proc/{pid}/status").read()
    field = lambda name: int(re.search(rf"^{name}:\s+(\d+)", status, re.M).group(1))
    fds = os.listdir(f"/proc/{pid}/fd")
    stat = open(f"/proc/{pid}/stat").read().rsplit(")", 1)[1].split()
    cpu = (int(stat[11]) + int(stat[12])) / os.sysconf("SC_CLK_TCK")
    for fd in fds:
        try:
            target = os.readlink(f"/proc/{pid}/fd/{fd}")
        except OSError:
            continue
        if target.endswith(" (deleted)") or target.endswith(".bak"):
            try:
                size = os.stat(f"/proc/{pid}/fd/{fd}").st_size
            except OSError:
                size = 0
            seen = soak.odd_fds.setdefault(target, [time.monotonic() - soak.started, 0])
            seen[1] = max(seen[1], size)
    return (time.monotonic() - soak.started, field("VmRSS"), field("VmHWM"), len(fds),
            field("Threads"), cpu)

def sampler(soak):
    while not soak.stop.is_set():
        if soak.daemon.poll() is not None:
            soak.failures.add("daemon dead", f"ended with status {soak.daemon.returncode}")
            soak.stop.set()
            return
        try:
            soak.samples.append(sample(soak))
        except (OSError, AttributeError):
            pass
        soak.stop.wait(1.0)