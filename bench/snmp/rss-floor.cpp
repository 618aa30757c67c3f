// The resident-set floor of the daemon's process: the reference sub-agent
// (linked in as reference_main) in a process that also carries the C++
// runtime, Thrift and JsonCpp, as every process of the daemon does. Each
// library is used once so that the loader maps and relocates it.
#include <json/json.h>
#include <thrift/transport/TSocket.h>

#include <iostream>

extern "C" int reference_main(int argc, char** argv);

int main(int argc, char** argv) {
  Json::Value value;
  value["libraries"] = 3;
  apache::thrift::transport::TSocket socket("127.0.0.1", 1);
  std::cout << "rss-floor: " << value["libraries"].asInt() << " libraries loaded, socket "
            << (socket.isOpen() ? "open" : "closed") << std::endl;
  return reference_main(argc, argv);
}
