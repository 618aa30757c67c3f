#include "Arq/TestSupport/Process.h"

#include "Arq/TestSupport/TempDir.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace Arq::TestSupport {
namespace {

std::optional<int> WaitWithDeadline(pid_t pid, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    int status = 0;
    const pid_t done = waitpid(pid, &status, WNOHANG);
    if (done == pid) return status;
    if (done < 0 && errno != EINTR) return std::nullopt;
    if (std::chrono::steady_clock::now() >= deadline) return std::nullopt;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

}  // namespace

double CpuSeconds(pid_t pid) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
  const std::string stat((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  // After the command name (which may hold blanks, and ends with ')'): state,
  // then ten fields, then utime and stime (fields 14 and 15).
  unsigned long long user = 0, system = 0;
  const auto close = stat.rfind(')');
  if (close == std::string::npos ||
      std::sscanf(stat.c_str() + close + 2, "%*c %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %llu %llu",
                  &user, &system) != 2) {
    return -1;
  }
  return static_cast<double>(user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

long PeakResidentKb(pid_t pid) {
  std::ifstream in("/proc/" + std::to_string(pid) + "/status");
  std::string line;
  while (std::getline(in, line)) {
    if (line.compare(0, 6, "VmHWM:") == 0) return std::stol(line.substr(6));
  }
  return -1;
}

ChildProcess::ChildProcess(const std::vector<std::string>& argv,
                           const std::map<std::string, std::string>& env,
                           const std::string& outputPath, const std::string& errorPath) {
  const int flags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC;
  const int fd = open(outputPath.c_str(), flags, 0644);
  if (fd < 0) throw std::runtime_error("cannot open " + outputPath);
  const int errorFd = errorPath.empty() ? fd : open(errorPath.c_str(), flags, 0644);
  std::vector<char*> pointers;
  for (const auto& arg : argv) pointers.push_back(const_cast<char*>(arg.c_str()));
  pointers.push_back(nullptr);
  pid_ = fork();
  if (pid_ == 0) {
    // In the child until exec: the descriptors opened here close at exec.
    for (const auto& [name, value] : env) setenv(name.c_str(), value.c_str(), 1);
    dup2(fd, STDOUT_FILENO);
    dup2(errorFd, STDERR_FILENO);
    dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    execvp(pointers[0], pointers.data());
    _exit(127);
  }
  close(fd);
  if (errorFd != fd) close(errorFd);
  if (pid_ < 0) throw std::runtime_error("fork failed");
}

ChildProcess::~ChildProcess() {
  if (pid_ > 0 && !status_) {
    kill(pid_, SIGKILL);
    WaitExit(std::chrono::seconds(10));
  }
}

bool ChildProcess::IsRunning() {
  if (status_) return false;
  status_ = WaitWithDeadline(pid_, std::chrono::milliseconds(0));
  return !status_;
}

void ChildProcess::Signal(int signal) {
  if (!status_) kill(pid_, signal);
}

std::optional<int> ChildProcess::WaitExit(std::chrono::milliseconds timeout) {
  if (!status_) status_ = WaitWithDeadline(pid_, timeout);
  return status_;
}

CommandResult RunCommand(const std::vector<std::string>& argv,
                         const std::map<std::string, std::string>& env,
                         std::chrono::milliseconds timeout, bool mergeStderr) {
  const TempDir dir("arq-command");
  CommandResult result;
  {
    ChildProcess child(argv, env, dir.File("output"), mergeStderr ? "" : "/dev/null");
    const auto status = child.WaitExit(timeout);
    result.status = status ? *status : -1;
  }  // killed and reaped here when it did not end in time
  result.output = ReadFile(dir.File("output"));
  return result;
}

bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout,
               std::chrono::milliseconds step) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    if (condition()) return true;
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(step);
  }
}

std::string SendLine(int port, const std::string& line) {
  const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return "socket";
  const timeval fiveSeconds{5, 0};
  setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &fiveSeconds, sizeof fiveSeconds);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<uint16_t>(port));
  std::string reply;
  if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    reply = "connect";
  } else if (write(fd, (line + "\n").data(), line.size() + 1) !=
             static_cast<ssize_t>(line.size() + 1)) {
    reply = "write";
  } else {
    char c = 0;
    while (read(fd, &c, 1) == 1 && c != '\n') reply += c;
  }
  close(fd);
  return reply;
}

Simulator StartSimulator(const std::vector<std::string>& argv, const std::string& outputPath) {
  Simulator simulator;
  simulator.process =
      std::make_unique<ChildProcess>(argv, std::map<std::string, std::string>{}, outputPath);
  const std::regex line(R"(listening on port (\d+) control (\d+))");
  WaitUntil(
      [&] {
        std::smatch match;
        const std::string out = ReadFile(outputPath);
        if (!std::regex_search(out, match, line)) return !simulator.process->IsRunning();
        simulator.port = std::stoi(match[1]);
        simulator.controlPort = std::stoi(match[2]);
        return true;
      },
      std::chrono::seconds(10));
  return simulator;
}

}  // namespace Arq::TestSupport
