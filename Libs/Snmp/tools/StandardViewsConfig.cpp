// Writes every list of the standard views' objects that lives outside the
// code, from the declarations the views are served from (Standard/Objects/
// *.def, read here through the preprocessor):
//   ArqStandardViewsConfig snmp-yml          the snmp_exporter modules
//                                            orvovia_ports and orvovia_inventory
//   ArqStandardViewsConfig collectd-data <group>
//                                            a group of the collectd snmp
//                                            plugin's Data blocks
//   ArqStandardViewsConfig collectd-collect <group>
//                                            the Collect lines naming them
//   ArqStandardViewsConfig <block>           one block of a shipped file (below)
//   ArqStandardViewsConfig check <source>    names each shipped file whose blocks
//                                            are not what the declarations give
//                                            (status 1; 2 for any other fault)
//   ArqStandardViewsConfig write <source>    rewrites those blocks
// A block of a shipped file sits between a line holding
// "generated: ArqStandardViewsConfig <block>" and the next line holding
// "end generated"; the rest of the file is written by hand.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Standard/Engine/ShownCounters.h"
#include "Standard/Views/PortCounterTables.h"

namespace {

using Arq::OrvoViaSwitch::Domain::Dto::kEthCounterNames;
using Arq::Snmp::Standard::ColumnInfo;
using Arq::Snmp::Standard::ColumnUse;
using Arq::Snmp::Standard::PortCounterTables;
using Arq::Snmp::Standard::TableInfo;

constexpr const char* kGeneratedMark = "generated: ArqStandardViewsConfig ";
constexpr const char* kEndMark = "end generated";

struct Object {
  const char* name;
  const char* syntax;
  std::vector<unsigned> arcs;
};

// One definition file of Standard/Objects.
struct DefinitionFile {
  const char* file;
  std::vector<Object> objects;
};

#define ARQ_STD_OBJECT(name, syntax, ...) Object{#name, #syntax, {__VA_ARGS__}},
const std::vector<DefinitionFile>& DefinitionFiles() {
  static const std::vector<DefinitionFile> files{
      {"IfMibObjects.def",
       {
#include "Standard/Objects/IfMibObjects.def"
       }},
      {"LldpObjects.def",
       {
#include "Standard/Objects/LldpObjects.def"
       }},
      {"EntityObjects.def",
       {
#include "Standard/Objects/EntityObjects.def"
       }},
      {"BridgeObjects.def",
       {
#include "Standard/Objects/BridgeObjects.def"
       }},
      {"PtpBaseObjects.def",
       {
#include "Standard/Objects/PtpBaseObjects.def"
       }},
  };
  return files;
}
#undef ARQ_STD_OBJECT

struct Subtree {
  const char* name;
  std::string role;
  std::vector<unsigned> arcs;
};
const std::vector<Subtree>& Subtrees() {
  static const std::vector<Subtree> subtrees{
#define ARQ_STD_SUBTREE(name, role, ...) {#name, #role, {__VA_ARGS__}},
#include "Standard/Objects/Subtrees.def"
#undef ARQ_STD_SUBTREE
  };
  return subtrees;
}

std::string Dotted(const std::vector<unsigned>& arcs) {
  std::string text;
  for (unsigned arc : arcs) text += (text.empty() ? "" : ".") + std::to_string(arc);
  return text;
}

bool Contains(const std::vector<std::string>& list, const std::string& item) {
  return std::find(list.begin(), list.end(), item) != list.end();
}

const Object& Find(const std::string& name) {
  for (const auto& file : DefinitionFiles()) {
    for (const auto& object : file.objects) {
      if (name == object.name) return object;
    }
  }
  throw std::runtime_error(name + " is in no definition file");
}

template <typename Visit>
void ForEachExported(Visit visit) {
  for (const auto& table : PortCounterTables()) {
    for (const auto& column : table.columns) {
      if (column.use == ColumnUse::Export) visit(table, column);
    }
  }
}

// "the switch's NbOfCrcErrorEvents" for a column that shows one counter.
std::string Source(const ColumnInfo& column) {
  if (std::string(column.value).rfind("ARQ_SHOWN", 0) == 0) {
    const std::size_t counter = Arq::Snmp::Standard::CounterShownBy(column.name);
    if (counter >= kEthCounterNames.size()) {
      throw std::runtime_error(std::string(column.name) + " shows no counter");
    }
    return "the switch's " + std::string(kEthCounterNames[counter]);
  }
  return "the port's mode and link";
}

void PrintPortsModule(std::ostream& out) {
  out << "# The switch's per-port error, pause, size and duplex counters of the\n"
         "# standard MIBs, by object identifier (no package carries these MIB texts\n"
         "# for the generator): written by the build from PortCounterObjects.def.\n"
         "orvovia_ports:\n  walk:\n";
  ForEachExported([&out](const TableInfo& table, const ColumnInfo& column) {
    out << "  - " << table.Oid(column) << "\n";
  });
  const std::string ifName = Dotted(Find("ifName").arcs), ifAlias = Dotted(Find("ifAlias").arcs);
  out << "  - " << ifName << "\n  - " << ifAlias << "\n  metrics:\n";
  ForEachExported([&out, &ifName, &ifAlias](const TableInfo& table, const ColumnInfo& column) {
    out << "  - name: " << column.name << "\n    oid: " << table.Oid(column)
        << "\n    type: " << (column.Counter() ? "counter" : "gauge") << "\n    help: " << table.mib
        << " " << column.name << ", from " << Source(column) << " - " << table.Oid(column)
        << "\n    indexes:\n    - labelname: ifIndex\n      type: gauge\n"
        << "    lookups:\n";
    for (const auto& [label, oid] : {std::pair{"ifAlias", ifAlias}, std::pair{"ifName", ifName}}) {
      out << "    - labels:\n      - ifIndex\n      labelname: " << label << "\n      oid: " << oid
          << "\n      type: DisplayString\n";
    }
  });
}

// The module orvovia_inventory: the generator has no MIB text for ENTITY-MIB,
// Q-BRIDGE-MIB or PTPBASE-MIB, so each metric names its object, the
// exporter's type, its index objects and its lookups here, and takes their
// identifiers and index types from the definition files.
struct Lookup {
  const char* object;
  const char* label;
};
struct InventoryMetric {
  const char* name;
  const char* type;
  std::vector<const char*> indexes;
  std::vector<Lookup> lookups;
  const char* help;
  std::vector<const char*> enumValues;
};

// - entPhysicalModelName: the chassis (entPhysicalIndex 1, fetched by GET, so
//   that ports give no series) as an info metric, a constant 1 whose labels are
//   its model, serial number, software revision and name;
// - dot1qPvid: each bridge port's VLAN id, with the port's ifIndex (to join
//   with if_mib's series);
// - ptpbaseClockPortRunningRole: each PTP port's role, 1 master, 2 slave, with
//   the port's name and ifIndex.
const std::vector<InventoryMetric>& InventoryMetrics() {
  static const std::vector<InventoryMetric> metrics{
      {"entPhysicalModelName",
       "DisplayString",
       {"entPhysicalIndex"},
       {{"entPhysicalSerialNum", "entPhysicalSerialNum"},
        {"entPhysicalSoftwareRev", "entPhysicalSoftwareRev"},
        {"entPhysicalName", "entPhysicalName"}},
       "The chassis' model, serial number and software revision (value 1)",
       {}},
      {"dot1qPvid",
       "gauge",
       {"dot1dBasePort"},
       {{"dot1dBasePortIfIndex", "ifIndex"}},
       "The VLAN id given to untagged frames received on the bridge port",
       {}},
      {"ptpbaseClockPortRunningRole",
       "gauge",
       {"ptpbaseClockPortRunningDomainIndex", "ptpbaseClockPortRunningClockTypeIndex",
        "ptpbaseClockPortRunningClockInstanceIndex", "ptpbaseClockPortRunningPortNumberIndex"},
       {{"ptpbaseClockPortRunningName", "ptpbaseClockPortRunningName"},
        {"ptpbaseClockPortRunningInterfaceIndex", "ifIndex"}},
       "The PTP port's role, 1 master or 2 slave",
       {"1: master", "2: slave"}},
  };
  return metrics;
}
// Fetched by GET, the chassis' cells only.
const std::vector<std::string> kInventoryGets{"entPhysicalModelName", "entPhysicalSerialNum",
                                              "entPhysicalSoftwareRev", "entPhysicalName"};
constexpr unsigned kChassis = 1;

// The exporter's type of a lookup or an index, by the object's syntax.
std::string ExporterType(const std::string& name) {
  const std::string syntax = Find(name).syntax;
  return syntax == "SnmpAdminString" || syntax == "DisplayString" ? "DisplayString" : "gauge";
}

void PrintInventoryModule(std::ostream& out) {
  std::vector<std::string> walked;
  auto walk = [&](const std::string& name) {
    const std::string oid = Dotted(Find(name).arcs);
    if (!Contains(kInventoryGets, name) && !Contains(walked, oid)) {
      walked.push_back(oid);
    }
  };
  for (const auto& metric : InventoryMetrics()) {
    walk(metric.name);
    for (const auto& lookup : metric.lookups) walk(lookup.object);
  }
  out << "orvovia_inventory:\n  walk:\n";
  for (const auto& oid : walked) out << "  - " << oid << "\n";
  out << "  get:\n";
  for (const auto& name : kInventoryGets) {
    out << "  - " << Dotted(Find(name).arcs) << "." << kChassis << "\n";
  }
  out << "  metrics:\n";
  for (const auto& metric : InventoryMetrics()) {
    const std::string help = metric.help;
    if (help.find(": ") != std::string::npos || help.find(" #") != std::string::npos) {
      throw std::runtime_error(std::string("the help of ") + metric.name +
                               " must be a plain YAML text");
    }
    const std::string oid = Dotted(Find(metric.name).arcs);
    out << "  - name: " << metric.name << "\n    oid: " << oid << "\n    type: " << metric.type
        << "\n    help: " << help << " - " << oid << "\n    indexes:\n";
    for (const auto& index : metric.indexes) {
      out << "    - labelname: " << index << "\n      type: " << ExporterType(index) << "\n";
    }
    out << "    lookups:\n";
    for (const auto& lookup : metric.lookups) {
      out << "    - labels:\n";
      for (const auto& index : metric.indexes) out << "      - " << index << "\n";
      out << "      labelname: " << lookup.label
          << "\n      oid: " << Dotted(Find(lookup.object).arcs)
          << "\n      type: " << ExporterType(lookup.object) << "\n";
    }
    if (!metric.enumValues.empty()) {
      out << "    enum_values:\n";
      for (const auto& value : metric.enumValues) out << "      " << value << "\n";
    }
  }
}

// The collectd snmp plugin's Data blocks, by group; a group's blocks and its
// Collect lines take the place of the snippet's "#:<group>-data" and
// "#:<group>-collect" lines (etc/collectd). The group port-counter is every
// exported column of PortCounterObjects.def; the others are declared here,
// each block naming its objects, whose identifiers come from the definition
// files.
constexpr const char* kPortCounterGroup = "port-counter";
struct CollectdMetric {
  std::string name;      // the block orvovia_<name>
  std::string type;      // collectd's type
  std::string instance;  // the object naming each row; empty: the row's index
  std::string prefix;    // the type instance's prefix
  std::string key;       // what the values' numbers mean
  std::vector<std::string> values;
};
struct CollectdGroup {
  const char* name;
  std::vector<CollectdMetric> metrics;
};

// - if-mib: every interface's traffic, errors, discards and state, by ifName;
// - inventory: each bridge port's VLAN id, by bridge port number; each PTP
//   port's role, by the port's name.
const std::vector<CollectdGroup>& CollectdGroups() {
  static const std::vector<CollectdGroup> groups{
      {"if-mib",
       {{"if_octets", "if_octets", "ifName", "", "", {"ifHCInOctets", "ifHCOutOctets"}},
        {"if_packets", "if_packets", "ifName", "", "", {"ifHCInUcastPkts", "ifHCOutUcastPkts"}},
        {"if_errors", "if_errors", "ifName", "", "", {"ifInErrors", "ifOutErrors"}},
        {"if_dropped", "if_dropped", "ifName", "", "", {"ifInDiscards", "ifOutDiscards"}},
        {"if_oper_status",
         "gauge",
         "ifName",
         "oper_status-",
         "1 up, 2 down, 4 unknown",
         {"ifOperStatus"}}}},
      {"inventory",
       {{"bridge_port_pvid", "gauge", "", "pvid-", "", {"dot1qPvid"}},
        {"ptp_port_role",
         "gauge",
         "ptpbaseClockPortRunningName",
         "ptp_port_role-",
         "",
         {"ptpbaseClockPortRunningRole"}}}},
  };
  return groups;
}
// The declared groups' Collect lines are packed into lines of at most this
// many characters; the port counters' names make one line.
constexpr std::size_t kCollectWidth = 100;

// One Data block, a table read row by row.
struct CollectdBlock {
  std::string name;
  std::string type;
  std::string instanceOid;  // empty: the row's index
  std::string prefix;
  std::string comment;
  std::vector<std::string> valueOids;
};

void PrintCollectdBlock(const CollectdBlock& block, std::ostream& out) {
  out << "  <Data \"orvovia_" << block.name << "\">\n    Type \"" << block.type
      << "\"\n    Table true\n";
  if (!block.instanceOid.empty()) out << "    TypeInstanceOID \"" << block.instanceOid << "\"\n";
  if (!block.prefix.empty()) out << "    TypeInstancePrefix \"" << block.prefix << "\"\n";
  if (!block.comment.empty()) out << "    # " << block.comment << "\n";
  out << "    Values";
  for (const auto& oid : block.valueOids) out << " \"" << oid << "\"";
  out << "\n  </Data>\n";
}

// The blocks of a group; throws for a group that has none.
std::vector<CollectdBlock> CollectdBlocks(const std::string& group) {
  std::vector<CollectdBlock> blocks;
  const std::string ifName = Dotted(Find("ifName").arcs);
  if (group == kPortCounterGroup) {
    ForEachExported([&blocks, &ifName](const TableInfo& table, const ColumnInfo& column) {
      blocks.push_back({column.name,
                        column.Counter() ? "derive" : "gauge",
                        ifName,
                        std::string(column.name) + "-",
                        "",
                        {table.Oid(column)}});
    });
  }
  for (const auto& declared : CollectdGroups()) {
    if (group != declared.name) continue;
    for (const auto& metric : declared.metrics) {
      CollectdBlock block{metric.name, metric.type, "", metric.prefix, "", {}};
      if (!metric.instance.empty()) block.instanceOid = Dotted(Find(metric.instance).arcs);
      std::string names;
      for (const auto& value : metric.values) {
        names += (names.empty() ? "" : ", ") + value;
        block.valueOids.push_back(Dotted(Find(value).arcs));
      }
      // Several values are named in their order; one whose numbers need a
      // key is named with it.
      if (metric.values.size() > 1 || !metric.key.empty()) {
        block.comment = names + (metric.key.empty() ? "" : ": " + metric.key);
      }
      blocks.push_back(block);
    }
  }
  if (blocks.empty()) throw std::runtime_error("no collectd group " + group);
  return blocks;
}

void PrintCollectdData(const std::string& group, std::ostream& out) {
  if (group == kPortCounterGroup) {
    out << "  # The switch's per-port error, pause, size and duplex counters of the\n"
           "  # standard MIBs, every port by ifName (written by the build from\n"
           "  # PortCounterObjects.def; dot3StatsDuplexStatus 1 unknown, 2 half, 3 full).\n";
  }
  for (const auto& block : CollectdBlocks(group)) PrintCollectdBlock(block, out);
}

void PrintCollectdCollect(const std::string& group, std::ostream& out) {
  const std::size_t width = group == kPortCounterGroup ? std::string::npos : kCollectWidth;
  std::string line;
  for (const auto& block : CollectdBlocks(group)) {
    const std::string entry = " \"orvovia_" + block.name + "\"";
    if (!line.empty() && line.size() + entry.size() > width) {
      out << line << "\n";
      line.clear();
    }
    line += (line.empty() ? "    Collect" : "") + entry;
  }
  out << line << "\n";
}

// snmpd's view lines: one per MIB module subtree the sub-agent serves.
void PrintSnmpdViews(std::ostream& out) {
  for (const auto& subtree : Subtrees()) {
    if (subtree.role == "Module") {
      out << "view systemonly included ." << Dotted(subtree.arcs) << "\n";
    }
  }
}

// The benchmark's tables, name:identifier, packed into lines of at most 110
// characters of the bash array they sit in.
void PrintBenchTables(std::ostream& out) {
  std::vector<std::string> entries;
  for (const auto& file : DefinitionFiles()) {
    for (const auto& object : file.objects) {
      if (std::string(object.syntax) == "Table") {
        entries.push_back(std::string(object.name) + ":" + Dotted(object.arcs));
      }
    }
  }
  for (const auto& table : PortCounterTables()) {
    entries.push_back(std::string(table.name) + ":" + Dotted(table.arcs));
  }
  std::string line;
  for (const auto& entry : entries) {
    if (!line.empty() && line.size() + 1 + entry.size() > 110) {
      out << line << "\n";
      line.clear();
    }
    line += (line.empty() ? "  " : " ") + entry;
  }
  if (!line.empty()) out << line << "\n";
}

// A table of MIB-MAPPING.md: every object of a definition file and the
// served columns of the port counter tables of some MIBs.
struct DocBlock {
  const char* name;
  const char* definitionFile;  // or nullptr
  std::vector<std::string> portCounterMibs;
};

// Every definition file and every port counter table must have its block,
// so that a new one is documented.
const std::vector<DocBlock>& DocBlocks() {
  static const std::vector<DocBlock> blocks{
      {"doc-if-mib", "IfMibObjects.def", {}},
      {"doc-lldp-mib", "LldpObjects.def", {"LLDP-MIB"}},
      {"doc-etherlike-rmon", nullptr, {"EtherLike-MIB", "RMON-MIB", "HC-RMON-MIB"}},
      {"doc-ieee8023-lag-mib", nullptr, {"IEEE8023-LAG-MIB"}},
      {"doc-entity-mib", "EntityObjects.def", {}},
      {"doc-bridge-mib", "BridgeObjects.def", {}},
      {"doc-ptpbase-mib", "PtpBaseObjects.def", {}},
  };
  for (const auto& file : DefinitionFiles()) {
    if (std::none_of(blocks.begin(), blocks.end(), [&file](const DocBlock& block) {
          return block.definitionFile != nullptr && std::string(block.definitionFile) == file.file;
        })) {
      throw std::runtime_error(std::string(file.file) + " has no block of MIB-MAPPING.md");
    }
  }
  for (const auto& table : PortCounterTables()) {
    if (std::none_of(blocks.begin(), blocks.end(), [&table](const DocBlock& block) {
          return Contains(block.portCounterMibs, table.mib);
        })) {
      throw std::runtime_error(std::string(table.mib) + " has no block of MIB-MAPPING.md");
    }
  }
  return blocks;
}

void PrintDocBlock(const DocBlock& block, std::ostream& out) {
  std::vector<std::string> rows;
  auto row = [&rows](const std::string& name, const std::string& oid, const std::string& syntax) {
    rows.push_back("| `" + name + "` | " + oid + " | " + syntax + " |\n");
  };
  std::vector<std::string> sources;
  for (const auto& file : DefinitionFiles()) {
    if (block.definitionFile == nullptr || std::string(block.definitionFile) != file.file) continue;
    for (const auto& object : file.objects) row(object.name, Dotted(object.arcs), object.syntax);
    sources.emplace_back(file.file);
  }
  for (const auto& table : PortCounterTables()) {
    if (!Contains(block.portCounterMibs, table.mib)) continue;
    row(table.name, Dotted(table.arcs), "Table");
    for (const auto& column : table.columns) {
      if (column.use != ColumnUse::Absent) row(column.name, table.Oid(column), column.syntax);
    }
    if (!Contains(sources, "PortCounterObjects.def")) {
      sources.emplace_back("PortCounterObjects.def");
    }
  }
  out << "<details><summary>Its " << rows.size() << " objects: name, identifier, syntax (";
  for (const auto& source : sources) out << (source == sources.front() ? "" : ", ") << source;
  out << ")</summary>\n\n| Object | Identifier | Syntax |\n|---|---|---|\n";
  for (const auto& text : rows) out << text;
  out << "\n</details>\n";
}

// Every block by its name, as its text.
std::string Block(const std::string& name) {
  std::ostringstream out;
  if (name == "snmpd-views") {
    PrintSnmpdViews(out);
  } else if (name == "bench-tables") {
    PrintBenchTables(out);
  } else {
    const auto& blocks = DocBlocks();
    const auto found = std::find_if(blocks.begin(), blocks.end(),
                                    [&name](const DocBlock& block) { return block.name == name; });
    if (found == blocks.end()) throw std::runtime_error("no block " + name);
    PrintDocBlock(*found, out);
  }
  return out.str();
}

// The shipped files with generated blocks, relative to the source folder.
struct ShippedFile {
  std::string path;
  std::vector<std::string> blocks;
};
std::vector<ShippedFile> ShippedFiles() {
  ShippedFile doc{"doc/MIB-MAPPING.md", {}};
  for (const auto& block : DocBlocks()) doc.blocks.emplace_back(block.name);
  return {{"etc/snmpd-master-agentx.conf.example", {"snmpd-views"}},
          {"bench/snmp/run", {"bench-tables"}},
          doc};
}

// The file's text with each generated block replaced by what the
// declarations give; throws when a block is missing, unknown or unclosed.
std::string Regenerate(const std::string& text, const ShippedFile& file) {
  std::istringstream in(text);
  std::string result;
  std::set<std::string> seen;
  std::string open;
  for (std::string line; std::getline(in, line);) {
    if (!open.empty()) {
      if (line.find(kEndMark) == std::string::npos) continue;
      open.clear();
    }
    result += line + "\n";
    const auto mark = line.find(kGeneratedMark);
    if (mark == std::string::npos) continue;
    std::istringstream words(line.substr(mark + std::string(kGeneratedMark).size()));
    words >> open;
    if (std::find(file.blocks.begin(), file.blocks.end(), open) == file.blocks.end() ||
        !seen.insert(open).second) {
      throw std::runtime_error(file.path + ": unexpected block " + open);
    }
    result += Block(open);
  }
  if (!open.empty()) throw std::runtime_error(file.path + ": block " + open + " has no end line");
  for (const auto& block : file.blocks) {
    if (seen.count(block) == 0) throw std::runtime_error(file.path + ": no block " + block);
  }
  return result;
}

// Every definition file of Standard/Objects must be read here: a new one
// would otherwise be missing from every list written from them.
void CheckDefinitionFiles(const std::filesystem::path& source) {
  const auto folder = source / "Libs/Snmp/sources/Standard/Objects";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    const bool object = name.size() > 11 && name.compare(name.size() - 11, 11, "Objects.def") == 0;
    const bool known =
        std::any_of(DefinitionFiles().begin(), DefinitionFiles().end(),
                    [&name](const DefinitionFile& file) { return name == file.file; });
    if (object && !known && name != "PortCounterObjects.def") {
      throw std::runtime_error(entry.path().string() +
                               " is not read by Libs/Snmp/tools/StandardViewsConfig.cpp");
    }
  }
}

// check: 1 when a shipped file differs (each named); write: rewrites those.
int CheckOrWrite(bool write, const std::filesystem::path& source) {
  CheckDefinitionFiles(source);
  int status = 0;
  for (const auto& file : ShippedFiles()) {
    const auto path = source / file.path;
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path.string());
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const std::string generated = Regenerate(text, file);
    if (generated == text) continue;
    if (write) {
      std::ofstream out(path, std::ios::binary | std::ios::trunc);
      if (!(out << generated)) throw std::runtime_error("cannot write " + path.string());
      std::cout << "rewrote " << path.string() << "\n";
    } else {
      std::cerr << path.string() << ": its generated blocks are not what the definitions give\n";
      status = 1;
    }
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  try {
    if (args.size() == 2 && (args[0] == "check" || args[0] == "write")) {
      return CheckOrWrite(args[0] == "write", args[1]);
    }
    if (args.size() == 1 && args[0] == "snmp-yml") {
      PrintPortsModule(std::cout);
      PrintInventoryModule(std::cout);
    } else if (args.size() == 2 && args[0] == "collectd-data") {
      PrintCollectdData(args[1], std::cout);
    } else if (args.size() == 2 && args[0] == "collectd-collect") {
      PrintCollectdCollect(args[1], std::cout);
    } else if (args.size() == 1) {
      std::cout << Block(args[0]);
    } else {
      std::cerr << "usage: ArqStandardViewsConfig snmp-yml|<block>\n"
                   "       ArqStandardViewsConfig collectd-data|collectd-collect <group>\n"
                   "       ArqStandardViewsConfig check|write <source folder>\n";
      return 2;
    }
  } catch (const std::exception& error) {
    std::cerr << "ArqStandardViewsConfig: " << error.what() << "\n";
    return 2;
  }
  return 0;
}
