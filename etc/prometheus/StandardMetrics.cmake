# Included by GenerateSnmpYml.cmake: the exporter module orvovia_inventory,
# written from the standard views' definition files (Libs/Snmp/sources/
# Standard/*Objects.def) since the generator has no MIB text for ENTITY-MIB,
# Q-BRIDGE-MIB or PTPBASE-MIB. Each metric below names its object, the
# exporter's type, its index objects and its lookups (object, or
# object:label to name the label); identifiers and index types come from the
# definition files.
#
# - entPhysicalModelName: the chassis (entPhysicalIndex 1, fetched by GET, so
#   that ports give no series) as an info metric, a constant 1 whose labels
#   are its model, serial number, software revision and name;
# - dot1qPvid: each bridge port's VLAN id, with the port's ifIndex (to join
#   with if_mib's series);
# - ptpbaseClockPortRunningRole: each PTP port's role, 1 master, 2 slave, with
#   the port's name and ifIndex.
set(ARQ_INVENTORY_METRICS
    "entPhysicalModelName|DisplayString|entPhysicalIndex|entPhysicalSerialNum entPhysicalSoftwareRev entPhysicalName|The chassis' model, serial number and software revision (value 1)"
    "dot1qPvid|gauge|dot1dBasePort|dot1dBasePortIfIndex:ifIndex|The VLAN id given to untagged frames received on the bridge port"
    "ptpbaseClockPortRunningRole|gauge|ptpbaseClockPortRunningDomainIndex ptpbaseClockPortRunningClockTypeIndex ptpbaseClockPortRunningClockInstanceIndex ptpbaseClockPortRunningPortNumberIndex|ptpbaseClockPortRunningName ptpbaseClockPortRunningInterfaceIndex:ifIndex|The PTP port's role, 1 master or 2 slave")
# Fetched by GET: the chassis' cells only.
set(ARQ_INVENTORY_GETS entPhysicalModelName entPhysicalSerialNum entPhysicalSoftwareRev entPhysicalName)
set(ARQ_INVENTORY_CHASSIS 1)
set(ARQ_INVENTORY_ENUMS_ptpbaseClockPortRunningRole "1: master" "2: slave")

# Reads every ARQ_STD_OBJECT line of the files into OBJ_OID_<name> (dotted)
# and OBJ_SYNTAX_<name>.
macro(arq_read_standard_objects)
  foreach(file IN ITEMS ${ARGN})
    file(STRINGS ${file} lines REGEX "^ARQ_STD_OBJECT\\(")
    foreach(line IN LISTS lines)
      if(NOT line MATCHES "^ARQ_STD_OBJECT\\(([A-Za-z][A-Za-z0-9]*), ([A-Za-z0-9]+), ([0-9]+(, [0-9]+)*)\\)$")
        message(FATAL_ERROR "${file}: not an object line: ${line}")
      endif()
      string(REPLACE ", " "." OBJ_OID_${CMAKE_MATCH_1} "${CMAKE_MATCH_3}")
      set(OBJ_SYNTAX_${CMAKE_MATCH_1} ${CMAKE_MATCH_2})
    endforeach()
  endforeach()
endmacro()

function(arq_object_oid name out)
  if(NOT DEFINED OBJ_OID_${name})
    message(FATAL_ERROR "StandardMetrics.cmake: ${name} is in no definition file")
  endif()
  set(${out} ${OBJ_OID_${name}} PARENT_SCOPE)
endfunction()

# The exporter's type of a lookup or index by the object's syntax.
function(arq_exporter_type name out)
  if(OBJ_SYNTAX_${name} MATCHES "^(SnmpAdminString|DisplayString)$")
    set(${out} DisplayString PARENT_SCOPE)
  else()
    set(${out} gauge PARENT_SCOPE)
  endif()
endfunction()

# Sets metric, type, indexes, lookups and help from one ARQ_INVENTORY_METRICS entry.
macro(arq_metric_fields entry)
  string(REPLACE "|" ";" fields "${entry}")
  list(GET fields 0 metric)
  list(GET fields 1 type)
  list(GET fields 2 indexes)
  list(GET fields 3 lookups)
  list(GET fields 4 help)
  string(REPLACE " " ";" indexes "${indexes}")
  string(REPLACE " " ";" lookups "${lookups}")
endmacro()

# Sets `out` to the module's text, in the generator's layout.
function(arq_inventory_module out)
  set(text "orvovia_inventory:\n  walk:\n")
  set(walked "")
  foreach(definition IN LISTS ARQ_INVENTORY_METRICS)
    arq_metric_fields("${definition}")
    foreach(name IN LISTS metric lookups)
      string(REGEX REPLACE ":.*" "" name "${name}")
      if(NOT name IN_LIST ARQ_INVENTORY_GETS)
        arq_object_oid(${name} id)
        list(APPEND walked ${id})
      endif()
    endforeach()
  endforeach()
  list(REMOVE_DUPLICATES walked)
  foreach(id IN LISTS walked)
    string(APPEND text "  - ${id}\n")
  endforeach()
  string(APPEND text "  get:\n")
  foreach(name IN LISTS ARQ_INVENTORY_GETS)
    arq_object_oid(${name} id)
    string(APPEND text "  - ${id}.${ARQ_INVENTORY_CHASSIS}\n")
  endforeach()
  string(APPEND text "  metrics:\n")
  foreach(definition IN LISTS ARQ_INVENTORY_METRICS)
    arq_metric_fields("${definition}")
    if(help MATCHES ": | #")
      message(FATAL_ERROR "StandardMetrics.cmake: the help of ${metric} must be a plain YAML text")
    endif()
    arq_object_oid(${metric} id)
    string(APPEND text "  - name: ${metric}\n    oid: ${id}\n    type: ${type}\n"
                       "    help: ${help} - ${id}\n    indexes:\n")
    foreach(index IN LISTS indexes)
      arq_exporter_type(${index} indexType)
      string(APPEND text "    - labelname: ${index}\n      type: ${indexType}\n")
    endforeach()
    string(APPEND text "    lookups:\n")
    foreach(lookup IN LISTS lookups)
      string(REPLACE ":" ";" parts "${lookup}")
      list(GET parts 0 name)
      list(GET parts -1 label)
      arq_object_oid(${name} lookupId)
      arq_exporter_type(${name} lookupType)
      string(APPEND text "    - labels:\n")
      foreach(index IN LISTS indexes)
        string(APPEND text "      - ${index}\n")
      endforeach()
      string(APPEND text "      labelname: ${label}\n      oid: ${lookupId}\n      type: ${lookupType}\n")
    endforeach()
    if(DEFINED ARQ_INVENTORY_ENUMS_${metric})
      string(APPEND text "    enum_values:\n")
      foreach(value IN LISTS ARQ_INVENTORY_ENUMS_${metric})
        string(APPEND text "      ${value}\n")
      endforeach()
    endif()
  endforeach()
  set(${out} "${text}" PARENT_SCOPE)
endfunction()
