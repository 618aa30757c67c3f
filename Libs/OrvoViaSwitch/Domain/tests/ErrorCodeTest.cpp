#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "Arq/OrvoViaSwitch/Domain/Dto/ErrorCode.h"
#include "Arq/OrvoViaSwitch/Domain/Dto/Metrics/CollectorHealth.h"
#include "Arq/OrvoViaSwitch/Domain/Exception/DomainException.h"

namespace {

using Arq::OrvoViaSwitch::Domain::Dto::ErrorCode;
using Arq::OrvoViaSwitch::Domain::Dto::ToString;
using Arq::OrvoViaSwitch::Domain::Exception::DomainException;

TEST(ErrorCodeToString, NamesEveryCodeAndRejectsOthers) {
  const struct {
    int value;
    const char* text;
  } cases[] = {
      {0, "NoError"},
      {1, "UnknownError"},
      {2, "SystemError"},
      {3, "InvalidArgument"},
      {4, "RuntimeError"},
      {5, "TimeOut"},
      {6, "NotFound"},
      {7, "NotConfigured"},
      {8, "NotImplemented"},
      {9, "OutOfRange"},
      {10, "AlreadyInUse"},
      {11, "__LAST__"},
      {12, "[Unknown Error Code]"},
      {-1, "[Unknown Error Code]"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ToString(static_cast<ErrorCode>(c.value)), c.text) << "value " << c.value;
  }
}

TEST(DomainExceptionTest, KeepsItsCodeSystemErrorByDefaultAndOwnsItsMessage) {
  std::string text = "no such port";
  const DomainException found(text.c_str(), ErrorCode::NotFound);
  text.assign("overwritten");
  EXPECT_STREQ(found.what(), "no such port");
  EXPECT_EQ(found.GetErrorCode(), ErrorCode::NotFound);
  EXPECT_EQ(DomainException("refused").GetErrorCode(), ErrorCode::SystemError);
  EXPECT_THROW(DomainException(nullptr), std::logic_error);
}

// The switch client's failure texts (as the transport and protocol give
// them) map onto the call outcomes of the MIB.
TEST(DomainExceptionTest, FailuresClassifyIntoCallOutcomes) {
  using Arq::OrvoViaSwitch::Domain::Dto::Metrics::CallOutcome;
  using Arq::OrvoViaSwitch::Domain::Dto::Metrics::ClassifyCallFailure;
  const struct {
    DomainException failure;
    CallOutcome outcome;
  } cases[] = {
      {DomainException("locked", ErrorCode::InvalidArgument), CallOutcome::Fault},
      {DomainException("TException - service has thrown: Fault_t(ErrCode=2)"), CallOutcome::Fault},
      {DomainException("THRIFT_EAGAIN (timed out)"), CallOutcome::Timeout},
      {DomainException("open() timed out"), CallOutcome::Timeout},
      {DomainException("socket open() error: Connection refused"), CallOutcome::ConnectionRefused},
      {DomainException("No more data to read."), CallOutcome::TransportError},
      {DomainException("Bad version identifier"), CallOutcome::BadReply},
      {DomainException("reply larger than 64 MiB once read"), CallOutcome::BadReply},
      {DomainException("MaxMessageSize reached"), CallOutcome::BadReply},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ClassifyCallFailure(c.failure), c.outcome) << c.failure.what();
  }
  EXPECT_EQ(ClassifyCallFailure(std::runtime_error("anything else")), CallOutcome::TransportError);
}

}  // namespace
