"""The soak run's report: what ran, the resources at the first and the last
minute, and every threshold crossed. Returns whether the run failed."""
import os

from .harness import LOG_SIZE_LIMIT, LOG_SPLIT_PERIOD

# Thresholds.
#   RSS: the floor (minimum of the samples) of the last minute may exceed the
#   floor of the first minute by at most RSS_GROWTH_KB. The daemon's own data
#   lives in fixed arrays, so after the first minute (some 60 collections and
#   30 walks, the log split, every options file applied) its heap should not
#   grow; what moves is glibc's trimming of freed memory and which pages of
#   the mapped libraries are resident: 300-400 kB between the first and the
#   last minute of 2-minute runs of the same code. 4 MB is ten times that
#   noise: a 2-minute run (the two minutes some 60 collections and 50 walks
#   apart) catches a leak of about 70 kB per collection, a 30-minute run one
#   of about 2 kB; descriptors and threads are compared exactly.
#   Descriptors and threads: the floors must not grow at all; a sample can
#   catch a connection or a worker thread being made, so maxima are printed
#   but the floors are compared.
#   Peak RSS (VmHWM): the bound for any reply a peer sends, 64 MB.
RSS_GROWTH_KB = 4 * 1024
PEAK_RSS_KB = 64 * 1024
# SIGTERM ends the daemon within this time whatever the switch does.
PROMPT_EXIT_SECONDS = 2.0


def report(soak, elapsed, stop_seconds, tools_cpu):
    a = soak.args
    print(f"=== soak: {elapsed / 60:.1f} min, daemon against the simulator (full capacity), "
          f"{a.walkers} walkers + 1 table reader; work folder {soak.work}, kept unless the run passes ===")
    total_walks = sum(soak.walk_counts.values())
    counts = ", ".join(f"{n} objects x {c}" for n, c in sorted(soak.walk_counts.items()))
    print(f"walks: {total_walks} ({counts}); " + ", ".join(f"{k} {v}" for k, v in sorted(soak.walks.items())))
    print("table reads: " + ", ".join(f"{k} {v}" for k, v in sorted(soak.table_reads.items())))
    print("faults played: " + ", ".join(f"{k} {v}" for k, v in sorted(soak.fault_steps.items())))
    print("options written: " + ", ".join(f"{k} {v}" for k, v in sorted(soak.option_writes.items())))
    if soak.restarts:
        print(f"master restarts: {len(soak.restarts)}, registered again after "
              f"{min(soak.restarts):.1f}-{max(soak.restarts):.1f} s")
    failed = False
    first = [s for s in soak.samples if s[0] <= 60]
    last = [s for s in soak.samples if s[0] >= soak.samples[-1][0] - 60] if soak.samples else []
    if first and last:
        def window(samples, index):
            values = [s[index] for s in samples]
            return min(values), max(values)
        names = [("RSS kB", 1), ("descriptors", 3), ("threads", 4)]
        for name, index in names:
            (f_min, f_max), (l_min, l_max) = window(first, index), window(last, index)
            print(f"{name:12s} first minute {f_min}-{f_max}, last minute {l_min}-{l_max}")
        peak = max(s[2] for s in soak.samples)
        cpu = soak.samples[-1][5]
        print(f"peak RSS (VmHWM) {peak} kB; daemon CPU {cpu:.1f} s "
              f"({100 * cpu / max(elapsed, 1):.1f}% of a core); client tools CPU {tools_cpu:.1f} s")
        growth = window(last, 1)[0] - window(first, 1)[0]
        if growth > RSS_GROWTH_KB:
            print(f"FAIL: RSS floor grew by {growth} kB (threshold {RSS_GROWTH_KB} kB)")
            failed = True
        for name, index in names[1:]:
            if window(last, index)[0] > window(first, index)[0]:
                print(f"FAIL: {name} floor grew from {window(first, index)[0]} to {window(last, index)[0]}")
                failed = True
        if peak > PEAK_RSS_KB:
            if a.check_peak_rss:
                print(f"FAIL: peak RSS {peak} kB above {PEAK_RSS_KB} kB (hostile replies; "
                      "--no-check-peak-rss to skip)")
                failed = True
            else:
                print(f"not checked (--no-check-peak-rss): peak RSS {peak} kB above {PEAK_RSS_KB} kB")
    else:
        print("FAIL: no resource samples of the daemon")
        failed = True
    # The redirected output bounds the disk: no log kept open on the backup or
    # on a deleted file after a split.
    log_sizes = []
    for name in (soak.log_path, soak.log_path + ".bak"):
        if os.path.exists(name):
            log_sizes.append(f"{os.path.basename(name)} {os.path.getsize(name)} B")
    print(f"redirected output (limit {LOG_SIZE_LIMIT} B, split every {LOG_SPLIT_PERIOD} s): "
          + ", ".join(log_sizes))
    if soak.odd_fds:
        odd = "; ".join(f"{t} (from {first:.0f} s, up to {size} B)"
                        for t, (first, size) in sorted(soak.odd_fds.items()))
        if a.check_log_split:
            print(f"FAIL: the daemon kept a split-off log open: {odd} (--no-check-log-split to skip)")
            failed = True
        else:
            print(f"not checked (--no-check-log-split): the daemon kept a split-off log open: {odd}")
    end_line = ""
    if os.path.exists(soak.log_path):
        with open(soak.log_path, "rb") as f:
            lines = f.read().decode("utf-8", "replace").strip().splitlines()
            end_line = lines[-1] if lines else ""
    hung = " during a hung call" if a.check_prompt_exit else ""
    print(f"daemon stopped{hung} in {stop_seconds:.1f} s, status {soak.daemon.returncode}, "
          f"last line: {end_line!r}")
    if a.check_prompt_exit and stop_seconds > PROMPT_EXIT_SECONDS:
        print(f"FAIL: the daemon took more than {PROMPT_EXIT_SECONDS} s to stop during a hung call "
              "(--no-check-prompt-exit to skip)")
        failed = True
    if soak.daemon.returncode != 0 or "The End With Exit Code: (0)" not in end_line:
        print("FAIL: the daemon did not end cleanly on SIGTERM")
        failed = True
    if sum(soak.walks[k] for k in ("healthy",)) == 0:
        print("FAIL: no walk ran with the switch healthy: the exact values were never checked")
        failed = True
    print(f"failed or wrong answers: {soak.failures.total()}")
    for kind, count in sorted(soak.failures.counts.items()):
        print(f"FAIL: {kind}: {count}")
        for detail in soak.failures.details[kind]:
            print(f"    {detail}")
    return failed or soak.failures.total() > 0