#pragma once

#include <map>
#include <memory>
#include <string>

namespace Arq::Gnmi {

// The users allowed to call the server: "name:hash" lines, the hash any that
// crypt(3) verifies (yescrypt "$y$", SHA-512 "$6$", bcrypt "$2b$"); blank
// lines and lines starting with '#' are skipped. The file is read once, at
// start-up.
class Users {
 public:
  // Nothing (with the reason) when the file is missing, too large or holds a
  // malformed line.
  static std::unique_ptr<Users> Load(const std::string& path, std::string& error);
  static std::unique_ptr<Users> FromText(const std::string& text, std::string& error);

  bool Check(const std::string& name, const std::string& password) const;

 private:
  std::map<std::string, std::string> hashes_;
};

}  // namespace Arq::Gnmi
