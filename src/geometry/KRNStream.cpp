#include "KRNStream.h"

#include "KRNExceptions.h"

#include <algorithm>
#include <cstring>

void TKRNStream::ReadBuffer(void* ABuffer, std::size_t ACount) {
  if (ACount != 0 && Read(ABuffer, ACount) != ACount) throw EKRNException("stream read error");
}

std::size_t TKRNMemoryStream::Read(void* ABuffer, std::size_t ACount) {
  const std::size_t N = std::min(ACount, Remaining());
  if (N) std::memcpy(ABuffer, FBytes.data() + FPosition, N);
  FPosition += N;
  return N;
}

void TKRNMemoryStream::Write(const void* ABuffer, std::size_t ACount) {
  if (FPosition + ACount > FBytes.size()) FBytes.resize(FPosition + ACount);
  if (ACount) std::memcpy(FBytes.data() + FPosition, ABuffer, ACount);
  FPosition += ACount;
}
