# cmake -DGENERATOR=<prometheus-snmp-generator> -DMIB_DIR=<MIB folder> -DSOURCE_DIR=<etc/prometheus>
#       -DWORK_DIR=<folder> -DOUT=<snmp.yml> -DARQ_ENTERPRISE_NUMBER=<n>
#       -DPORTS_TOOL=<ArqStandardViewsConfig> -DSTANDARD_DIR=<folder of *Objects.def>
#       -P GenerateSnmpYml.cmake
# Runs the generator on generator.yml (it reads it from its working folder)
# with only the build's MIB texts, appends the orvovia_ports module that
# ArqStandardViewsConfig writes from the standard port counter tables'
# definition (no MIB text needed) and the orvovia_inventory module written
# from the inventory, bridge and PTP views' definition files
# (StandardMetrics.cmake), then compares the result with the shipped
# snmp.yml, whose private OIDs carry the documentation number 32473.
cmake_minimum_required(VERSION 3.18)  # the policies of the project, for StandardMetrics.cmake
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
configure_file(${SOURCE_DIR}/generator.yml ${WORK_DIR}/generator.yml COPYONLY)
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env MIBDIRS=${MIB_DIR} MIBS=
          ${GENERATOR} --fail-on-parse-errors generate --output-path=${WORK_DIR}/snmp.yml
  WORKING_DIRECTORY ${WORK_DIR}
  RESULT_VARIABLE status
  OUTPUT_VARIABLE output
  ERROR_VARIABLE output)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "prometheus-snmp-generator failed:\n${output}")
endif()
execute_process(COMMAND ${PORTS_TOOL} snmp-yml RESULT_VARIABLE status OUTPUT_VARIABLE ports)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${PORTS_TOOL} snmp-yml failed")
endif()
file(APPEND ${WORK_DIR}/snmp.yml "${ports}")
include(${SOURCE_DIR}/StandardMetrics.cmake)
file(GLOB definitions ${STANDARD_DIR}/*Objects.def)
list(FILTER definitions EXCLUDE REGEX "PortCounterObjects.def$")
arq_read_standard_objects(${definitions})
arq_inventory_module(inventory)
file(APPEND ${WORK_DIR}/snmp.yml "${inventory}")
file(READ ${WORK_DIR}/snmp.yml generated)
file(READ ${SOURCE_DIR}/snmp.yml shipped)
string(REPLACE "1.3.6.1.4.1.32473." "1.3.6.1.4.1.${ARQ_ENTERPRISE_NUMBER}." shipped "${shipped}")
if(NOT generated STREQUAL shipped)
  message(FATAL_ERROR
    "${SOURCE_DIR}/snmp.yml is not what generator.yml and the MIB texts give "
    "(${WORK_DIR}/snmp.yml). Regenerate it from a build with the default enterprise number:\n"
    "  cd etc/prometheus && MIBDIRS=<build>/mibs prometheus-snmp-generator generate &&\n"
    "  <build>/Libs/Snmp/ArqStandardViewsConfig snmp-yml >>snmp.yml\n"
    "and the orvovia_inventory module after it (the file's end in ${WORK_DIR}/snmp.yml)")
endif()
file(RENAME ${WORK_DIR}/snmp.yml ${OUT})
