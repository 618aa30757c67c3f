// The client side of the SNMP benchmark: one process, one session, requests
// sent one after the other, figures printed on one line.
//   arq-snmp-probe <host:port> get <oid> <count>
//       GET of one object <count> times; latency percentiles.
//   arq-snmp-probe <host:port> walk <oid> <count> [<objects>]
//       <count> walks of the subtree with GETBULK (max-repetitions 10); objects/s.
//       With <objects>, a walk takes the subtree's first <objects> objects and
//       ends at the next one, as the walk of a table of that size ends at the
//       object past it: a like walk in as many requests.
//   arq-snmp-probe <host:port> table <entry-oid> <first-column> <count>
//       <count> reads of ten columns from <first-column>, as snmptable does: one
//       GETBULK of the ten columns (max-repetitions 10) per request, each
//       request going on from the previous answer's last row; objects/s.
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Oid {
  oid arcs[MAX_OID_LEN];
  size_t length = 0;

  bool StartsWith(const Oid& prefix) const {
    return length > prefix.length &&
           snmp_oid_compare(arcs, prefix.length, prefix.arcs, prefix.length) == 0;
  }
};

Oid Parse(const char* text) {
  Oid id;
  id.length = MAX_OID_LEN;
  if (read_objid(text, id.arcs, &id.length) == 0) {
    std::fprintf(stderr, "bad OID %s\n", text);
    std::exit(2);
  }
  return id;
}

Oid Append(const Oid& base, oid arc) {
  Oid id = base;
  id.arcs[id.length++] = arc;
  return id;
}

// Sends `pdu` and waits for the answer; nullptr when the request failed.
netsnmp_pdu* Exchange(netsnmp_session* session, netsnmp_pdu* pdu) {
  netsnmp_pdu* response = nullptr;
  const int status = snmp_synch_response(session, pdu, &response);
  if (status != STAT_SUCCESS || response == nullptr || response->errstat != SNMP_ERR_NOERROR) {
    if (response != nullptr) snmp_free_pdu(response);
    return nullptr;
  }
  return response;
}

bool IsEnd(const netsnmp_variable_list* variable) {
  return variable->type == SNMP_ENDOFMIBVIEW || variable->type == SNMP_NOSUCHOBJECT ||
         variable->type == SNMP_NOSUCHINSTANCE;
}

int Get(netsnmp_session* session, const Oid& id, int count) {
  std::vector<double> micros;
  int failures = 0;
  for (int i = 0; i < count; ++i) {
    netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_GET);
    snmp_add_null_var(pdu, id.arcs, id.length);
    const auto start = Clock::now();
    netsnmp_pdu* response = Exchange(session, pdu);
    const auto stop = Clock::now();
    if (response == nullptr || IsEnd(response->variables)) {
      ++failures;
    } else {
      micros.push_back(std::chrono::duration<double, std::micro>(stop - start).count());
    }
    if (response != nullptr) snmp_free_pdu(response);
  }
  if (micros.empty()) return 1;
  std::sort(micros.begin(), micros.end());
  auto at = [&](double q) { return micros[static_cast<size_t>(q * (micros.size() - 1))]; };
  std::printf("GET p50 %.1f us  p90 %.1f us  p99 %.1f us  (%zu answered, %d failed)\n", at(0.5),
              at(0.9), at(0.99), micros.size(), failures);
  return failures == 0 ? 0 : 1;
}

// One walk of `root` (of its first `limit` objects); the number of objects,
// or -1 on a failed request.
long Walk(netsnmp_session* session, const Oid& root, long limit) {
  Oid next = root;
  long objects = 0;
  for (;;) {
    netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_GETBULK);
    pdu->non_repeaters = 0;
    pdu->max_repetitions = 10;
    snmp_add_null_var(pdu, next.arcs, next.length);
    netsnmp_pdu* response = Exchange(session, pdu);
    if (response == nullptr) return -1;
    bool done = response->variables == nullptr;
    for (auto* v = response->variables; v != nullptr; v = v->next_variable) {
      Oid got;
      got.length = v->name_length;
      std::memcpy(got.arcs, v->name, v->name_length * sizeof(oid));
      if (IsEnd(v) || !got.StartsWith(root) || objects == limit) {
        done = true;
        break;
      }
      ++objects;
      next = got;
    }
    snmp_free_pdu(response);
    if (done) return objects;
  }
}

// One snmptable-style read of ten columns of the table whose entry is `entry`.
long ReadColumns(netsnmp_session* session, const Oid& entry, oid firstColumn) {
  constexpr int kColumns = 10;
  Oid next[kColumns];
  Oid prefix[kColumns];
  for (int c = 0; c < kColumns; ++c) next[c] = prefix[c] = Append(entry, firstColumn + c);
  long objects = 0;
  for (;;) {
    netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_GETBULK);
    pdu->non_repeaters = 0;
    pdu->max_repetitions = 10;
    for (const auto& column : next) snmp_add_null_var(pdu, column.arcs, column.length);
    netsnmp_pdu* response = Exchange(session, pdu);
    if (response == nullptr) return -1;
    // Answers come row by row, the ten columns in request order in each.
    int position = 0;
    bool done = response->variables == nullptr;
    for (auto* v = response->variables; v != nullptr; v = v->next_variable, ++position) {
      const int c = position % kColumns;
      Oid got;
      got.length = v->name_length;
      std::memcpy(got.arcs, v->name, v->name_length * sizeof(oid));
      if (IsEnd(v) || !got.StartsWith(prefix[c])) {
        done = true;
        continue;
      }
      ++objects;
      next[c] = got;
    }
    snmp_free_pdu(response);
    if (done) return objects;
  }
}

template <typename Read>
int Throughput(const char* label, int count, Read read) {
  long objects = 0;
  const auto start = Clock::now();
  for (int i = 0; i < count; ++i) {
    const long got = read();
    if (got < 0) {
      std::printf("%s failed\n", label);
      return 1;
    }
    objects += got;
  }
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  std::printf("%s %ld objects per read, %.0f objects/s\n", label, objects / count,
              static_cast<double>(objects) / seconds);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string mode = argc > 2 ? argv[2] : "";
  const bool ok = (mode == "get" && argc == 5) || (mode == "walk" && (argc == 5 || argc == 6)) ||
                  (mode == "table" && argc == 6);
  if (!ok) {
    std::fprintf(stderr,
                 "usage: %s <host:port> get <oid> <count>\n"
                 "       %s <host:port> walk <oid> <count> [<objects>]\n"
                 "       %s <host:port> table <entry-oid> <first-column> <count>\n",
                 argv[0], argv[0], argv[0]);
    return 2;
  }
  const bool limited = mode == "walk" && argc == 6;
  const int count = std::atoi(argv[limited ? 4 : argc - 1]);
  const long limit = limited ? std::atol(argv[5]) : -1;
  if (count < 1 || (limited && limit < 1)) {
    std::fprintf(stderr, "%s: the counts must be 1 or more\n", argv[0]);
    return 2;
  }
  init_snmp("arq-snmp-probe");
  netsnmp_session settings;
  snmp_sess_init(&settings);
  settings.peername = argv[1];
  settings.version = SNMP_VERSION_2c;
  static u_char community[] = "public";
  settings.community = community;
  settings.community_len = sizeof community - 1;
  netsnmp_session* session = snmp_open(&settings);
  if (session == nullptr) return 1;
  const Oid id = Parse(argv[3]);
  int status = 0;
  if (mode == "get") {
    status = Get(session, id, count);
  } else if (mode == "walk") {
    status = Throughput("walk", count, [&] { return Walk(session, id, limit); });
  } else {
    const auto firstColumn = static_cast<oid>(std::atol(argv[4]));
    status = Throughput("table", count, [&] { return ReadColumns(session, id, firstColumn); });
  }
  snmp_close(session);
  return status;
}
