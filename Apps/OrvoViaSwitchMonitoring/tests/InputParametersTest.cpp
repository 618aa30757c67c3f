#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "Arq/OrvoViaSwitchMonitoring/Constants.h"
#include "Arq/OrvoViaSwitchMonitoring/Defaults.h"
#include "Arq/OrvoViaSwitchMonitoring/Exceptions.h"
#include "Arq/OrvoViaSwitchMonitoring/InputParameters.h"

namespace {

using Arq::OrvoViaSwitchMonitoring::InputParameters;
using Arq::OrvoViaSwitchMonitoring::MonitoringProcessorMode;

// Every field of the record, in order, as "name=value" words.
std::string Fields(const InputParameters::Parameters& p) {
  std::ostringstream out;
  out << "logger=" << p.loggerConfigurationsPath << " redirect=" << p.redirectOutput
      << " split=" << p.redirectOutputSplitPeriod << " size=" << p.redirectOutputFileSize
      << " ip=" << p.remoteIpAddress << " port=" << p.remotePortNumber
      << " connect=" << p.remoteConnectionTimeout << " receive=" << p.remoteReceiveTimeout
      << " level=" << p.logLevel << " help=" << p.help << " version=" << p.version
      << " mode=" << p.monitoringProcessorMode << " period=" << p.collectMetricsPeriod
      << " folder=" << p.dataSetupFolder << " options=" << p.optionsFilename;
  return out.str();
}

// The holder's defaults with the "name=value" words of `changes` replacing theirs.
std::string With(const std::string& changes) {
  std::string fields =
      "logger= redirect= split=1 size=2 ip= port=3 connect=4 receive=5 level=50 help=0 version=0 "
      "mode=1 period=6 folder=/o options=o.json";
  std::istringstream words(changes);
  for (std::string word; words >> word;) {
    const std::string name = " " + word.substr(0, word.find('=') + 1);
    const auto at = (" " + fields).find(name);
    fields.replace(at, fields.find(' ', at) - at, word);
  }
  return fields;
}

// A holder whose defaults differ from every fixed fallback of the parser.
TEST(InputParametersTest, ArgumentsLandInTheirFieldsOrAreRejectedWhole) {
  const InputParameters holder(1, 2, 3, 4, 5, "Error", MonitoringProcessorMode::Fake, 6, "/o",
                               "o.json");
  const std::string longText(10000, 'x');
  const std::string nonAscii = "\xc3\xa9t\xc3\xa9\xff\xfe\x80";
  const struct {
    std::vector<std::string> words;
    std::string changes;  // "rejected": the last word is, with its whole text
  } cases[] = {
      {{}, "help=1"},
      {{"logger_configurations_path:/etc/l.cfg", "redirect_output:/x.log",
        "redirect_output_split_period:60", "redirect_output_file_size:1024",
        "remote_ip_address:10.0.0.2", "remote_port_number:9100",
        "remote_ms_connection_timeout:1500", "remote_ms_receive_timeout:2500", "log_level:Info",
        "monitoring_processor_mode:Thrift", "collect_metrics_period:2", "data_setup_folder:/tmp/d",
        "options_filename:x.json", "collect_metrics_period:3"},
       "logger=/etc/l.cfg redirect=/x.log split=60 size=1024 ip=10.0.0.2 port=9100 connect=1500 "
       "receive=2500 level=30 mode=0 period=3 folder=/tmp/d options=x.json"},
      // Keywords are prefixes: -verbose is the version flag, -hx the help flag.
      {{"-verbose", "-hx"}, "help=1 version=1"},
      // Badly formed numbers give fixed literals, not the holder's defaults.
      {{"remote_port_number:abc", "redirect_output_split_period:99999999999",
        "redirect_output_file_size:z", "remote_ms_connection_timeout:-",
        "remote_ms_receive_timeout:", "collect_metrics_period:"},
       "port=9092 split=300 size=26214400 connect=10000 receive=60000 period=5"},
      {{"remote_port_number:70000", "collect_metrics_period:\t 7x",
        "redirect_output_file_size:99999999999"},
       "port=4464 period=7 size=99999999999"},
      // The port keeps the number's 16 bits, read unsigned: a TCP port up to 65535.
      {{"remote_port_number:-1"}, "port=65535"},
      {{"remote_port_number:40000"}, "port=40000"},
      {{"remote_port_number:65536"}, "port=0"},
      {{"remote_port_number:2147483648", "collect_metrics_period:-5"}, "port=9092 period=-5"},
      // Words are case-sensitive and whole: anything else is NoLog, or Thrift.
      {{"monitoring_processor_mode:fake", "log_level:warning"}, "mode=0 level=100"},
      {{"monitoring_processor_mode:Fake ", "log_level:Info "}, "mode=0 level=100"},
      {{"remote_ip_address:", "data_setup_folder:", "options_filename:", "redirect_output::"},
       "folder= options= redirect=:"},
      {{"logger_configurations_path:" + longText, "data_setup_folder:" + nonAscii},
       "logger=" + longText + " folder=" + nonAscii},
      {{"foo"}, "rejected"},
      {{"log_level:Info", "collect_metrics_period:3", "foo"}, "rejected"},
      {{"LOG_LEVEL:Info"}, "rejected"},
      {{""}, "rejected"},
      {{longText}, "rejected"},
      {{nonAscii}, "rejected"},
      {{" --help"}, "rejected"},
      {{"remote_port_number"}, "rejected"},
  };
  for (const auto& c : cases) {
    std::vector<const char*> argv{"OrvoViaSwitchMonitoring"};
    for (const auto& word : c.words) argv.push_back(word.c_str());
    SCOPED_TRACE("last word [" + (c.words.empty() ? "" : c.words.back().substr(0, 40)) + "]");
    const auto parse = [&] { return holder.Parse(static_cast<int>(argv.size()), argv.data()); };
    if (c.changes != "rejected") {
      EXPECT_EQ(Fields(parse()), With(c.changes));
    } else {
      try {
        parse();
        ADD_FAILURE() << "accepted";
      } catch (const Arq::OrvoViaSwitchMonitoring::InvalidInputParameterException& error) {
        EXPECT_EQ(std::string(error.what()),
                  "InputParameters:Parse Invalid Input Parameter " + c.words.back());
      }
    }
  }
}

// The defaults the documents give are the daemon's: the README's keyword table,
// the man page's "(default ...)" of each keyword, and the environment file's
// settings (the service's own values, which are the defaults but the address).
TEST(InputParametersTest, ReadmeManPageAndEnvironmentFileGiveTheDaemonsDefaults) {
  namespace Defaults = Arq::OrvoViaSwitchMonitoring::Defaults;
  namespace Keywords = Arq::OrvoViaSwitchMonitoring::Constants;
  const auto read = [](const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(std::string(ARQ_SOURCE_DIR) + "/" + path).rdbuf();
    return text.str();
  };
  const std::string readme = read("README.md");
  const std::string manPage = read("doc/OrvoViaSwitchMonitoring.8.in");
  const std::string environment = read("etc/orvovia-switch-monitoring.default");
  const struct {
    const char* keyword;
    std::string value;
    std::string manPageText;  // the man page's words for the default
    const char* variable;     // of the environment file, or none
  } defaults[] = {
      {Keywords::REDIRECT_OUTPUT_SPLIT_PERIOD_ARG,
       std::to_string(Defaults::kRedirectOutputSplitPeriod), "", nullptr},
      {Keywords::REDIRECT_OUTPUT_FILE_SIZE_ARG, std::to_string(Defaults::kRedirectOutputFileSize),
       "", nullptr},
      {Keywords::REMOTE_PORT_NUMBER_ARG, std::to_string(Defaults::kRemotePortNumber), "",
       "REMOTE_PORT_NUMBER"},
      {Keywords::REMOTE_CONNECTION_TIMEOUT_IN_MILLISECOND_ARG,
       std::to_string(Defaults::kRemoteConnectionTimeout), "", "REMOTE_MS_CONNECTION_TIMEOUT"},
      {Keywords::REMOTE_RECEIVE_TIMEOUT_IN_MILLISECOND_ARG,
       std::to_string(Defaults::kRemoteReceiveTimeout), "", "REMOTE_MS_RECEIVE_TIMEOUT"},
      {Keywords::LOG_LEVEL_ARG, Defaults::kLogLevel,
       std::string(Defaults::kLogLevel) + " \" (default)", "LOG_LEVEL"},
      {Keywords::MONITORING_PROCESSOR_MODE_ARG, Defaults::kMonitoringProcessorMode,
       std::string(".B ") + Defaults::kMonitoringProcessorMode + "\n(default",
       "MONITORING_PROCESSOR_MODE"},
      {Keywords::COLLECT_METRICS_PERIOD_ARG, std::to_string(Defaults::kCollectMetricsPeriod), "",
       "COLLECT_METRICS_PERIOD"},
      {Keywords::DATA_SETUP_FOLDER_ARG, Defaults::kDataSetupFolder,
       std::string("(default\n.IR ") + Defaults::kDataSetupFolder + " ;", nullptr},
      {Keywords::OPTIONS_FILENAME_ARG, Defaults::kOptionsFilename,
       std::string("(default\n.IR ") + Defaults::kOptionsFilename + " ).", nullptr},
  };
  for (const auto& d : defaults) {
    EXPECT_NE(readme.find("| `" + std::string(d.keyword) + "` | " + d.value + " |"),
              std::string::npos)
        << d.keyword;
    // The man page's paragraph of the keyword: from its .BI line to the next .TP.
    const auto start = manPage.find(".BI " + std::string(d.keyword));
    const std::string paragraph = manPage.substr(start, manPage.find(".TP", start) - start);
    const std::string words = d.manPageText.empty() ? "(default " + d.value + ")" : d.manPageText;
    EXPECT_NE(paragraph.find(words), std::string::npos) << d.keyword << " in:\n" << paragraph;
    if (d.variable != nullptr) {
      EXPECT_NE(environment.find("\n" + std::string(d.variable) + "=" + d.value + "\n"),
                std::string::npos)
          << d.variable;
    }
  }
}

}  // namespace
