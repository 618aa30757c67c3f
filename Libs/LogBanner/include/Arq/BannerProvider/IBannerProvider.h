#pragma once

#include <string>

namespace Arq::BannerProvider {

// One header line (no final newline) for the top of a log or output file.
class IBannerProvider {
 public:
  virtual ~IBannerProvider() = default;
  virtual std::string GetBanner() = 0;
};

// The current UTC time as asctime writes it, without its final newline.
std::string UtcAscTime();

}  // namespace Arq::BannerProvider
