#pragma once

// Declared beside the LLDP converter: the three small converters share one header.
#include "Arq/Monitoring/MetricConverter/LLDPMetricConverter.h"
