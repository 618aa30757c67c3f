#include "Arq/TestSupport/Certificates.h"

#include <chrono>
#include <stdexcept>
#include <vector>

#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/TempDir.h"

namespace Arq::TestSupport {
namespace {

void OpenSsl(const std::vector<std::string>& arguments) {
  std::vector<std::string> argv{"openssl"};
  argv.insert(argv.end(), arguments.begin(), arguments.end());
  const auto result = RunCommand(argv, {}, std::chrono::seconds(30), true);
  if (result.status != 0) throw std::runtime_error("openssl failed: " + result.output);
}

// A new P-256 key `name`.key and a request (`self`: a certificate) for it.
void Request(const std::string& dir, const std::string& name, const std::string& subject, bool self,
             const std::vector<std::string>& extensions = {}) {
  std::vector<std::string> arguments{"req",
                                     "-newkey",
                                     "ec",
                                     "-pkeyopt",
                                     "ec_paramgen_curve:P-256",
                                     "-nodes",
                                     "-keyout",
                                     dir + "/" + name + ".key",
                                     "-subj",
                                     subject,
                                     "-days",
                                     "2",
                                     "-out",
                                     dir + "/" + name + (self ? ".pem" : ".csr")};
  if (self) arguments.insert(arguments.begin() + 1, "-x509");
  for (const auto& extension : extensions)
    arguments.insert(arguments.end(), {"-addext", extension});
  OpenSsl(arguments);
}

// `name`.csr signed by the CA, with the extensions given.
void Sign(const std::string& dir, const std::string& name, const std::string& extensions) {
  WriteFile(dir + "/" + name + ".ext", extensions + "\n");
  OpenSsl({"x509", "-req", "-in", dir + "/" + name + ".csr", "-CA", dir + "/ca.pem", "-CAkey",
           dir + "/ca.key", "-CAcreateserial", "-days", "2", "-extfile", dir + "/" + name + ".ext",
           "-out", dir + "/" + name + ".pem"});
}

}  // namespace

void MakeTestCertificates(const std::string& dir) {
  Request(dir, "ca", "/CN=orvovia test CA", true,
          {"basicConstraints=critical,CA:TRUE", "keyUsage=critical,keyCertSign,cRLSign"});
  Request(dir, "server", "/CN=127.0.0.1", false);
  Sign(dir, "server", "subjectAltName=IP:127.0.0.1,DNS:localhost\nextendedKeyUsage=serverAuth");
  Request(dir, "client", "/CN=prometheus", false);
  Sign(dir, "client", "extendedKeyUsage=clientAuth");
  Request(dir, "rogue", "/CN=prometheus", true, {"extendedKeyUsage=clientAuth"});
}

}  // namespace Arq::TestSupport
