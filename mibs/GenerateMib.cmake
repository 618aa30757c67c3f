# cmake -DIN=<template> -DOUT=<module file> -DARQ_ENTERPRISE_NUMBER=<n> -P GenerateMib.cmake
# Writes the MIB module with the deployment's enterprise number and the
# object identifiers of the modules' table.
if(NOT ARQ_ENTERPRISE_NUMBER MATCHES "^[1-9][0-9]*$")
  message(FATAL_ERROR "ARQ_ENTERPRISE_NUMBER must be a positive integer, not '${ARQ_ENTERPRISE_NUMBER}'")
endif()
include(${CMAKE_CURRENT_LIST_DIR}/ObjectIdentifiers.cmake)
arq_mib_object_identifiers(${IN} ${CMAKE_CURRENT_LIST_DIR}/../Libs/Snmp/sources/ObjectIdentifiers.def)
configure_file(${IN} ${OUT} @ONLY)
