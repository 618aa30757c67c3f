#pragma once

#include <sstream>

#include "arq/logging/ILogger.h"

// Logs through a std::shared_ptr<arq::logging::ILogger> (possibly null): the
// message is formatted only when the logger exists and its threshold lets the
// level through. `streamed` is anything that can follow `<<`.
//   ARQ_LOG(logger, arq::logging::ILogger::Info, "Watching file '" << name << "'");
#define ARQ_LOG(logger, level, streamed)                                                         \
  do {                                                                                           \
    const auto& arqLogLogger = (logger);                                                         \
    const ::arq::logging::ILogger::Level arqLogLevel = (level);                                  \
    if (arqLogLogger && arqLogLogger->GetLevel() <= arqLogLevel) {                               \
      std::ostringstream arqLogStream;                                                           \
      arqLogStream << streamed; /* NOLINT(bugprone-macro-parentheses): a chain of << operands */ \
      arqLogLogger->Log(arqLogLevel, arqLogStream.str(), __FILE__, __LINE__);                    \
    }                                                                                            \
  } while (0)
