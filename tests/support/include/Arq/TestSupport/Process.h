#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Arq::TestSupport {

// A child process started with fork/exec, its standard output and error
// appended to files. The destructor ends it (SIGKILL) and reaps it if it
// still runs, so a failing test never leaves it behind.
class ChildProcess {
 public:
  // With an `errorPath`, standard error goes there instead.
  ChildProcess(const std::vector<std::string>& argv, const std::map<std::string, std::string>& env,
               const std::string& outputPath, const std::string& errorPath = "");
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t Pid() const { return pid_; }
  bool IsRunning();
  void Signal(int signal);
  // Exit status as waitpid reports it, or nothing if still running at the deadline.
  std::optional<int> WaitExit(std::chrono::milliseconds timeout);

 private:
  pid_t pid_ = -1;
  std::optional<int> status_;
};

struct CommandResult {
  int status = -1;  // waitpid status; -1 when the command did not end in time
  std::string output;
};

// Runs a command to completion (killed at the deadline) and returns its
// standard output (standard error too when mergeStderr, else it is dropped).
CommandResult RunCommand(const std::vector<std::string>& argv,
                         const std::map<std::string, std::string>& env,
                         std::chrono::milliseconds timeout, bool mergeStderr = false);

// Processor time (user + system) a running process has used so far, from
// /proc/<pid>/stat; negative when it cannot be read.
double CpuSeconds(pid_t pid);
// Peak resident set (VmHWM of /proc/<pid>/status) in kB; negative when unknown.
long PeakResidentKb(pid_t pid);

// Polls `condition` every `step` until it holds or the timeout passes.
bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout,
               std::chrono::milliseconds step = std::chrono::milliseconds(100));

// The switch simulator started with `argv` (its executable first): its
// process, and the two ports of its start line "listening on port P control
// C", waited for 10 s at most (both 0 when it did not come).
struct Simulator {
  std::unique_ptr<ChildProcess> process;
  int port = 0;
  int controlPort = 0;
};
Simulator StartSimulator(const std::vector<std::string>& argv, const std::string& outputPath);

// Sends one line to a TCP port on 127.0.0.1 and returns the reply line (read
// for at most 5 s), or "connect"/"write" when that failed.
std::string SendLine(int port, const std::string& line);

}  // namespace Arq::TestSupport
