#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Arq/OrvoViaSwitchMonitoring/Exceptions.h"
#include "Arq/OrvoViaSwitchMonitoring/InputParameters.h"

namespace {

using arq::logging::ILogger;
using Arq::OrvoViaSwitchMonitoring::InputParameters;
using Arq::OrvoViaSwitchMonitoring::InvalidInputParameterException;
using Arq::OrvoViaSwitchMonitoring::MonitoringProcessorMode;

InputParameters Defaults() {
  return InputParameters(300, 26214400, 9092, 10000, 60000, "Warning",
                         MonitoringProcessorMode::Thrift, 5, "/data",
                         "SwitchMonitoringOptions.json");
}

InputParameters::Parameters Parse(const InputParameters& holder, std::vector<std::string> words) {
  std::vector<const char*> argv{"OrvoViaSwitchMonitoring"};
  for (const auto& word : words) argv.push_back(word.c_str());
  return holder.Parse(static_cast<int>(argv.size()), argv.data());
}

TEST(InputParametersTest, NoArgumentAsksForHelpAndKeepsDefaults) {
  const char* argv[] = {"OrvoViaSwitchMonitoring"};
  const auto p = Defaults().Parse(1, argv);
  EXPECT_TRUE(p.help);
  EXPECT_FALSE(p.version);
  EXPECT_EQ(p.loggerConfigurationsPath, "");
  EXPECT_EQ(p.redirectOutput, "");
  EXPECT_EQ(p.redirectOutputSplitPeriod, 300);
  EXPECT_EQ(p.redirectOutputFileSize, 26214400);
  EXPECT_EQ(p.remoteIpAddress, "");
  EXPECT_EQ(p.remotePortNumber, 9092);
  EXPECT_EQ(p.remoteConnectionTimeout, 10000);
  EXPECT_EQ(p.remoteReceiveTimeout, 60000);
  EXPECT_EQ(p.logLevel, ILogger::Warning);
  EXPECT_EQ(p.monitoringProcessorMode, MonitoringProcessorMode::Thrift);
  EXPECT_EQ(p.collectMetricsPeriod, 5);
  EXPECT_EQ(p.dataSetupFolder, "/data");
  EXPECT_EQ(p.optionsFilename, "SwitchMonitoringOptions.json");
}

TEST(InputParametersTest, KeywordsPrefixesAndOverrides) {
  const auto p =
      Parse(Defaults(),
            {"logger_configurations_path:/etc/l.cfg", "redirect_output:/x.log",
             "redirect_output_split_period:60", "redirect_output_file_size:1024",
             "remote_ip_address:10.0.0.2", "remote_port_number:9100",
             "remote_ms_connection_timeout:1500", "remote_ms_receive_timeout:2500",
             "log_level:Info", "monitoring_processor_mode:Fake", "collect_metrics_period:2",
             "data_setup_folder:/tmp/d", "options_filename:o.json", "collect_metrics_period:3"});
  EXPECT_FALSE(p.help);
  EXPECT_EQ(p.loggerConfigurationsPath, "/etc/l.cfg");
  EXPECT_EQ(p.redirectOutput, "/x.log");
  EXPECT_EQ(p.redirectOutputSplitPeriod, 60);
  EXPECT_EQ(p.redirectOutputFileSize, 1024);
  EXPECT_EQ(p.remoteIpAddress, "10.0.0.2");
  EXPECT_EQ(p.remotePortNumber, 9100);
  EXPECT_EQ(p.remoteConnectionTimeout, 1500);
  EXPECT_EQ(p.remoteReceiveTimeout, 2500);
  EXPECT_EQ(p.logLevel, ILogger::Info);
  EXPECT_EQ(p.monitoringProcessorMode, MonitoringProcessorMode::Fake);
  EXPECT_EQ(p.collectMetricsPeriod, 3);
  EXPECT_EQ(p.dataSetupFolder, "/tmp/d");
  EXPECT_EQ(p.optionsFilename, "o.json");

  const auto flags = Parse(Defaults(), {"-verbose", "-hx"});
  EXPECT_TRUE(flags.version);
  EXPECT_TRUE(flags.help);
  const auto both = Parse(Defaults(), {"--help", "--version"});
  EXPECT_TRUE(both.version);
  EXPECT_TRUE(both.help);
}

TEST(InputParametersTest, NumbersFallBackToFixedLiterals) {
  // A holder with other defaults: a bad number still gives the fixed literal.
  const InputParameters other(1, 2, 3, 4, 5, "Error", MonitoringProcessorMode::Fake, 6, "/o",
                              "o.json");
  auto p = Parse(other, {"remote_port_number:70000"});
  EXPECT_EQ(p.remotePortNumber, 4464);
  p = Parse(other, {"remote_port_number:abc"});
  EXPECT_EQ(p.remotePortNumber, 9092);
  p = Parse(other, {"redirect_output_split_period:99999999999"});
  EXPECT_EQ(p.redirectOutputSplitPeriod, 300);
  p = Parse(other, {"collect_metrics_period:"});
  EXPECT_EQ(p.collectMetricsPeriod, 5);
  p = Parse(other, {"collect_metrics_period: 7x"});
  EXPECT_EQ(p.collectMetricsPeriod, 7);
  p = Parse(other, {"redirect_output_file_size:99999999999"});
  EXPECT_EQ(p.redirectOutputFileSize, 99999999999L);
  p = Parse(other, {"redirect_output_file_size:z"});
  EXPECT_EQ(p.redirectOutputFileSize, 26214400L);
  p = Parse(other, {"remote_ms_connection_timeout:-"});
  EXPECT_EQ(p.remoteConnectionTimeout, 10000);
  p = Parse(other, {"remote_ms_receive_timeout:"});
  EXPECT_EQ(p.remoteReceiveTimeout, 60000);
  p = Parse(other, {"remote_port_number:-1"});
  EXPECT_EQ(p.remotePortNumber, -1);

  EXPECT_EQ(InputParameters::StringToInt("", 5), 5);
  EXPECT_EQ(InputParameters::StringToInt("  12", 5), 12);
  EXPECT_EQ(InputParameters::StringToInt("2147483648", 5), 5);
  EXPECT_EQ(InputParameters::StringToInt("65536", static_cast<short>(1)), 0);
  EXPECT_EQ(InputParameters::StringToInt("9223372036854775808", 3L), 3L);
}

TEST(InputParametersTest, WordsAreCaseSensitiveAndValuesMayBeEmpty) {
  auto p = Parse(Defaults(), {"monitoring_processor_mode:fake"});
  EXPECT_EQ(p.monitoringProcessorMode, MonitoringProcessorMode::Thrift);
  p = Parse(Defaults(), {"log_level:warning"});
  EXPECT_EQ(p.logLevel, ILogger::NoLog);
  p = Parse(Defaults(), {"log_level:NoLog"});
  EXPECT_EQ(p.logLevel, ILogger::NoLog);
  p = Parse(Defaults(), {"log_level:Trace"});
  EXPECT_EQ(p.logLevel, ILogger::Trace);
  p = Parse(Defaults(), {"remote_ip_address:", "data_setup_folder:", "options_filename:"});
  EXPECT_EQ(p.remoteIpAddress, "");
  EXPECT_EQ(p.dataSetupFolder, "");
  EXPECT_EQ(p.optionsFilename, "");
}

TEST(InputParametersTest, UnknownArgumentThrowsEvenAfterGoodOnes) {
  for (const auto& words :
       std::vector<std::vector<std::string>>{{"foo"},
                                             {"log_level:Info", "collect_metrics_period:3", "foo"},
                                             {"LOG_LEVEL:Info"},
                                             {""}}) {
    try {
      Parse(Defaults(), words);
      FAIL() << "no exception for " << words.back();
    } catch (const InvalidInputParameterException& error) {
      EXPECT_EQ(std::string(error.what()),
                "InputParameters:Parse Invalid Input Parameter " + words.back());
    }
  }
}

}  // namespace
