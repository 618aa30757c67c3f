#pragma once

#include <memory>
#include <string>
#include <utility>

#include "Arq/Logging/Loader/Loggers.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftClientsFabric.h"
#include "Arq/OrvoViaSwitchService/Client/Thrift/ServiceCall.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

// What the five proxy clients share: the fabric of their own connection, a
// logger named after the concrete class, Open/Close, and the one way to make
// a service call.
template <typename DomainInterface>
class OrvoViaSwitchThriftProxyClient : public DomainInterface {
 public:
  void Open() override {
    InvokeServiceCall(logger, ARQ_CALL_SITE, [this] { fabric->Open(); });
  }

  void Close() override { fabric->Close(); }

 protected:
  OrvoViaSwitchThriftProxyClient(std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
                                 const std::string& loggerName)
      : OrvoViaSwitchThriftProxyClient(
            std::move(fabric), Logging::Loader::Loggers::GetInstance().GetLogger(loggerName)) {}

  OrvoViaSwitchThriftProxyClient(std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
                                 std::shared_ptr<arq::logging::ILogger> logger)
      : fabric(std::move(fabric)), logger(std::move(logger)) {}

  template <typename Call>
  auto Invoke(const CallSite& site, Call&& call) -> decltype(call()) {
    return InvokeServiceCall(logger, site, std::forward<Call>(call));
  }

  std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric;
  std::shared_ptr<arq::logging::ILogger> logger;
};

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
