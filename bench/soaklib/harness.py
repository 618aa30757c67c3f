"""The soak run's processes: a private snmpd master (set up by scripts/lab), the
simulator serving the full-capacity scenario and the daemon in Thrift mode,
each in the work folder, stopped by PID; the client tools bounded in time."""
import json
import re
import os
import shutil
import signal
import socket
import subprocess
import tempfile
import threading
import time

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

# The daemon's settings. The receive time-out is below the long delay fault, so
# that both a slow answer and a timed-out call are played.
PERIOD = 1
RECEIVE_TIMEOUT_MS = 2000
CONNECT_TIMEOUT_MS = 1000
LOG_SIZE_LIMIT = 16 * 1024
LOG_SPLIT_PERIOD = 3
# Markers for the hostile acts of the options writer (see write_options).
FIFO, OVERSIZED, FOLDER_RECREATED = object(), object(), object()


class SetupError(Exception):
    pass


class Stopping(Exception):
    """Raised where a process would start once the clean-up has begun."""


def free_port(kind):
    sock = socket.socket(socket.AF_INET, socket.SOCK_DGRAM if kind == "udp" else socket.SOCK_STREAM)
    try:
        sock.bind(("127.0.0.1", 0))
        return sock.getsockname()[1]
    finally:
        sock.close()


class Lab:
    def __init__(self, build):
        self.build = os.path.realpath(build)
        self.daemon_exe = os.path.join(self.build, "Apps/OrvoViaSwitchMonitoring/OrvoViaSwitchMonitoring")
        self.simulator_exe = os.path.join(self.build, "Apps/OrvoViaSwitchSimulator/OrvoViaSwitchSimulator")
        self.plugin = os.path.join(self.build, "Plugins/StreamLogger/libArqStreamLogger.so")
        self.scenario = os.path.join(ROOT, "etc/simulator/full-capacity.json")
        for path in (self.daemon_exe, self.simulator_exe, self.plugin, self.scenario):
            if not os.path.exists(path):
                raise SetupError(f"missing {path} (build the release configuration first)")
        enterprise = None
        with open(os.path.join(self.build, "CMakeCache.txt")) as cache:
            for line in cache:
                if line.startswith("ARQ_ENTERPRISE_NUMBER:STRING="):
                    enterprise = line.split("=", 1)[1].strip()
        if not enterprise:
            raise SetupError("ARQ_ENTERPRISE_NUMBER not found in the build's CMakeCache.txt")
        self.base = f"1.3.6.1.4.1.{enterprise}.3.5.1"
        self.work = tempfile.mkdtemp(prefix="orvovia-soak.")
        self.processes = []  # every process started, stopped by PID at the end
        self.processes_lock = threading.Lock()
        self.stop = threading.Event()
        self.closing = False  # set by the clean-up: no process starts any more
        self.env = dict(os.environ, SNMPCONFPATH=self.work,
                        SNMP_PERSISTENT_DIR=os.path.join(self.work, "persist"), MIBS="")
        self.port = free_port("udp")
        self.peer = f"udp:127.0.0.1:{self.port}"
        self.snmpd = None
        self.daemon = None
        self.simulator = None
        self.control_port = None
        self.log_path = os.path.join(self.work, "log", "OrvoViaSwitchMonitoring.log")

    # A process is started and listed under one lock, and none once the
    # clean-up has begun: the clean-up's list is then complete.
    def spawn(self, command, log_name):
        with open(os.path.join(self.work, log_name), "ab") as log, self.processes_lock:
            if self.closing:
                raise Stopping()
            process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log,
                                       stderr=subprocess.STDOUT, env=self.env)
            self.processes.append(process)
        return process
    def run_tool(self, command, timeout):
        """A client tool, bounded in time; (status, output)."""
        with self.processes_lock:
            if self.closing:
                raise Stopping()
            process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                       stderr=subprocess.STDOUT, env=self.env)
            self.processes.append(process)
        try:
            output, _ = process.communicate(timeout=timeout)
            return process.returncode, output.decode("utf-8", "replace")
        except subprocess.TimeoutExpired:
            process.kill()
            process.communicate()
            return -1, "time-out of the tool"
        finally:
            with self.processes_lock:
                self.processes.remove(process)
    @staticmethod
    def end_process(process, grace):
        """SIGTERM, then SIGKILL after `grace` seconds; seconds until it ended."""
        if process is None or process.poll() is not None:
            return 0.0
        start = time.monotonic()
        try:
            process.send_signal(signal.SIGTERM)
            process.wait(timeout=grace)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
        except ProcessLookupError:
            pass
        return time.monotonic() - start
    def stop_everything(self):
        """Runs whatever happened: every process still alive, by PID, newest first."""
        self.stop.set()
        with self.processes_lock:
            self.closing = True
            processes = list(reversed(self.processes))
        for process in processes:
            self.end_process(process, 5)
    def start_snmpd(self):
        self.snmpd = self.spawn(["snmpd", "-f", "-Lo", "-C", "-I", "-smux", "-c",
                                 os.path.join(self.work, "snmpd.conf"), "-p",
                                 os.path.join(self.work, "snmpd.pid"), self.peer], "snmpd.log")
        socket_path = os.path.join(self.work, "agentx.sock")
        for _ in range(100):
            if os.path.exists(socket_path):
                return
            time.sleep(0.05)
        raise SetupError("snmpd did not create its AgentX socket; see snmpd.log")
    def registered(self):
        status, output = self.run_tool(["snmpget", "-v2c", "-c", "public", "-t", "1", "-r", "0",
                                        "-On", self.peer, f"{self.base}.1.1.0"], 5)
        return status == 0 and "Counter32" in output
    def start(self):
        """The master, the simulator and the daemon, each waited for."""
        os.makedirs(os.path.join(self.work, "log"))
        os.makedirs(os.path.join(self.work, "options"))
        # The master's and the sub-agent's configuration, as every lab user writes them.
        subprocess.run(["bash", os.path.join(ROOT, "scripts/lab"), "write-master", self.work], check=True)
        with open(os.path.join(self.work, "LoggerConfigurationsForMonitoring.cfg"), "w") as f:
            json.dump({"version": "1.0.0", "loggers": [
                {"name": "StreamLogger", "libraryPath": self.plugin, "output": "stdout", "level": "Trace"}]}, f)
        self.write_options({"CollectMetrics": True, "CollectMetricsPeriod": PERIOD, "DebugLevel": "Info"})
        self.start_snmpd()
        sim_port = self.start_simulator()
        self.daemon = self.spawn([
            self.daemon_exe,
            "logger_configurations_path:" + os.path.join(self.work, "LoggerConfigurationsForMonitoring.cfg"),
            "redirect_output:" + self.log_path,
            f"redirect_output_split_period:{LOG_SPLIT_PERIOD}", f"redirect_output_file_size:{LOG_SIZE_LIMIT}",
            "log_level:Trace", "monitoring_processor_mode:Thrift", f"collect_metrics_period:{PERIOD}",
            "remote_ip_address:127.0.0.1", f"remote_port_number:{sim_port}",
            f"remote_ms_connection_timeout:{CONNECT_TIMEOUT_MS}",
            f"remote_ms_receive_timeout:{RECEIVE_TIMEOUT_MS}",
            "data_setup_folder:" + os.path.join(self.work, "options"),
            "options_filename:SwitchMonitoringOptions.json"], "daemon.out")

    def start_simulator(self):
        """The simulator on free ports, read from its start line; the service port."""
        self.simulator = self.spawn([self.simulator_exe, "--port", "0", "--control-port", "0",
                                     "--scenario", self.scenario], "simulator.log")
        for _ in range(100):
            with open(os.path.join(self.work, "simulator.log")) as f:
                match = re.search(r"listening on port (\d+) control (\d+)", f.read())
            if match:
                sim_port, self.control_port = int(match.group(1)), int(match.group(2))
                break
            time.sleep(0.1)
        else:
            raise SetupError("the simulator did not start; see simulator.log")
        if sim_port <= 32767:
            raise SetupError(f"the simulator's port {sim_port} is not above 32767: the run would not "
                             "show that such a port is reached")
        return sim_port

    def write_options(self, control, raw=None):
        """Written in place (open, write, close), as the watcher expects. Some
        raw contents are hostile acts on the options path instead of text:
        FIFO (a FIFO in place of the file, opened and closed for writing so
        that the watcher is told), OVERSIZED (a 50 MB file), and a control
        written with FOLDER_RECREATED (the folder deleted, left away for a
        moment, made again and the file written into it)."""
        folder = os.path.join(self.work, "options")
        path = os.path.join(folder, "SwitchMonitoringOptions.json")
        if raw is FIFO:
            if os.path.lexists(path):
                os.unlink(path)
            os.mkfifo(path)
            os.close(os.open(path, os.O_RDWR | os.O_NONBLOCK))
            self.stop.wait(0.5)
            os.unlink(path)
            return
        if raw is OVERSIZED:
            with open(path, "w") as f:
                f.truncate(50 * 1024 * 1024)
            return
        if raw is FOLDER_RECREATED:
            shutil.rmtree(folder)
            self.stop.wait(1.5)
            os.makedirs(folder)
            raw = None
        text = raw if raw is not None else json.dumps({"SwitchMonitoringControl": control})
        with open(path, "w") as f:
            f.write(text)
    def control(self, command):
        """One command on a connection of its own, closed at once (a control
        connection left open would keep the simulator from ending)."""
        with socket.create_connection(("127.0.0.1", self.control_port), timeout=5) as conn:
            conn.sendall(command.encode("latin-1") + b"\n")
            answer = b""
            while not answer.endswith(b"\n"):
                chunk = conn.recv(256)
                if not chunk:
                    break
                answer += chunk
        return answer.decode("latin-1").strip()
    def walk(self):
        return self.run_tool(["snmpbulkwalk", "-v2c", "-c", "public", "-On", "-Cr10", "-t", "2", "-r", "1",
                              self.peer, self.base], 120)
    def calls(self, method=""):
        return int(self.control(f"calls {method}".strip()).split()[1])
