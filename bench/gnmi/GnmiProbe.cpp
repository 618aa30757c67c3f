// The client side of the gNMI benchmark: one channel (one TLS connection),
// Gets sent one after the other, figures printed on one line.
//   ArqGnmiProbe <host:port> <dir> <user> <password> <count> <encoding> <path>...
// <dir> holds ca.pem, client.pem and client.key. Prints
//   gets <count> wall-median-ms <m> wall-max-ms <x> updates <u> bytes <b>
// with the updates and the serialized bytes of one answer (the protobuf
// message; HTTP/2 framing and TLS records add a few percent). Exits 1 when a
// Get fails or answers differ in their number of updates.
#include <grpcpp/grpcpp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Arq/Gnmi/Encode.h"
#include "Arq/Gnmi/Path.h"
#include "gnmi.grpc.pb.h"

namespace {

std::string Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 8) {
    (void)std::fprintf(
        stderr, "usage: %s <host:port> <dir> <user> <password> <count> json_ietf|proto <path>...\n",
        argv[0]);
    return 2;
  }
  const std::string dir = argv[2];
  char* end = nullptr;
  const long count = std::strtol(argv[5], &end, 10);
  if (*end != '\0' || count < 1 || count > 100000) {
    (void)std::fprintf(stderr, "count: a whole number from 1 to 100000\n");
    return 2;
  }
  const std::string encoding = argv[6];
  grpc::SslCredentialsOptions tls;
  tls.pem_root_certs = Read(dir + "/ca.pem");
  tls.pem_cert_chain = Read(dir + "/client.pem");
  tls.pem_private_key = Read(dir + "/client.key");
  grpc::ChannelArguments arguments;
  arguments.SetMaxReceiveMessageSize(256 * 1024 * 1024);
  const auto stub =
      gnmi::gNMI::NewStub(grpc::CreateCustomChannel(argv[1], grpc::SslCredentials(tls), arguments));

  gnmi::GetRequest request;
  request.set_encoding(encoding == "proto" ? gnmi::PROTO : gnmi::JSON_IETF);
  for (int i = 7; i < argc; ++i) {
    const auto path = Arq::Gnmi::ParsePath(argv[i]);
    if (!path) {
      (void)std::fprintf(stderr, "malformed path %s\n", argv[i]);
      return 2;
    }
    Arq::Gnmi::ToProto(*path, request.add_path());
  }
  std::vector<double> wall;
  long updates = -1;
  std::size_t bytes = 0;
  for (long n = 0; n < count; ++n) {
    grpc::ClientContext context;
    context.set_deadline(std::chrono::system_clock::now() + std::chrono::seconds(30));
    context.AddMetadata("username", argv[3]);
    context.AddMetadata("password", argv[4]);
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
