// Sends N sequential SNMPv2c GETs of one OID from one process and prints the
// latency percentiles: arq-snmp-get-latency <host:port> <oid> <count>
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s <host:port> <oid> <count>\n", argv[0]);
    return 2;
  }
  init_snmp("arq-get-latency");
  netsnmp_session session;
  snmp_sess_init(&session);
  session.peername = argv[1];
  session.version = SNMP_VERSION_2c;
  static u_char community[] = "public";
  session.community = community;
  session.community_len = sizeof community - 1;
  netsnmp_session* handle = snmp_open(&session);
  if (handle == nullptr) return 1;
  oid name[MAX_OID_LEN];
  size_t length = MAX_OID_LEN;
  if (read_objid(argv[2], name, &length) == 0) return 1;
  const int count = std::atoi(argv[3]);
  std::vector<double> micros;
  int failures = 0;
  for (int i = 0; i < count; ++i) {
    netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_GET);
    snmp_add_null_var(pdu, name, length);
    netsnmp_pdu* response = nullptr;
    const auto start = std::chrono::steady_clock::now();
    const int status = snmp_synch_response(handle, pdu, &response);
    const auto stop = std::chrono::steady_clock::now();
    if (status != STAT_SUCCESS || response == nullptr || response->errstat != SNMP_ERR_NOERROR) {
      ++failures;
    } else {
      micros.push_back(std::chrono::duration<double, std::micro>(stop - start).count());
    }
    if (response != nullptr) snmp_free_pdu(response);
  }
  snmp_close(handle);
  if (micros.empty()) return 1;
  std::sort(micros.begin(), micros.end());
  auto at = [&](double q) { return micros[static_cast<size_t>(q * (micros.size() - 1))]; };
  std::printf("GET p50 %.1f us  p90 %.1f us  p99 %.1f us  (%zu answered, %d failed)\n", at(0.5),
              at(0.9), at(0.99), micros.size(), failures);
  return 0;
}
