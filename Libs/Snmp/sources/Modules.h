#pragma once

// The registration and shutdown functions of the MIB modules, one per object.
#include "Mechanism.h"

namespace Arq::Snmp {

namespace Standard {
class StandardViews;
}

void init_arqSwitchOrvoViaNbEthernetInterfaces();
int handle_arqSwitchOrvoViaNbEthernetInterfaces(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                                netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaNbPRSInterfaces();
int handle_arqSwitchOrvoViaNbPRSInterfaces(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                           netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaNbPTPs();
int handle_arqSwitchOrvoViaNbPTPs(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                  netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaNbHardwareInfos();
int handle_arqSwitchOrvoViaNbHardwareInfos(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                           netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaNbLAGInterfaces();
int handle_arqSwitchOrvoViaNbLAGInterfaces(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                           netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLLDPLocalChassisId();
int handle_arqSwitchOrvoViaLLDPLocalChassisId(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                              netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLLDPLocalManufacturer();
int handle_arqSwitchOrvoViaLLDPLocalManufacturer(netsnmp_mib_handler*,
                                                 netsnmp_handler_registration*,
                                                 netsnmp_agent_request_info*,
                                                 netsnmp_request_info*);
void init_arqSwitchOrvoViaLLDPLocalDeviceName();
int handle_arqSwitchOrvoViaLLDPLocalDeviceName(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLLDPLocalIPManagementAddress();
int handle_arqSwitchOrvoViaLLDPLocalIPManagementAddress(netsnmp_mib_handler*,
                                                        netsnmp_handler_registration*,
                                                        netsnmp_agent_request_info*,
                                                        netsnmp_request_info*);
void init_arqSwitchOrvoViaLLDPLocalDeviceVersion();
int handle_arqSwitchOrvoViaLLDPLocalDeviceVersion(netsnmp_mib_handler*,
                                                  netsnmp_handler_registration*,
                                                  netsnmp_agent_request_info*,
                                                  netsnmp_request_info*);
void init_arqSwitchOrvoViaLLDPLocalSerialNumber();
int handle_arqSwitchOrvoViaLLDPLocalSerialNumber(netsnmp_mib_handler*,
                                                 netsnmp_handler_registration*,
                                                 netsnmp_agent_request_info*,
                                                 netsnmp_request_info*);
void init_arqSwitchOrvoViaConfigCurrentConfigName();
int handle_arqSwitchOrvoViaConfigCurrentConfigName(netsnmp_mib_handler*,
                                                   netsnmp_handler_registration*,
                                                   netsnmp_agent_request_info*,
                                                   netsnmp_request_info*);
void init_arqSwitchOrvoViaConfigCurrentConfigState();
int handle_arqSwitchOrvoViaConfigCurrentConfigState(netsnmp_mib_handler*,
                                                    netsnmp_handler_registration*,
                                                    netsnmp_agent_request_info*,
                                                    netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG1InterfaceName();
int handle_arqSwitchOrvoViaLAG1InterfaceName(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                             netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG1InterfaceStatus();
int handle_arqSwitchOrvoViaLAG1InterfaceStatus(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG1InterfaceVlanId();
int handle_arqSwitchOrvoViaLAG1InterfaceVlanId(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG1InterfaceVlanIds();
int handle_arqSwitchOrvoViaLAG1InterfaceVlanIds(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                                netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG1InterfaceNbEthernetPorts();
int handle_arqSwitchOrvoViaLAG1InterfaceNbEthernetPorts(netsnmp_mib_handler*,
                                                        netsnmp_handler_registration*,
                                                        netsnmp_agent_request_info*,
                                                        netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG2InterfaceName();
int handle_arqSwitchOrvoViaLAG2InterfaceName(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                             netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG2InterfaceStatus();
int handle_arqSwitchOrvoViaLAG2InterfaceStatus(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG2InterfaceVlanId();
int handle_arqSwitchOrvoViaLAG2InterfaceVlanId(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG2InterfaceVlanIds();
int handle_arqSwitchOrvoViaLAG2InterfaceVlanIds(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                                netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG2InterfaceNbEthernetPorts();
int handle_arqSwitchOrvoViaLAG2InterfaceNbEthernetPorts(netsnmp_mib_handler*,
                                                        netsnmp_handler_registration*,
                                                        netsnmp_agent_request_info*,
                                                        netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG3InterfaceName();
int handle_arqSwitchOrvoViaLAG3InterfaceName(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                             netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG3InterfaceStatus();
int handle_arqSwitchOrvoViaLAG3InterfaceStatus(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG3InterfaceVlanId();
int handle_arqSwitchOrvoViaLAG3InterfaceVlanId(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG3InterfaceVlanIds();
int handle_arqSwitchOrvoViaLAG3InterfaceVlanIds(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                                netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts();
int handle_arqSwitchOrvoViaLAG3InterfaceNbEthernetPorts(netsnmp_mib_handler*,
                                                        netsnmp_handler_registration*,
                                                        netsnmp_agent_request_info*,
                                                        netsnmp_request_info*);
void init_arqSwitchOrvoViaEthernetInterfacesTable();
void initialize_table_arqSwitchOrvoViaEthernetInterfacesTable();
void shutdown_arqSwitchOrvoViaEthernetInterfacesTable();
int arqSwitchOrvoViaEthernetInterfacesTable_handler(netsnmp_mib_handler*,
                                                    netsnmp_handler_registration*,
                                                    netsnmp_agent_request_info*,
                                                    netsnmp_request_info*);
void init_arqSwitchOrvoViaPRSInterfacesTable();
void initialize_table_arqSwitchOrvoViaPRSInterfacesTable();
void shutdown_arqSwitchOrvoViaPRSInterfacesTable();
int arqSwitchOrvoViaPRSInterfacesTable_handler(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaPTPsTable();
void initialize_table_arqSwitchOrvoViaPTPsTable();
void shutdown_arqSwitchOrvoViaPTPsTable();
int arqSwitchOrvoViaPTPsTable_handler(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                      netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaHardwareInfosTable();
void initialize_table_arqSwitchOrvoViaHardwareInfosTable();
void shutdown_arqSwitchOrvoViaHardwareInfosTable();
int arqSwitchOrvoViaHardwareInfosTable_handler(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                               netsnmp_agent_request_info*, netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable();
void initialize_table_arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable();
void shutdown_arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable();
int arqSwitchOrvoViaLAG1InterfaceEthernetPortsTable_handler(netsnmp_mib_handler*,
                                                            netsnmp_handler_registration*,
                                                            netsnmp_agent_request_info*,
                                                            netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable();
void initialize_table_arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable();
void shutdown_arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable();
int arqSwitchOrvoViaLAG2InterfaceEthernetPortsTable_handler(netsnmp_mib_handler*,
                                                            netsnmp_handler_registration*,
                                                            netsnmp_agent_request_info*,
                                                            netsnmp_request_info*);
void init_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable();
void initialize_table_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable();
void shutdown_arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable();
int arqSwitchOrvoViaLAG3InterfaceEthernetPortsTable_handler(netsnmp_mib_handler*,
                                                            netsnmp_handler_registration*,
                                                            netsnmp_agent_request_info*,
                                                            netsnmp_request_info*);

// The standard views and the collector's health group, registered from the
// one owner of their tables (Standard::StandardViews): IF-MIB (ifNumber,
// ifTable, ifXTable, ifStackTable), LLDP-MIB, the per-port counters, LAG
// membership and management address in EtherLike-MIB, RMON-MIB, HC-RMON-MIB,
// IEEE8023-LAG-MIB and LLDP-MIB, the switch's inventory (ENTITY-MIB), its
// bridge ports' VLANs (BRIDGE-MIB, Q-BRIDGE-MIB) and its PTP clocks
// (PTPBASE-MIB).
void init_arqSwitchOrvoViaCollector(Standard::StandardViews& views);
void init_ifMib(Standard::StandardViews& views);
void init_lldpMib(Standard::StandardViews& views);
void init_portCounterViews(Standard::StandardViews& views);
void init_entityMib(Standard::StandardViews& views);
void init_bridgeMib(Standard::StandardViews& views);
void init_ptpBaseMib(Standard::StandardViews& views);
// The collector's and IF-MIB's notifications, sent from the agent's loop.
void init_arqSwitchOrvoViaNotifications(Standard::StandardViews& views);

}  // namespace Arq::Snmp
