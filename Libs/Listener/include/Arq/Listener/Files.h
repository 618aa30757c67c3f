#pragma once

#include <cstddef>
#include <string>

namespace Arq::Listener {

// A listener's configuration and key files are small: these bounds keep a
// wrong path (a log, a device, a FIFO) from costing more than a refusal.
inline constexpr std::size_t kMaxConfigFileBytes = std::size_t{64} * 1024;
inline constexpr std::size_t kMaxPemFileBytes = std::size_t{256} * 1024;

// Reads a regular file of at most `maxBytes` into `content`. Returns "" on
// success, else the reason ("cannot open: No such file or directory", "not a
// regular file", "larger than 65536 bytes").
std::string ReadBoundedFile(const std::string& path, std::size_t maxBytes, std::string& content);

}  // namespace Arq::Listener
