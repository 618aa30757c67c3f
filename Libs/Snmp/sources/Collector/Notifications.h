#pragma once

// Notifications, sent through the master agent to its trap sinks: the
// collector becoming unreachable and recovering, and IF-MIB linkUp/linkDown
// when an interface's operational state changes between two switch models.
#include <cstdint>
#include <memory>

#include "Arq/OrvoViaSwitch/Domain/Model/SwitchModel.h"

namespace Arq::Snmp::Standard {

class StandardViews;

// Net-SNMP is not thread-safe, so the notifications are sent from the SNMP
// thread: an alarm of the agent's loop brings `views` up to date once a
// second and acts on each new collection it sees.
class Notifier {
 public:
  explicit Notifier(StandardViews& views) : views(views) {}
  ~Notifier();  // stops the alarm
  Notifier(const Notifier&) = delete;
  Notifier& operator=(const Notifier&) = delete;

  void Start();

 private:
  static void Poll(unsigned int alarm, void* notifier);
  void Poll();
  void CheckLinks(const OrvoViaSwitch::Domain::Model::SwitchModel& previous);

  StandardViews& views;
  unsigned int alarm = 0;
  std::int64_t collections = 0;
  bool unreachableSent = false;
  // The last model whose interfaces were its collection's own.
  std::shared_ptr<const OrvoViaSwitch::Domain::Model::SwitchModel> before;
};

}  // namespace Arq::Snmp::Standard
