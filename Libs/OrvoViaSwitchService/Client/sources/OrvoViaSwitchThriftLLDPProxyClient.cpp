#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftLLDPProxyClient.h"

#include <utility>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/ContainerConversion.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

namespace Dto = OrvoViaSwitch::Domain::Dto;
using Service::Serialization::Thrift::FromGeneratedAll;
using Service::Serialization::Thrift::HeaderConverter;
using Service::Serialization::Thrift::LldpConfigConverter;
using Service::Serialization::Thrift::LldpInfoConverter;

OrvoViaSwitchThriftLLDPProxyClient::OrvoViaSwitchThriftLLDPProxyClient(
    std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric)
    : OrvoViaSwitchThriftProxyClient(std::move(fabric), "OrvoViaSwitchThriftLLDPProxyClient") {}

OrvoViaSwitchThriftLLDPProxyClient::OrvoViaSwitchThriftLLDPProxyClient(
    std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
    std::shared_ptr<arq::logging::ILogger> logger)
    : OrvoViaSwitchThriftProxyClient(std::move(fabric), std::move(logger)) {}

void OrvoViaSwitchThriftLLDPProxyClient::SetLldpConfig(const Dto::Header& header,
                                                       const Dto::LldpConfig& config) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetLLDPClient()->SetConfig(HeaderConverter::ToGenerated(header),
                                       LldpConfigConverter::ToGenerated(config));
  });
}

Dto::LldpConfig OrvoViaSwitchThriftLLDPProxyClient::GetLldpConfig(const Dto::Header& header) {
  return Invoke(ARQ_CALL_SITE, [&] {
    ArqSwitchApi::lldpConfig_t result;
    fabric->GetLLDPClient()->GetConfig(result, HeaderConverter::ToGenerated(header));
    return LldpConfigConverter::FromGenerated(result);
  });
}

std::vector<Dto::LldpInfo> OrvoViaSwitchThriftLLDPProxyClient::GetLldpInfo(
    const Dto::Header& header) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::vector<ArqSwitchApi::lldpInfo_t> result;
    fabric->GetLLDPClient()->GetInfo(result, HeaderConverter::ToGenerated(header));
    return FromGeneratedAll<LldpInfoConverter>(result);
  });
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
