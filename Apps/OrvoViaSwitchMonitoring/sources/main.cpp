#include "Arq/OrvoViaSwitchMonitoring/Application.h"

int main(int argc, char** argv) {
  return Arq::OrvoViaSwitchMonitoring::RunDaemon(argc, const_cast<const char**>(argv));
}
