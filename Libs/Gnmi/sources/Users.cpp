#include "Arq/Gnmi/Users.h"

#include <map>
#include <sstream>

#include "Arq/Listener/Files.h"

namespace Arq::Gnmi {

std::unique_ptr<Listener::BasicAuthUsers> LoadUsers(const std::string& path, std::string& error) {
  std::string text;
  error = Listener::ReadBoundedFile(path, Listener::kMaxConfigFileBytes, text);
  if (!error.empty()) {
    error = path + ": " + error;
    return nullptr;
  }
  auto users = ParseUsers(text, error);
  if (!users) error = path + ": " + error;
  return users;
}

std::unique_ptr<Listener::BasicAuthUsers> ParseUsers(const std::string& text, std::string& error) {
  std::map<std::string, std::string> hashes;
  std::istringstream lines(text);
  std::string line;
  int number = 0;
  while (std::getline(lines, line)) {
    ++number;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line.front() == '#') continue;
    const auto colon = line.find(':');
    if (colon == 0 || colon == std::string::npos) {
      error = "line " + std::to_string(number) + " is not \"user:hash\"";
      return nullptr;
    }
    const std::string hash = line.substr(colon + 1);
    if (!Listener::IsPasswordHash(hash)) {
      error = "line " + std::to_string(number) + ": not a crypt(3) hash";
      return nullptr;
    }
    hashes[line.substr(0, colon)] = hash;
  }
  return std::make_unique<Listener::BasicAuthUsers>(std::move(hashes));
}

}  // namespace Arq::Gnmi
