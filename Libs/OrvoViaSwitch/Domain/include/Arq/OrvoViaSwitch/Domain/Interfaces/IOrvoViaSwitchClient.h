#pragma once

namespace Arq::OrvoViaSwitch::Domain::Interfaces {

// A client of one switch service with a connection of its own. Every
// operation of a derived client reports failures as DomainException.
class IOrvoViaSwitchClient {
 public:
  virtual ~IOrvoViaSwitchClient() = default;
  virtual void Open() = 0;
  virtual void Close() = 0;
};

}  // namespace Arq::OrvoViaSwitch::Domain::Interfaces
