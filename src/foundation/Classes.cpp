#include "Classes.h"

#include <algorithm>
#include <cstring>

void TStream::ReadBuffer(void* ABuffer, qint64 ACount) {
  if (ACount != 0 && Read(ABuffer, ACount) != ACount) throw EReadError(QStringLiteral("Stream read error"));
}

void TStream::WriteBuffer(const void* ABuffer, qint64 ACount) {
  if (ACount != 0 && Write(ABuffer, ACount) != ACount) throw EWriteError(QStringLiteral("Stream write error"));
}

qint64 TStream::CopyFrom(TStream& ASource, qint64 ACount) {
  if (ACount == 0) {
    ASource.SetPosition(0);
    ACount = ASource.GetSize();
  }
  char Buf[64 * 1024];
  qint64 Left = ACount;
  while (Left > 0) {
    const qint64 N = std::min<qint64>(Left, sizeof Buf);
    ASource.ReadBuffer(Buf, N);
    WriteBuffer(Buf, N);
    Left -= N;
  }
  return ACount;
}

qint64 TBytesStream::Read(void* ABuffer, qint64 ACount) {
  if (ACount <= 0 || FPosition < 0) return 0;
  const qint64 N = std::min(ACount, qint64(FBytes.size()) - FPosition);
  if (N <= 0) return 0;
  std::memcpy(ABuffer, FBytes.constData() + FPosition, size_t(N));
  FPosition += N;
  return N;
}

qint64 TBytesStream::Write(const void* ABuffer, qint64 ACount) {
  if (ACount <= 0 || FPosition < 0) return 0;
  const qint64 End = FPosition + ACount;
  if (End > FBytes.size()) FBytes.resize(End);
  std::memcpy(FBytes.data() + FPosition, ABuffer, size_t(ACount));
  FPosition = End;
  return ACount;
}

qint64 TBytesStream::Seek(qint64 AOffset, TSeekOrigin AOrigin) {
  switch (AOrigin) {
    case soBeginning: FPosition = AOffset; break;
    case soCurrent: FPosition += AOffset; break;
    case soEnd: FPosition = FBytes.size() + AOffset; break;
  }
  return FPosition;
}

void TBytesStream::SetSize(qint64 ANewSize) {
  FBytes.resize(std::max<qint64>(0, ANewSize));
  if (FPosition > FBytes.size()) FPosition = FBytes.size();
}
