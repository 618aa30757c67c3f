#include "Arq/TestSupport/Certificates.h"

#include <chrono>
#include <stdexcept>
#include <vector>

#include "Arq/TestSupport/Process.h"
#include "Arq/TestSupport/TempDir.h"

namespace Arq::TestSupport {
namespace {

void OpenSsl(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "openssl");
  const auto result = RunCommand(arguments, {}, std::chrono::seconds(30), true);
  if (result.status != 0) throw std::runtime_error("openssl failed: " + result.output);
}

std::vector<std::string> NewKey(const std::string& dir, const std::string& name) {
  return {"-newkey",
          "ec",
          "-pkeyopt",
          "ec_paramgen_curve:P-256",
          "-nodes",
          "-keyout",
          dir + "/" + name + ".key"};
}

// A certificate for `name`.key signed by the CA, with the extensions given.
void Signed(const std::string& dir, const std::string& name, const std::string& subject,
            const std::string& extensions) {
  auto request = NewKey(dir, name);
  request.insert(request.begin(), "req");
  request.insert(request.end(), {"-subj", subject, "-out", dir + "/" + name + ".csr"});
  OpenSsl(request);
  WriteFile(dir + "/" + name + ".ext", extensions + "\n");
  OpenSsl({"x509", "-req", "-in", dir + "/" + name + ".csr", "-CA", dir + "/ca.pem", "-CAkey",
           dir + "/ca.key", "-CAcreateserial", "-days", "2", "-extfile", dir + "/" + name + ".ext",
           "-out", dir + "/" + name + ".pem"});
}

void SelfSigned(const std::string& dir, const std::string& name, const std::string& subject,
                const std::vector<std::string>& extensions) {
  auto command = NewKey(dir, name);
  command.insert(command.begin(), {"req", "-x509"});
  command.insert(command.end(),
                 {"-days", "2", "-subj", subject, "-out", dir + "/" + name + ".pem"});
  for (const auto& extension : extensions) {
    command.push_back("-addext");
    command.push_back(extension);
  }
  OpenSsl(command);
}

}  // namespace

void MakeTestCertificates(const std::string& dir) {
  SelfSigned(dir, "ca", "/CN=orvovia test CA",
             {"basicConstraints=critical,CA:TRUE", "keyUsage=critical,keyCertSign,cRLSign"});
  Signed(dir, "server", "/CN=127.0.0.1",
         "subjectAltName=IP:127.0.0.1,DNS:localhost\nextendedKeyUsage=serverAuth");
  Signed(dir, "client", "/CN=prometheus", "extendedKeyUsage=clientAuth");
  SelfSigned(dir, "rogue", "/CN=prometheus", {"extendedKeyUsage=clientAuth"});
}

}  // namespace Arq::TestSupport
