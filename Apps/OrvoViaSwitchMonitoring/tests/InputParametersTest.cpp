#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

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

}  // namespace
