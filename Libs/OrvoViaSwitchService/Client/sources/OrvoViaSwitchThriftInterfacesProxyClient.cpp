#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftInterfacesProxyClient.h"

#include <utility>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/ContainerConversion.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/EnumConverter.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

namespace Dto = OrvoViaSwitch::Domain::Dto;
using Service::Serialization::Thrift::EnumConverter;
using Service::Serialization::Thrift::EthCntConverter;
using Service::Serialization::Thrift::EthStatConverter;
using Service::Serialization::Thrift::FromGeneratedAll;
using Service::Serialization::Thrift::HeaderConverter;
using Service::Serialization::Thrift::IfInfoConverter;
using Service::Serialization::Thrift::IfIpConfigConverter;

OrvoViaSwitchThriftInterfacesProxyClient::OrvoViaSwitchThriftInterfacesProxyClient(
    std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric)
    : OrvoViaSwitchThriftProxyClient(std::move(fabric),
                                     "OrvoViaSwitchThriftInterfacesProxyClient") {}

OrvoViaSwitchThriftInterfacesProxyClient::OrvoViaSwitchThriftInterfacesProxyClient(
    std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
    std::shared_ptr<arq::logging::ILogger> logger)
    : OrvoViaSwitchThriftProxyClient(std::move(fabric), std::move(logger)) {}

std::vector<std::string> OrvoViaSwitchThriftInterfacesProxyClient::GetIfList(
    const Dto::Header& header) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::vector<std::string> result;
    fabric->GetInterfacesClient()->GetIfList(result, HeaderConverter::ToGenerated(header));
    return result;
  });
}

std::map<std::string, Dto::IfInfo> OrvoViaSwitchThriftInterfacesProxyClient::GetIfInfo(
    const Dto::Header& header, const std::vector<std::string>& names) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::map<std::string, ArqSwitchApi::IfInfo_t> result;
    fabric->GetInterfacesClient()->GetInfo(result, HeaderConverter::ToGenerated(header), names);
    return FromGeneratedAll<IfInfoConverter>(result);
  });
}

std::map<std::string, std::vector<Dto::EthCnt>> OrvoViaSwitchThriftInterfacesProxyClient::GetEthCnt(
    const Dto::Header& header, const std::vector<std::string>& names) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::map<std::string, std::vector<ArqSwitchApi::EthCnt_t>> result;
    fabric->GetInterfacesClient()->GetCnt(result, HeaderConverter::ToGenerated(header), names);
    return FromGeneratedAll<EthCntConverter>(result);
  });
}

std::map<std::string, std::vector<Dto::EthStat>>
OrvoViaSwitchThriftInterfacesProxyClient::GetEthStats(const Dto::Header& header,
                                                      const std::vector<std::string>& names) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::map<std::string, std::vector<ArqSwitchApi::EthStat_t>> result;
    fabric->GetInterfacesClient()->GetStats(result, HeaderConverter::ToGenerated(header), names);
    return FromGeneratedAll<EthStatConverter>(result);
  });
}

std::string OrvoViaSwitchThriftInterfacesProxyClient::GetMainMacAddr(const Dto::Header& header) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::string result;
    fabric->GetInterfacesClient()->GetMainMacAddr(result, HeaderConverter::ToGenerated(header));
    return result;
  });
}

std::map<std::string, std::string> OrvoViaSwitchThriftInterfacesProxyClient::GetMacAddr(
    const Dto::Header& header, const std::vector<std::string>& names) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::map<std::string, std::string> result;
    fabric->GetInterfacesClient()->GetMacAddr(result, HeaderConverter::ToGenerated(header), names);
    return result;
  });
}

void OrvoViaSwitchThriftInterfacesProxyClient::SetIfDescription(const Dto::Header& header,
                                                                const std::string& name,
                                                                const std::string& description) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetInterfacesClient()->SetDescription(HeaderConverter::ToGenerated(header), name,
                                                  description);
  });
}

void OrvoViaSwitchThriftInterfacesProxyClient::SetIfStatus(const Dto::Header& header,
                                                           const std::vector<std::string>& names,
                                                           const Dto::IfStatus& status) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetInterfacesClient()->SetStatus(HeaderConverter::ToGenerated(header), names,
                                             EnumConverter::ToGeneratedEnum(status));
  });
}

void OrvoViaSwitchThriftInterfacesProxyClient::SetVID(const Dto::Header& header,
                                                      const std::vector<std::string>& names,
                                                      std::int16_t vid) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetInterfacesClient()->SetVID(HeaderConverter::ToGenerated(header), names, vid);
  });
}

void OrvoViaSwitchThriftInterfacesProxyClient::AddToVlan(const Dto::Header& header,
                                                         const std::vector<std::string>& names,
                                                         std::int16_t vid) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetInterfacesClient()->AddToVlan(HeaderConverter::ToGenerated(header), names, vid);
  });
}

void OrvoViaSwitchThriftInterfacesProxyClient::RemoveFromVlan(const Dto::Header& header,
                                                              const std::vector<std::string>& names,
                                                              std::int16_t vid) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetInterfacesClient()->RemoveFromVlan(HeaderConverter::ToGenerated(header), names, vid);
  });
}

void OrvoViaSwitchThriftInterfacesProxyClient::DeleteIfs(const Dto::Header& header,
                                                         const std::vector<std::string>& names) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetInterfacesClient()->Delete(HeaderConverter::ToGenerated(header), names);
  });
}

void OrvoViaSwitchThriftInterfacesProxyClient::DeleteAllIfs(const Dto::Header& header) {
  Invoke(ARQ_CALL_SITE,
         [&] { fabric->GetInterfacesClient()->DeleteAll(HeaderConverter::ToGenerated(header)); });
}

void OrvoViaSwitchThriftInterfacesProxyClient::SetIpConfig(const Dto::Header& header,
                                                           const std::string& name,
                                                           const Dto::IfIpConfig& config) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetInterfacesClient()->SetIpConfig(HeaderConverter::ToGenerated(header), name,
                                               IfIpConfigConverter::ToGenerated(config));
  });
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
