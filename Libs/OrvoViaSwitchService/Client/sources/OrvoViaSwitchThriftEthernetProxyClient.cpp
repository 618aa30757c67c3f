#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftEthernetProxyClient.h"

#include <utility>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/ContainerConversion.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

namespace Dto = OrvoViaSwitch::Domain::Dto;
using Service::Serialization::Thrift::EthConfigConverter;
using Service::Serialization::Thrift::EthInfoConverter;
using Service::Serialization::Thrift::FromGeneratedAll;
using Service::Serialization::Thrift::HeaderConverter;
using Service::Serialization::Thrift::HwDescConverter;

OrvoViaSwitchThriftEthernetProxyClient::OrvoViaSwitchThriftEthernetProxyClient(
    std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric)
    : OrvoViaSwitchThriftProxyClient(std::move(fabric), "OrvoViaSwitchThriftEthernetProxyClient") {}

OrvoViaSwitchThriftEthernetProxyClient::OrvoViaSwitchThriftEthernetProxyClient(
    std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
    std::shared_ptr<arq::logging::ILogger> logger)
    : OrvoViaSwitchThriftProxyClient(std::move(fabric), std::move(logger)) {}

void OrvoViaSwitchThriftEthernetProxyClient::ConfigureEth(const Dto::Header& header,
                                                          const Dto::EthConfig& config,
                                                          const std::vector<std::string>& names) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetEthernetClient()->Configure(HeaderConverter::ToGenerated(header),
                                           EthConfigConverter::ToGenerated(config), names);
  });
}

std::vector<Dto::EthInfo> OrvoViaSwitchThriftEthernetProxyClient::GetEthInfo(
    const Dto::Header& header, const std::vector<std::string>& names) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::vector<ArqSwitchApi::EthInfo_t> result;
    fabric->GetEthernetClient()->GetEthInfo(result, HeaderConverter::ToGenerated(header), names);
    return FromGeneratedAll<EthInfoConverter>(result);
  });
}

std::vector<Dto::HwDesc> OrvoViaSwitchThriftEthernetProxyClient::GetHardwareDesc(
    const Dto::Header& header) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::vector<ArqSwitchApi::HwDesc_t> result;
    fabric->GetEthernetClient()->GetHardwareDesc(result, HeaderConverter::ToGenerated(header));
    return FromGeneratedAll<HwDescConverter>(result);
  });
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
