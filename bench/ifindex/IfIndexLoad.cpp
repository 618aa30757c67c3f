// Loads the ifIndex file given as argument (on a copy in its folder), places
// one new name, ends the round, and prints the process's peak resident set.
#include <ctime>
#include <fstream>
#include <iostream>
#include <string>

#include "Arq/Monitoring/Model/InterfaceIndex.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: ArqIfIndexLoad <ifindex file>\n";
    return 2;
  }
  Arq::Monitoring::InterfaceIndex indexes(argv[1]);
  const long index = indexes.Of("bench-new-name");
  indexes.EndRound(std::time(nullptr));
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmHWM:", 0) == 0) std::cout << "index " << index << ", peak " << line << '\n';
  }
  return 0;
}
