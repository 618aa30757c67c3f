#include "Arq/Gnmi/Users.h"

#include <crypt.h>

#include <cstring>
#include <sstream>

#include "Arq/Gnmi/Settings.h"

namespace Arq::Gnmi {

std::unique_ptr<Users> Users::Load(const std::string& path, std::string& error) {
  std::string text;
  if (!ReadBoundedFile(path, std::size_t{1024} * 1024, text, error)) return nullptr;
  auto users = FromText(text, error);
  if (!users) error = path + ": " + error;
  return users;
}

std::unique_ptr<Users> Users::FromText(const std::string& text, std::string& error) {
  auto users = std::make_unique<Users>();
  std::istringstream lines(text);
  std::string line;
  int number = 0;
  while (std::getline(lines, line)) {
    ++number;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line.front() == '#') continue;
    const auto colon = line.find(':');
    if (colon == 0 || colon == std::string::npos || colon + 1 == line.size() ||
        line[colon + 1] != '$') {
      error = "line " + std::to_string(number) + " is not \"user:hash\"";
      return nullptr;
    }
    users->hashes_[line.substr(0, colon)] = line.substr(colon + 1);
  }
  return users;
}

bool Users::Check(const std::string& name, const std::string& password) const {
  const auto found = hashes_.find(name);
  if (found == hashes_.end()) return false;
  // crypt_rn keeps its state in our buffer: safe on every thread at once.
  auto data = std::make_unique<crypt_data>();
  const char* hashed = crypt_rn(password.c_str(), found->second.c_str(), data.get(),
                                static_cast<int>(sizeof(crypt_data)));
  if (hashed == nullptr || hashed[0] == '*') return false;
  const std::string& expected = found->second;
  const std::size_t length = std::strlen(hashed);
  if (length != expected.size()) return false;
  unsigned char difference = 0;
  for (std::size_t i = 0; i < length; ++i) {
    difference |= static_cast<unsigned char>(hashed[i] ^ expected[i]);
  }
  return difference == 0;
}

}  // namespace Arq::Gnmi
