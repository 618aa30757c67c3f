#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitchMonitoring/AppVersion.h"
#include "Arq/TestSupport/Process.h"

namespace {

std::string Blanks(std::size_t count) {
  return std::string(count, ' ');
}

// Written from the option table, line by line; the blank runs are counted
// there, not taken from the program.
std::string ExpectedUsage() {
  return "Usage:\n"
         " OrvoViaSwitchMonitoring [OPTION] FILEPATH... [STDOUT REDIRECTION]\n"
         "FILEPATH is a full filepath\n"
         "Example: OrvoViaSwitchMonitoring"
         " logger_configurations_path:./LoggerConfigurationsForMonitoring.cfg"
         " redirect_output:/mnt/APPS/data/log/orvoviaswitchWarden.log "
         "redirect_output_split_period:300"
         " redirect_output_file_size:26214400 remote_ip_address:127.0.0.1 remote_port_number:9092"
         " remote_ms_connection_timeout:10000 remote_ms_receive_timeout:60000 log_level:Warning"
         " monitoring_processor_mode:Thrift collect_metrics_period:5 data_setup_folder:/data"
         " options_filename:SwitchMonitoringOptions.json \n"
         "\n"
         "Miscellaneous:\n"
         "  -v, --version" +
         Blanks(80) + "display version information and exit\n" + "  -h, --help" + Blanks(83) +
         "display this help text and exit\n"
         "\n"
         "Parameters:\n"
         "  logger_configurations_path:<filepath>" +
         Blanks(56) + "full logger configurations path (multiple loggers are supported)\n" +
         "  redirect_output:<filepath>" + Blanks(67) +
         "full file name to which the standard output will be redirected\n" +
         "  redirect_output_split_period:<period>" + Blanks(56) +
         "wait period before to check the redirect output file size before to split (express "
         "in seconds -> default = 300 seconds)\n" +
         "  redirect_output_file_size:<size>" + Blanks(61) +
         "maximum size of the redirect output file before a split (express in bytes)\n" +
         "  remote_ip_address:<ip address>" + Blanks(62) +
         "remote ip address used by the client thrift\n" + "  remote_port_number:<port>" +
         Blanks(68) + "remote port number used by the client thrift\n" +
         "  remote_ms_connection_timeout:<Connection Timeout>" + Blanks(44) +
         "remote thrift connection timeout expressed in milli-seconds\n" +
         "  remote_ms_receive_timeout:<Receive Timeout>" + Blanks(50) +
         "remote thrift receive timeout expressed in milli-seconds\n" + "  log_level:<Log Level>" +
         Blanks(72) + "log level\n" +
         "  monitoring_processor_mode:<monitoring processor mode type>" + Blanks(35) +
         "monitoring processor mode type (Thrift = default / Fake)\n" +
         "  collect_metrics_period:<period>" + Blanks(62) +
         "wait period before to collect another sample of metrics (express in seconds -> "
         "default = 5 seconds)\n" +
         "  data_setup_folder:<filepath>" + Blanks(65) + "watch folder for dynamic parameters\n" +
         "  options_filename:<filename>" + Blanks(66) + "dynamic parameters filename\n";
}

std::string VersionLine() {
  return "project name: OrvoViaSwitchMonitoring version: 2.2.23 " +
         Arq::OrvoViaSwitchMonitoring::AppVersion().DateTime() + "\n";
}

const std::string kEnd0 = "--- The End With Exit Code: (0) ---\n";
const std::string kEndMinus1 = "--- The End With Exit Code: (-1) ---\n";
const std::string kInvalid = "InputParameters:Parse Invalid Input Parameter ";

// Without a logger configurations path the logger loader and the event-handler
// loader each report the missing file once, before anything else is printed.
std::string LoaderLines(const std::string& path = "") {
  const std::string line = "Could not read logger configurations file " + path + "\n";
  return line + line;
}

// The daemon as a process, on the paths that end before any subsystem starts:
// the whole standard output, the end line last, and the process status.
TEST(DaemonCommandLineTest, PathsThatNeedNoSubsystem) {
  const Arq::OrvoViaSwitchMonitoring::AppVersion version;
  EXPECT_EQ(version.Version(), "2.2.23");
  EXPECT_EQ(version.ProjectName(), "OrvoViaSwitchMonitoring");
  // The compiler's date and time forms joined by one blank: "Oct  3 2023 18:00:50".
  EXPECT_THAT(version.DateTime(),
              testing::MatchesRegex("(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 123][0-9] "
                                    "[0-9]{4} [0-2][0-9]:[0-5][0-9]:[0-5][0-9]"));
  const struct {
    std::vector<std::string> arguments;
    std::string output;
    int status;
  } cases[] = {
      {{}, LoaderLines() + ExpectedUsage() + kEnd0, 0},
      {{"--help", "-v"}, LoaderLines() + VersionLine() + kEnd0, 0},
      {{"logger_configurations_path:/nonexistent/x.cfg", "--version"},
       LoaderLines("/nonexistent/x.cfg") + VersionLine() + kEnd0,
       0},
      {{"log_level:Info", "foo", "--help"}, kInvalid + "foo\n" + kEndMinus1, 255},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.arguments));
    std::vector<std::string> command{ARQ_DAEMON_PATH};
    command.insert(command.end(), c.arguments.begin(), c.arguments.end());
    const auto result = Arq::TestSupport::RunCommand(command, {}, std::chrono::seconds(5));
    ASSERT_TRUE(result.status >= 0 && WIFEXITED(result.status)) << result.output;
    EXPECT_EQ(WEXITSTATUS(result.status), c.status);
    EXPECT_EQ(result.output, c.output);
  }
}

}  // namespace
