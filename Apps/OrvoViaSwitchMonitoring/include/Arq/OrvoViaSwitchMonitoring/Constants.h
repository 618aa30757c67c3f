#pragma once

namespace Arq::OrvoViaSwitchMonitoring::Constants {

inline constexpr const char* LONG_HELP_ARG = "--help";
inline constexpr const char* SHORT_HELP_ARG = "-h";
inline constexpr const char* LONG_VERSION_ARG = "--version";
inline constexpr const char* SHORT_VERSION_ARG = "-v";
inline constexpr const char* LOGGER_CONFIGURATIONS_PATH_ARG = "logger_configurations_path:";
inline constexpr const char* REDIRECT_OUTPUT_ARG = "redirect_output:";
inline constexpr const char* REDIRECT_OUTPUT_SPLIT_PERIOD_ARG = "redirect_output_split_period:";
inline constexpr const char* REDIRECT_OUTPUT_FILE_SIZE_ARG = "redirect_output_file_size:";
inline constexpr const char* REMOTE_IP_ADDRESS_ARG = "remote_ip_address:";
inline constexpr const char* REMOTE_PORT_NUMBER_ARG = "remote_port_number:";
inline constexpr const char* REMOTE_CONNECTION_TIMEOUT_IN_MILLISECOND_ARG =
    "remote_ms_connection_timeout:";
inline constexpr const char* REMOTE_RECEIVE_TIMEOUT_IN_MILLISECOND_ARG =
    "remote_ms_receive_timeout:";
inline constexpr const char* LOG_LEVEL_ARG = "log_level:";
inline constexpr const char* MONITORING_PROCESSOR_MODE_ARG = "monitoring_processor_mode:";
inline constexpr const char* COLLECT_METRICS_PERIOD_ARG = "collect_metrics_period:";
inline constexpr const char* DATA_SETUP_FOLDER_ARG = "data_setup_folder:";
inline constexpr const char* OPTIONS_FILENAME_ARG = "options_filename:";

}  // namespace Arq::OrvoViaSwitchMonitoring::Constants
