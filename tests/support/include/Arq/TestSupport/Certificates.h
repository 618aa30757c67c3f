#pragma once

#include <string>

namespace Arq::TestSupport {

// Test certificates made by openssl in `dir` (P-256 keys, valid two days):
// a CA (ca.pem, ca.key); a server certificate for 127.0.0.1 and localhost
// signed by it (server.pem, server.key); a client certificate signed by it
// (client.pem, client.key); and a self-signed client certificate no CA
// vouches for (rogue.pem, rogue.key). Throws when openssl fails.
void MakeTestCertificates(const std::string& dir);

}  // namespace Arq::TestSupport
