#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
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
  // The port keeps the number's 16 bits, read unsigned: a TCP port up to 65535.
  p = Parse(other, {"remote_port_number:-1"});
  EXPECT_EQ(p.remotePortNumber, 65535);
  p = Parse(other, {"remote_port_number:40000"});
  EXPECT_EQ(p.remotePortNumber, 40000);

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

// Every argument either lands in its field or is rejected with the whole
// argument in the message, whatever its bytes or length.
TEST(InputParametersTest, HostileArgumentsParseOrThrowTheExactMessage) {
  using Check = std::function<void(const InputParameters::Parameters&)>;
  const std::string longText(10000, 'x');
  const std::string nonAscii = "\xc3\xa9t\xc3\xa9\xff\xfe\x80";
  const struct {
    std::string argument;
    Check check;  // empty: the argument must be rejected
  } cases[] = {
      {"", nullptr},
      {longText, nullptr},
      {nonAscii, nullptr},
      {":", nullptr},
      {"-", nullptr},
      {"--", nullptr},
      {" --help", nullptr},
      {"remote_port_number", nullptr},
      {"remote_port_number:", [](const auto& p) { EXPECT_EQ(p.remotePortNumber, 9092); }},
      {"remote_port_number:" + std::string(10000, '9'),
       [](const auto& p) { EXPECT_EQ(p.remotePortNumber, 9092); }},
      {"remote_port_number:" + nonAscii,
       [](const auto& p) { EXPECT_EQ(p.remotePortNumber, 9092); }},
      {"remote_port_number:2147483648", [](const auto& p) { EXPECT_EQ(p.remotePortNumber, 9092); }},
      {"remote_port_number:65536", [](const auto& p) { EXPECT_EQ(p.remotePortNumber, 0); }},
      {"remote_port_number:-32769", [](const auto& p) { EXPECT_EQ(p.remotePortNumber, 32767); }},
      {"remote_port_number:+12", [](const auto& p) { EXPECT_EQ(p.remotePortNumber, 12); }},
      {"remote_port_number:0x10", [](const auto& p) { EXPECT_EQ(p.remotePortNumber, 0); }},
      {"redirect_output_file_size:-9223372036854775808",
       [](const auto& p) { EXPECT_EQ(p.redirectOutputFileSize, INT64_MIN); }},
      {"redirect_output_file_size:-9223372036854775809",
       [](const auto& p) { EXPECT_EQ(p.redirectOutputFileSize, 26214400); }},
      {"collect_metrics_period:-5", [](const auto& p) { EXPECT_EQ(p.collectMetricsPeriod, -5); }},
      {"collect_metrics_period:\t 9 s",
       [](const auto& p) { EXPECT_EQ(p.collectMetricsPeriod, 9); }},
      {"log_level:", [](const auto& p) { EXPECT_EQ(p.logLevel, ILogger::NoLog); }},
      {"log_level:Info ", [](const auto& p) { EXPECT_EQ(p.logLevel, ILogger::NoLog); }},
      {"log_level:Error", [](const auto& p) { EXPECT_EQ(p.logLevel, ILogger::Error); }},
      {"monitoring_processor_mode:",
       [](const auto& p) {
         EXPECT_EQ(p.monitoringProcessorMode, MonitoringProcessorMode::Thrift);
       }},
      {"monitoring_processor_mode:Fake ",
       [](const auto& p) {
         EXPECT_EQ(p.monitoringProcessorMode, MonitoringProcessorMode::Thrift);
       }},
      {"logger_configurations_path:" + longText,
       [&](const auto& p) { EXPECT_EQ(p.loggerConfigurationsPath, longText); }},
      {"data_setup_folder:" + nonAscii,
       [&](const auto& p) { EXPECT_EQ(p.dataSetupFolder, nonAscii); }},
      {"redirect_output::", [](const auto& p) { EXPECT_EQ(p.redirectOutput, ":"); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE("argument [" + c.argument.substr(0, 40) + "]");
    if (!c.check) {
      try {
        Parse(Defaults(), {c.argument});
        ADD_FAILURE() << "accepted";
      } catch (const InvalidInputParameterException& error) {
        EXPECT_EQ(std::string(error.what()),
                  "InputParameters:Parse Invalid Input Parameter " + c.argument);
      }
      continue;
    }
    c.check(Parse(Defaults(), {c.argument}));
  }
}

}  // namespace
