#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <sstream>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitchMonitoring/AppVersion.h"
#include "Arq/TestSupport/CapturedOutput.h"
#include "Arq/TestSupport/Process.h"

namespace {

using Arq::TestSupport::RunCommand;

struct Outcome {
  int status;
  std::vector<std::string> lines;
};

Outcome RunDaemon(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), ARQ_DAEMON_PATH);
  const auto result = RunCommand(arguments, {}, std::chrono::seconds(30));
  Outcome outcome{-1, {}};
  if (result.status >= 0 && WIFEXITED(result.status)) outcome.status = WEXITSTATUS(result.status);
  std::istringstream in(result.output);
  std::string line;
  while (std::getline(in, line)) outcome.lines.push_back(line);
  return outcome;
}

std::vector<std::string> UsageLines() {
  Arq::TestSupport::CapturedOutput out;
  Arq::OrvoViaSwitchMonitoring::PrintUsage::Print();
  std::vector<std::string> lines;
  std::istringstream in(out.Text());
  std::string line;
  while (std::getline(in, line)) lines.push_back(line);
  return lines;
}

TEST(DaemonCommandLineTest, UsageTextIsExact) {
  const auto lines = UsageLines();
  ASSERT_EQ(lines.size(), 23u);
  EXPECT_EQ(lines[0], "Usage:");
  EXPECT_EQ(lines[1], " OrvoViaSwitchMonitoring [OPTION] FILEPATH... [STDOUT REDIRECTION]");
  EXPECT_EQ(lines[2], "FILEPATH is a full filepath");
  EXPECT_EQ(lines[3],
            "Example: OrvoViaSwitchMonitoring "
            "logger_configurations_path:./LoggerConfigurationsForMonitoring.cfg "
            "redirect_output:/mnt/APPS/data/log/orvoviaswitchWarden.log "
            "redirect_output_split_period:300 redirect_output_file_size:26214400 "
            "remote_ip_address:127.0.0.1 remote_port_number:9092 "
            "remote_ms_connection_timeout:10000 remote_ms_receive_timeout:60000 "
            "log_level:Warning monitoring_processor_mode:Thrift collect_metrics_period:5 "
            "data_setup_folder:/data options_filename:SwitchMonitoringOptions.json ");
  EXPECT_EQ(lines[4], "");
  EXPECT_EQ(lines[5], "Miscellaneous:");
  EXPECT_EQ(lines[6],
            "  -v, --version" + std::string(80, ' ') + "display version information and exit");
  EXPECT_EQ(lines[7], "  -h, --help" + std::string(83, ' ') + "display this help text and exit");
  EXPECT_EQ(lines[8], "");
  EXPECT_EQ(lines[9], "Parameters:");
  EXPECT_EQ(lines[10], "  logger_configurations_path:<filepath>" + std::string(56, ' ') +
                           "full logger configurations path (multiple loggers are supported)");
  EXPECT_EQ(lines[17], "  remote_ms_receive_timeout:<Receive Timeout>" + std::string(50, ' ') +
                           "remote thrift receive timeout expressed in milli-seconds");
  EXPECT_EQ(lines[19], "  monitoring_processor_mode:<monitoring processor mode type>" +
                           std::string(35, ' ') +
                           "monitoring processor mode type (Thrift = default / Fake)");
  EXPECT_EQ(lines[22],
            "  options_filename:<filename>" + std::string(66, ' ') + "dynamic parameters filename");
}

TEST(DaemonCommandLineTest, PathsThatNeedNoSubsystem) {
  const std::string end0 = "--- The End With Exit Code: (0) ---";
  const auto usage = UsageLines();
  const std::string version = "project name: OrvoViaSwitchMonitoring version: 2.2.23 " +
                              Arq::OrvoViaSwitchMonitoring::AppVersion().DateTime();

  for (const auto& arguments : std::vector<std::vector<std::string>>{{}, {"--help"}, {"-hx"}}) {
    const auto outcome = RunDaemon(arguments);
    EXPECT_EQ(outcome.status, 0);
    ASSERT_GE(outcome.lines.size(), usage.size() + 1);
    EXPECT_EQ(outcome.lines.back(), end0);
    // The usage ends just before the end line (loader messages may precede it).
    const std::vector<std::string> tail(outcome.lines.end() - 1 - usage.size(),
                                        outcome.lines.end() - 1);
    EXPECT_EQ(tail, usage);
  }
  for (const auto& arguments :
       std::vector<std::vector<std::string>>{{"--version"}, {"--help", "-v"}, {"-verbose"}}) {
    const auto outcome = RunDaemon(arguments);
    EXPECT_EQ(outcome.status, 0);
    ASSERT_GE(outcome.lines.size(), 2u);
    EXPECT_EQ(outcome.lines[outcome.lines.size() - 2], version);
    EXPECT_EQ(outcome.lines.back(), end0);
  }
  const auto bad = RunDaemon({"log_level:Info", "foo"});
  EXPECT_EQ(bad.status, 255);
  EXPECT_THAT(bad.lines, testing::ElementsAre("InputParameters:Parse Invalid Input Parameter foo",
                                              "--- The End With Exit Code: (-1) ---"));
}

}  // namespace
