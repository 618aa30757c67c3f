#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace Arq::Snmp {

// A zero-filled fixed buffer holding `text` cut to its size (no terminator
// when the text fills it).
template <std::size_t N>
std::array<char, N> ToBuffer(const std::string& text) {
  std::array<char, N> buffer{};
  std::memcpy(buffer.data(), text.data(), text.size() < N ? text.size() : N);
  return buffer;
}

// The bytes before the first zero byte (at most N).
template <std::size_t N>
std::size_t TextLength(const std::array<char, N>& buffer) {
  return strnlen(buffer.data(), N);
}

// Dotted IPv4 text to four bytes: exactly four numbers, each at most 255, and
// nothing after the fourth. Returns 1 on success, 0 otherwise.
int ipStringToNumber(const char* text, char* out);
// The same on a buffer that need not be terminated; 0.0.0.0 when malformed.
std::array<unsigned char, 4> IpAddressBytes(const char* text, std::size_t size);

// (bits per second + 500000) / 1000000, truncated toward zero.
std::int64_t RoundBitsPerSecToMegaBitsPerSec(long bitsPerSecond);

}  // namespace Arq::Snmp
