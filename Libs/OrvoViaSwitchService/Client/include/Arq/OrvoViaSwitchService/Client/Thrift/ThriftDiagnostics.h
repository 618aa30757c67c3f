#pragma once

namespace Arq::OrvoViaSwitchService::Client::Thrift {

// The Thrift library prints its own diagnostics to standard error; this sends
// them to the "ThriftDiagnostics" logger at Warning instead. Idempotent; meant
// for start-up, before any connection is made.
void RouteThriftDiagnosticsToLoggers();

// The text of one diagnostic, as the logger receives it (no trailing
// newline).
void LogThriftDiagnostic(const char* message);

}  // namespace Arq::OrvoViaSwitchService::Client::Thrift
