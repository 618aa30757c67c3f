#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftPTPProxyClient.h"

#include <utility>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/ContainerConversion.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

namespace Dto = OrvoViaSwitch::Domain::Dto;
using Service::Serialization::Thrift::FromGeneratedAll;
using Service::Serialization::Thrift::HeaderConverter;
using Service::Serialization::Thrift::PTPConfigConverter;

OrvoViaSwitchThriftPTPProxyClient::OrvoViaSwitchThriftPTPProxyClient(
    std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric)
    : OrvoViaSwitchThriftProxyClient(std::move(fabric), "OrvoViaSwitchThriftPTPProxyClient") {}

OrvoViaSwitchThriftPTPProxyClient::OrvoViaSwitchThriftPTPProxyClient(
    std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
    std::shared_ptr<arq::logging::ILogger> logger)
    : OrvoViaSwitchThriftProxyClient(std::move(fabric), std::move(logger)) {}

void OrvoViaSwitchThriftPTPProxyClient::SetPTPConfig(const Dto::Header& header,
                                                     const Dto::PTPConfig& config) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetPTPClient()->SetConfig(HeaderConverter::ToGenerated(header),
                                      PTPConfigConverter::ToGenerated(config));
  });
}

void OrvoViaSwitchThriftPTPProxyClient::AddInterfaces(const Dto::Header& header, std::int8_t domain,
                                                      const std::vector<std::string>& names) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetPTPClient()->AddInterfaces(HeaderConverter::ToGenerated(header), domain, names);
  });
}

void OrvoViaSwitchThriftPTPProxyClient::RemoveInterfaces(const Dto::Header& header,
                                                         std::int8_t domain,
                                                         const std::vector<std::string>& names) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetPTPClient()->RemoveInterfaces(HeaderConverter::ToGenerated(header), domain, names);
  });
}

void OrvoViaSwitchThriftPTPProxyClient::DelPTPConfig(const Dto::Header& header,
                                                     std::int8_t domain) {
  Invoke(ARQ_CALL_SITE,
         [&] { fabric->GetPTPClient()->DelConfig(HeaderConverter::ToGenerated(header), domain); });
}

std::vector<Dto::PTPConfig> OrvoViaSwitchThriftPTPProxyClient::GetPTPConfig(
    const Dto::Header& header) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::vector<ArqSwitchApi::PTPConfig_t> result;
    fabric->GetPTPClient()->GetConfig(result, HeaderConverter::ToGenerated(header));
    return FromGeneratedAll<PTPConfigConverter>(result);
  });
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
