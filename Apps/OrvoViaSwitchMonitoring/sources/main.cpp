#include <malloc.h>

#include <csignal>

#include "Arq/OrvoViaSwitchMonitoring/Application.h"

int main(int argc, char** argv) {
  // Standard output may be a pipe whose reader goes away: the writes then fail
  // with EPIPE and are dropped instead of ending the daemon.
  (void)std::signal(SIGPIPE, SIG_IGN);
  // Every thread (the SNMP agent, the collector, the listeners and gRPC's
  // workers) would take a malloc arena of its own at its first allocation,
  // and each arena keeps pages of its own; the daemon's threads allocate
  // little at a time, and two arenas shared by all keep about half a
  // megabyte less resident with the gNMI server on.
  (void)mallopt(M_ARENA_MAX, 2);  // NOLINT(concurrency-mt-unsafe)
  return Arq::OrvoViaSwitchMonitoring::RunDaemon(argc, const_cast<const char**>(argv));
}
