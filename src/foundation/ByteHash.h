#pragma once
// A quick 64-bit hash of a few bytes for in-memory tables (not for files, not keyed):
// eight bytes a step, each folded in with a multiply.

#include <cstddef>
#include <cstdint>
#include <cstring>

inline std::size_t HashBytes(const void* AData, std::size_t ALen) {
  const auto* P = static_cast<const unsigned char*>(AData);
  std::uint64_t H = 0x9E3779B97F4A7C15ull ^ std::uint64_t(ALen);
  for (; ALen >= 8; P += 8, ALen -= 8) {
    std::uint64_t W;
    std::memcpy(&W, P, 8);
    H = (H ^ W) * 0xFF51AFD7ED558CCDull;
    H ^= H >> 32;
  }
  std::uint64_t W = 0;
  std::memcpy(&W, P, ALen);
  H = (H ^ W) * 0xC4CEB9FE1A85EC53ull;
  return std::size_t(H ^ (H >> 29));
}
