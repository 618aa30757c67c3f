# cmake -DMODE=check|write -DSOURCE_DIR=<repository> -DTOOL=<ArqStandardViewsConfig>
#       -DGENERATOR=<prometheus-snmp-generator> -DMIB_DIR=<build's MIB folder>
#       -DWORK_DIR=<folder> -DARQ_ENTERPRISE_NUMBER=<n> -DBUILD_DIR=<build folder>
#       [-DOUT=<snmp.yml>]
#       -P CheckGenerated.cmake
# The shipped files that list the standard views' objects, each made again
# from the declarations:
# - etc/prometheus/snmp.yml: the generator's output for generator.yml with
#   only the build's MIB texts, followed by the modules orvovia_ports and
#   orvovia_inventory that the tool writes from the definition files. The
#   shipped copy carries the documentation enterprise number 32473;
# - the marked blocks of etc/snmpd-master-agentx.conf.example, bench/snmp/run
#   and doc/MIB-MAPPING.md, which the tool checks or rewrites itself.
# check fails naming every file that differs and writes the build's snmp.yml
# to OUT; write rewrites the shipped files.
cmake_minimum_required(VERSION 3.18)

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
configure_file(${SOURCE_DIR}/etc/prometheus/generator.yml ${WORK_DIR}/generator.yml COPYONLY)
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
execute_process(COMMAND ${TOOL} snmp-yml RESULT_VARIABLE status OUTPUT_VARIABLE modules
                ERROR_VARIABLE output)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${TOOL} snmp-yml failed: ${output}")
endif()
file(APPEND ${WORK_DIR}/snmp.yml "${modules}")
file(READ ${WORK_DIR}/snmp.yml generated)
set(shippedYml ${SOURCE_DIR}/etc/prometheus/snmp.yml)
file(READ ${shippedYml} shipped)
set(documentation "1.3.6.1.4.1.32473.")
set(enterprise "1.3.6.1.4.1.${ARQ_ENTERPRISE_NUMBER}.")

set(differing "")
if(MODE STREQUAL "write")
  string(REPLACE "${enterprise}" "${documentation}" generated "${generated}")
  if(NOT generated STREQUAL shipped)
    file(WRITE ${shippedYml} "${generated}")
    message(STATUS "rewrote ${shippedYml}")
  endif()
else()
  string(REPLACE "${documentation}" "${enterprise}" shipped "${shipped}")
  if(NOT generated STREQUAL shipped)
    string(APPEND differing "${shippedYml}: not what generator.yml, the MIB texts and the "
                            "definitions give (${WORK_DIR}/snmp.yml)\n")
  endif()
endif()

execute_process(COMMAND ${TOOL} ${MODE} ${SOURCE_DIR} RESULT_VARIABLE status
                OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(MODE STREQUAL "write")
  message(STATUS "${output}")
endif()
if(status EQUAL 1 AND MODE STREQUAL "check")
  string(APPEND differing "${errors}")
elseif(NOT status EQUAL 0)
  message(FATAL_ERROR "${TOOL} ${MODE} ${SOURCE_DIR} failed:\n${errors}")
endif()

if(NOT differing STREQUAL "")
  message(FATAL_ERROR "Shipped files differ from what the standard views' declarations give:\n"
                      "${differing}Rewrite them all with\n  scripts/generate-views ${BUILD_DIR}\n"
                      "(cmake --build ${BUILD_DIR} --target ArqWriteGenerated) and commit the result.")
endif()
if(DEFINED OUT)
  file(RENAME ${WORK_DIR}/snmp.yml ${OUT})
endif()
