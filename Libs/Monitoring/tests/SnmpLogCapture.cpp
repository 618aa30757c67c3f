#include "SnmpLogCapture.h"

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <mutex>

namespace Arq::Monitoring::Testing {
namespace {

std::mutex mutex;
std::vector<std::string> lines;
bool active = false;

int OnLog(int, int, void* serverArgument, void*) {
  const auto* message = static_cast<const snmp_log_message*>(serverArgument);
  std::lock_guard<std::mutex> lock(mutex);
  if (active) lines.push_back(std::to_string(message->priority) + " " + message->msg);
  return 0;
}

}  // namespace

SnmpLogCapture::SnmpLogCapture() {
  static std::once_flag once;
  std::call_once(once, [] {
    snmp_register_callback(SNMP_CALLBACK_LIBRARY, SNMP_CALLBACK_LOGGING, OnLog, nullptr);
    snmp_enable_calllog();
  });
  std::lock_guard<std::mutex> lock(mutex);
  lines.clear();
  active = true;
}

SnmpLogCapture::~SnmpLogCapture() {
  std::lock_guard<std::mutex> lock(mutex);
  active = false;
}

std::vector<std::string> SnmpLogCapture::Lines() const {
  std::lock_guard<std::mutex> lock(mutex);
  return lines;
}

std::vector<std::string> SnmpLogCapture::Lines(int priority) const {
  const std::string prefix = std::to_string(priority) + " ";
  std::vector<std::string> selected;
  for (const auto& line : Lines()) {
    if (line.rfind(prefix, 0) == 0) selected.push_back(line.substr(prefix.size()));
  }
  return selected;
}

}  // namespace Arq::Monitoring::Testing
