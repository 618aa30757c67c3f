// The client side of the gNMI benchmark, over TLS with a client certificate
// and a user, figures printed on one line.
//   ArqGnmiProbe get <host:port> <dir> <user> <password> <count> <encoding> <path>...
//     <count> Gets one after the other on one channel (one TLS connection);
//     prints "gets <count> wall-median-ms <m> wall-max-ms <x> updates <u>
//     bytes <b>" with the updates and the serialized bytes of one answer (the
//     protobuf message; HTTP/2 framing and TLS records add a few percent).
//     Exits 1 when a Get fails or answers differ in their number of updates.
//   ArqGnmiProbe subscribe <host:port> <dir> <user> <password> <seconds> <streams>
//                          <sample-ms> <encoding> <path>...
//     <streams> STREAM subscriptions to the paths, each on a channel of its
//     own, read for <seconds>: SAMPLE every <sample-ms>, or ON_CHANGE when it
//     is 0. Prints "streams <n> responses <r> updates <u> bytes <b>" and, for
//     ON_CHANGE, "latency-ms" and the delay of every notification after the
//     initial ones: its arrival against its timestamp, which is the time the
//     daemon stamped the collection just before it published the model (the
//     same clock: client and daemon share the machine). Exits 1 when a
//     stream ends early or with an error other than its deadline.
// <dir> holds ca.pem, client.pem and client.key.
#include <grpcpp/grpcpp.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Arq/Gnmi/Encode.h"
#include "Arq/Gnmi/Path.h"
#include "gnmi.grpc.pb.h"

namespace {

std::string Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

long Number(const char* text, long low, long high, const char* what) {
  char* end = nullptr;
  const long value = std::strtol(text, &end, 10);
  if (*end != '\0' || value < low || value > high) {
    (void)std::fprintf(stderr, "%s: a whole number from %ld to %ld\n", what, low, high);
    std::exit(2);
  }
  return value;
}

struct Client {
  std::string address, dir, user, password;

  std::unique_ptr<gnmi::gNMI::Stub> Stub() const {
    grpc::SslCredentialsOptions tls;
    tls.pem_root_certs = Read(dir + "/ca.pem");
    tls.pem_cert_chain = Read(dir + "/client.pem");
    tls.pem_private_key = Read(dir + "/client.key");
    grpc::ChannelArguments arguments;
    arguments.SetMaxReceiveMessageSize(256 * 1024 * 1024);
    // A connection of its own for each stub.
    arguments.SetInt(GRPC_ARG_USE_LOCAL_SUBCHANNEL_POOL, 1);
    return gnmi::gNMI::NewStub(
        grpc::CreateCustomChannel(address, grpc::SslCredentials(tls), arguments));
  }
  void Prepare(grpc::ClientContext& context, std::chrono::seconds deadline) const {
    context.set_deadline(std::chrono::system_clock::now() + deadline);
    context.AddMetadata("username", user);
    context.AddMetadata("password", password);
  }
};

bool AddPaths(char** first, char** last, google::protobuf::RepeatedPtrField<gnmi::Path>* paths) {
  for (char** text = first; text != last; ++text) {
    const auto path = Arq::Gnmi::ParsePath(*text);
    if (!path) {
      (void)std::fprintf(stderr, "malformed path %s\n", *text);
      return false;
    }
    Arq::Gnmi::ToProto(*path, paths->Add());
  }
  return true;
}

gnmi::Encoding EncodingOf(const std::string& name) {
  return name == "proto" ? gnmi::PROTO : gnmi::JSON_IETF;
}

int Get(const Client& client, long count, const std::string& encoding, char** first, char** last) {
  const auto stub = client.Stub();
  gnmi::GetRequest request;
  request.set_encoding(EncodingOf(encoding));
  if (!AddPaths(first, last, request.mutable_path())) return 2;
  std::vector<double> wall;
  long updates = -1;
  std::size_t bytes = 0;
  for (long n = 0; n < count; ++n) {
    grpc::ClientContext context;
    client.Prepare(context, std::chrono::seconds(30));
    gnmi::GetResponse answer;
    const auto start = std::chrono::steady_clock::now();
    const grpc::Status status = stub->Get(&context, request, &answer);
    wall.push_back(
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
            .count());
    if (!status.ok()) {
      (void)std::fprintf(stderr, "Get: %s\n", status.error_message().c_str());
      return 1;
    }
    long got = 0;
    for (const auto& notification : answer.notification()) got += notification.update_size();
    if (updates >= 0 && got != updates) {
      (void)std::fprintf(stderr, "answers of %ld and %ld updates\n", updates, got);
      return 1;
    }
    updates = got;
    bytes = answer.ByteSizeLong();
  }
  std::sort(wall.begin(), wall.end());
  std::printf("gets %ld wall-median-ms %.3f wall-max-ms %.3f updates %ld bytes %zu\n", count,
              wall[wall.size() / 2], wall.back(), updates, bytes);
  return 0;
}

int Subscribe(const Client& client, long seconds, long streams, long sampleMs,
              const std::string& encoding, char** first, char** last) {
  gnmi::SubscribeRequest request;
  auto* list = request.mutable_subscribe();
  list->set_mode(gnmi::SubscriptionList::STREAM);
  list->set_encoding(EncodingOf(encoding));
  google::protobuf::RepeatedPtrField<gnmi::Path> paths;
  if (!AddPaths(first, last, &paths)) return 2;
  for (const auto& path : paths) {
    auto* subscription = list->add_subscription();
    *subscription->mutable_path() = path;
    subscription->set_mode(sampleMs > 0 ? gnmi::SAMPLE : gnmi::ON_CHANGE);
    subscription->set_sample_interval(static_cast<std::uint64_t>(sampleMs) * 1000000U);
  }
  std::atomic<long> responses{0}, updates{0}, bytes{0}, failed{0};
  std::mutex mutex;
  std::vector<double> latencies;
  const auto read = [&] {
    const auto stub = client.Stub();
    grpc::ClientContext context;
    client.Prepare(context, std::chrono::seconds(seconds));
    const auto stream = stub->Subscribe(&context);
    if (!stream->Write(request)) ++failed;
    gnmi::SubscribeResponse response;
    bool synced = false;
    while (stream->Read(&response)) {
      const auto now = std::chrono::system_clock::now().time_since_epoch();
      ++responses;
      bytes += static_cast<long>(response.ByteSizeLong());
      if (response.sync_response()) synced = true;
      if (!response.has_update()) continue;
      updates += response.update().update_size() + response.update().delete__size();
      if (synced && sampleMs == 0) {
        const double ms = std::chrono::duration<double, std::milli>(
                              now - std::chrono::nanoseconds(response.update().timestamp()))
                              .count();
        const std::lock_guard<std::mutex> lock(mutex);
        latencies.push_back(ms);
      }
    }
    const grpc::Status status = stream->Finish();
    if (status.error_code() != grpc::StatusCode::DEADLINE_EXCEEDED) {
      (void)std::fprintf(stderr, "stream ended: %d %s\n", status.error_code(),
                         status.error_message().c_str());
      ++failed;
    }
  };
  std::vector<std::thread> threads;
  for (long n = 0; n < streams; ++n) threads.emplace_back(read);
  for (auto& thread : threads) thread.join();
  std::printf("streams %ld responses %ld updates %ld bytes %ld", streams, responses.load(),
              updates.load(), bytes.load());
  if (sampleMs == 0) {
    std::printf(" latency-ms");
    for (const double ms : latencies) std::printf(" %.2f", ms);
  }
  std::printf("\n");
  return failed == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "get" && argc >= 9) {
    const Client client{argv[2], argv[3], argv[4], argv[5]};
    return Get(client, Number(argv[6], 1, 100000, "count"), argv[7], argv + 8, argv + argc);
  }
  if (command == "subscribe" && argc >= 11) {
    const Client client{argv[2], argv[3], argv[4], argv[5]};
    return Subscribe(client, Number(argv[6], 1, 86400, "seconds"),
                     Number(argv[7], 1, 64, "streams"), Number(argv[8], 0, 3600000, "sample-ms"),
                     argv[9], argv + 10, argv + argc);
  }
  (void)std::fprintf(stderr,
                     "usage: %s get <host:port> <dir> <user> <password> <count> "
                     "json_ietf|proto <path>...\n"
                     "       %s subscribe <host:port> <dir> <user> <password> <seconds> "
                     "<streams> <sample-ms> json_ietf|proto <path>...\n",
                     argv[0], argv[0]);
  return 2;
}
