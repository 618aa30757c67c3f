#pragma once

#include <memory>
#include <string>

#include "Arq/Listener/BasicAuth.h"

namespace Arq::Gnmi {

// The users allowed to call the server: "name:hash" lines, the hash any that
// crypt(3) verifies (yescrypt "$y$", SHA-512 "$6$", bcrypt "$2b$"); blank
// lines and lines starting with '#' are skipped. The file is read once, at
// start-up, and bounded as the listeners' configuration files are. Nothing
// (with the reason) when it is missing, too large or holds a malformed line
// or a hash crypt(3) does not know.
std::unique_ptr<Listener::BasicAuthUsers> LoadUsers(const std::string& path, std::string& error);
std::unique_ptr<Listener::BasicAuthUsers> ParseUsers(const std::string& text, std::string& error);

}  // namespace Arq::Gnmi
