#include "Arq/OrvoViaSwitchService/Client/Thrift/OrvoViaSwitchThriftConfigProxyClient.h"

#include <utility>

#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/ContainerConversion.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/Converters.h"
#include "Arq/OrvoViaSwitchService/Service/Serialization/Thrift/EnumConverter.h"

namespace Arq::OrvoViaSwitchService::Client::Thrift {

namespace Dto = OrvoViaSwitch::Domain::Dto;
using Service::Serialization::Thrift::ConfigFileConverter;
using Service::Serialization::Thrift::EnumConverter;
using Service::Serialization::Thrift::FromGeneratedAll;
using Service::Serialization::Thrift::HeaderConverter;

OrvoViaSwitchThriftConfigProxyClient::OrvoViaSwitchThriftConfigProxyClient(
    std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric)
    : OrvoViaSwitchThriftProxyClient(std::move(fabric), "OrvoViaSwitchThriftConfigProxyClient") {}

OrvoViaSwitchThriftConfigProxyClient::OrvoViaSwitchThriftConfigProxyClient(
    std::shared_ptr<OrvoViaSwitchThriftClientsFabric> fabric,
    std::shared_ptr<arq::logging::ILogger> logger)
    : OrvoViaSwitchThriftProxyClient(std::move(fabric), std::move(logger)) {}

std::vector<Dto::ConfigFile> OrvoViaSwitchThriftConfigProxyClient::ListConfigFile(
    const Dto::Header& header, const Dto::ConfigType& type) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::vector<ArqSwitchApi::ConfigFile_t> result;
    fabric->GetConfigClient()->ListConfigFile(result, HeaderConverter::ToGenerated(header),
                                              EnumConverter::ToGeneratedEnum(type));
    return FromGeneratedAll<ConfigFileConverter>(result);
  });
}

void OrvoViaSwitchThriftConfigProxyClient::Reset(const Dto::Header& header) {
  Invoke(ARQ_CALL_SITE,
         [&] { fabric->GetConfigClient()->Reset(HeaderConverter::ToGenerated(header)); });
}

void OrvoViaSwitchThriftConfigProxyClient::LoadConfig(const Dto::Header& header,
                                                      const Dto::ConfigFile& file) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetConfigClient()->LoadConfig(HeaderConverter::ToGenerated(header),
                                          ConfigFileConverter::ToGenerated(file));
  });
}

void OrvoViaSwitchThriftConfigProxyClient::LoadFactoryDefault(const Dto::Header& header) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetConfigClient()->LoadFactoryDefault(HeaderConverter::ToGenerated(header));
  });
}

void OrvoViaSwitchThriftConfigProxyClient::SaveRunningConfig2StartUpConfig(
    const Dto::Header& header) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetConfigClient()->SaveRunningConfig2StartUpConfig(
        HeaderConverter::ToGenerated(header));
  });
}

void OrvoViaSwitchThriftConfigProxyClient::BackupRunningConfig(const Dto::Header& header,
                                                               const Dto::ConfigFile& file) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetConfigClient()->BackupRunningConfig(HeaderConverter::ToGenerated(header),
                                                   ConfigFileConverter::ToGenerated(file));
  });
}

void OrvoViaSwitchThriftConfigProxyClient::SetConfigComment(const Dto::Header& header,
                                                            const Dto::ConfigFile& file) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetConfigClient()->SetConfigComment(HeaderConverter::ToGenerated(header),
                                                ConfigFileConverter::ToGenerated(file));
  });
}

std::string OrvoViaSwitchThriftConfigProxyClient::GetConfigComment(const Dto::Header& header,
                                                                   const Dto::ConfigFile& file) {
  return Invoke(ARQ_CALL_SITE, [&] {
    std::string result;
    fabric->GetConfigClient()->GetConfigComment(result, HeaderConverter::ToGenerated(header),
                                                ConfigFileConverter::ToGenerated(file));
    return result;
  });
}

Dto::ConfigFile OrvoViaSwitchThriftConfigProxyClient::GetCurrentConfig(const Dto::Header& header) {
  return Invoke(ARQ_CALL_SITE, [&] {
    ArqSwitchApi::ConfigFile_t result;
    fabric->GetConfigClient()->GetCurrentConfig(result, HeaderConverter::ToGenerated(header));
    return ConfigFileConverter::FromGenerated(result);
  });
}

void OrvoViaSwitchThriftConfigProxyClient::CopyConfig(const Dto::Header& header,
                                                      const Dto::ConfigFile& src,
                                                      const Dto::ConfigFile& dst) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetConfigClient()->Copy(HeaderConverter::ToGenerated(header),
                                    ConfigFileConverter::ToGenerated(src),
                                    ConfigFileConverter::ToGenerated(dst));
  });
}

void OrvoViaSwitchThriftConfigProxyClient::DeleteConfig(const Dto::Header& header,
                                                        const Dto::ConfigFile& file) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetConfigClient()->Delete(HeaderConverter::ToGenerated(header),
                                      ConfigFileConverter::ToGenerated(file));
  });
}

void OrvoViaSwitchThriftConfigProxyClient::RenameConfig(const Dto::Header& header,
                                                        const Dto::ConfigFile& src,
                                                        const Dto::ConfigFile& dst) {
  Invoke(ARQ_CALL_SITE, [&] {
    fabric->GetConfigClient()->Rename(HeaderConverter::ToGenerated(header),
                                      ConfigFileConverter::ToGenerated(src),
                                      ConfigFileConverter::ToGenerated(dst));
  });
}

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
