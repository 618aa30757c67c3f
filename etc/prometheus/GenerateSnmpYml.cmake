# cmake -DGENERATOR=<prometheus-snmp-generator> -DMIB_DIR=<MIB folder> -DSOURCE_DIR=<etc/prometheus>
#       -DWORK_DIR=<folder> -DOUT=<snmp.yml> -DARQ_ENTERPRISE_NUMBER=<n> -P GenerateSnmpYml.cmake
# Runs the generator on generator.yml (it reads it from its working folder)
# with only the build's MIB texts, then compares the result with the shipped
# snmp.yml, whose private OIDs carry the documentation number 32473. The
# module orvovia_inventory, whose MIBs the generator has no text for, is
# appended from the standard views' definition files (-DSTANDARD_DIR=<folder
# of *Objects.def>, StandardMetrics.cmake).
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
file(READ ${WORK_DIR}/snmp.yml generated)
include(${SOURCE_DIR}/StandardMetrics.cmake)
file(GLOB definitions ${STANDARD_DIR}/*Objects.def)
arq_read_standard_objects(${definitions})
arq_inventory_module(inventory)
string(APPEND generated "${inventory}")
file(WRITE ${WORK_DIR}/snmp.yml "${generated}")
file(READ ${SOURCE_DIR}/snmp.yml shipped)
string(REPLACE "1.3.6.1.4.1.32473." "1.3.6.1.4.1.${ARQ_ENTERPRISE_NUMBER}." shipped "${shipped}")
if(NOT generated STREQUAL shipped)
  message(FATAL_ERROR
    "${SOURCE_DIR}/snmp.yml is not what generator.yml, the MIB texts and the standard "
    "views' definition files give (${WORK_DIR}/snmp.yml). From a build with the default "
    "enterprise number, copy that file over the shipped one.")
endif()
file(WRITE ${OUT} "${generated}")
