#include <csignal>

#include "Arq/OrvoViaSwitchMonitoring/Application.h"

int main(int argc, char** argv) {
  // Standard output may be a pipe whose reader goes away: the writes then fail
  // with EPIPE and are dropped instead of ending the daemon.
  (void)std::signal(SIGPIPE, SIG_IGN);
  return Arq::OrvoViaSwitchMonitoring::RunDaemon(argc, const_cast<const char**>(argv));
}
