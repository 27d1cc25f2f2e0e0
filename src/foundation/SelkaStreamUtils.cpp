#include "SelkaStreamUtils.h"

#include <QFile>
#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

TBlockMemoryStream::TBlockMemoryStream(qint32 ABlockSize) : FBlockSize(ABlockSize > 0 ? ABlockSize : 4096) {}

void TBlockMemoryStream::SetPos(qint32 APos) {
  FPosition = APos;
  if (APos >= 0) {
    FBlockIndex = APos / FBlockSize;
    FBlockOffset = APos % FBlockSize;
  }
}

// Walks ACount bytes from the current position block by block; ACopy(block
// pointer, bytes done, piece length) moves one piece.
template <typename F>
void TBlockMemoryStream::ForEachPiece(qint64 ACount, F ACopy) {
  qint64 Done = 0;
  while (Done < ACount) {
    const qint64 Piece = std::min<qint64>(ACount - Done, FBlockSize - FBlockOffset);
    ACopy(FBlocks[size_t(FBlockIndex)].get() + FBlockOffset, Done, Piece);
    Done += Piece;
    if (FBlockOffset + Piece == FBlockSize) {
      ++FBlockIndex;
      FBlockOffset = 0;
    } else {
      FBlockOffset += qint32(Piece);
    }
  }
  FPosition += qint32(ACount);
}

qint64 TBlockMemoryStream::Read(void* ABuffer, qint64 ACount) {
  if (FPosition < 0 || ACount < 0) return 0;
  const qint64 Count = std::min<qint64>(ACount, qint64(FSize) - FPosition);
  if (Count < 1) return 0;
  char* Dst = static_cast<char*>(ABuffer);
  ForEachPiece(Count, [Dst](char* ABlock, qint64 ADone, qint64 APiece) {
    std::memcpy(Dst + ADone, ABlock, size_t(APiece));
  });
  return Count;
}

qint64 TBlockMemoryStream::Write(const void* ABuffer, qint64 ACount) {
  if (FPosition < 0 || ACount <= 0) return 0;
  if (qint64(FPosition) + ACount > std::numeric_limits<qint32>::max()) return 0;
  if (FPosition + ACount > FSize) SetSize(FPosition + ACount);
  const char* Src = static_cast<const char*>(ABuffer);
  ForEachPiece(ACount, [Src](char* ABlock, qint64 ADone, qint64 APiece) {
    std::memcpy(ABlock, Src + ADone, size_t(APiece));
  });
  return ACount;
}

qint64 TBlockMemoryStream::Seek(qint64 AOffset, TSeekOrigin AOrigin) {
  qint64 P = AOffset;
  if (AOrigin == soCurrent) P += FPosition;
  else if (AOrigin == soEnd) P += FSize;
  SetPos(qint32(std::clamp<qint64>(P, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max())));
  return FPosition;
}

void TBlockMemoryStream::SetSize(qint64 ANewSize) {
  const qint32 NewSize = qint32(std::clamp<qint64>(ANewSize, 0, std::numeric_limits<qint32>::max()));
  const size_t Count = size_t(NewSize / FBlockSize + 1);
  if (FBlocks.size() > Count) FBlocks.resize(Count);
  while (FBlocks.size() < Count) FBlocks.push_back(std::make_unique<char[]>(size_t(FBlockSize)));
  FSize = NewSize;
  if (FPosition > NewSize) Seek(0, soEnd);
}

void TBlockMemoryStream::Clear() {
  FBlocks.clear();
  FSize = 0;
  SetPos(0);
}

void TBlockMemoryStream::LoadFromStream(TStream& AStream) {
  SetSize(AStream.GetSize());
  SetPos(0);
  CopyFrom(AStream, 0);
  SetPos(0);
}

void TBlockMemoryStream::SaveToStream(TStream& AStream) {
  const qint32 Saved = FPosition;
  SetPos(0);
  char Buf[64 * 1024];
  qint64 N;
  while ((N = Read(Buf, sizeof Buf)) > 0) AStream.WriteBuffer(Buf, N);
  SetPos(Saved);
}

void TBlockMemoryStream::LoadFromFile(const QString& AFileName) {
  QByteArray Data;
  QString Error;
  if (!ReadFileCapped(AFileName, qint64(512) << 20, Data, Error))
    throw EFOpenError(QStringLiteral("无法打开文件 \"%1\"：%2").arg(AFileName, Error));
  TBytesStream S(std::move(Data));
  LoadFromStream(S);
}

void TBlockMemoryStream::SaveToFile(const QString& AFileName) {
  TBytesStream S;
  SaveToStream(S);
  QString Error;
  if (!WriteFileAtomically(AFileName, S.Bytes(), Error))
    throw EFOpenError(QStringLiteral("无法写入文件 \"%1\"：%2").arg(AFileName, Error));
}

template <typename T>
T TBlockMemoryStream::ReadValue() {
  T V{};
  Read(&V, sizeof V);
  return V;
}

template <typename T>
void TBlockMemoryStream::WriteValue(const T& AValue) {
  Write(&AValue, sizeof AValue);
}

bool TBlockMemoryStream::ReadBoolean() { return ReadValue<quint8>() != 0; }
quint8 TBlockMemoryStream::ReadByte() { return ReadValue<quint8>(); }
quint16 TBlockMemoryStream::ReadWord() { return ReadValue<quint16>(); }
qint32 TBlockMemoryStream::ReadInteger() { return ReadValue<qint32>(); }
quint32 TBlockMemoryStream::ReadLongWord() { return ReadValue<quint32>(); }
qint64 TBlockMemoryStream::ReadInt64() { return ReadValue<qint64>(); }
double TBlockMemoryStream::ReadFloat() { return ReadValue<double>(); }
double TBlockMemoryStream::ReadCurrency() { return double(ReadValue<qint64>()) / 10000.0; }
double TBlockMemoryStream::ReadDateTime() { return ReadValue<double>(); }

QUuid TBlockMemoryStream::ReadGuid() {
  struct {
    quint32 D1;
    quint16 D2, D3;
    uchar D4[8];
  } G{};
  Read(&G, sizeof G);
  return QUuid(G.D1, G.D2, G.D3, G.D4[0], G.D4[1], G.D4[2], G.D4[3], G.D4[4], G.D4[5], G.D4[6], G.D4[7]);
}

QString TBlockMemoryStream::ReadString() {
  const qint32 Len = ReadInteger();
  if (Len <= 0) return {};
  // Never allocate more than the stream still holds.
  const qint64 Avail = (qint64(FSize) - FPosition) / 2;
  QString S(qsizetype(std::min<qint64>(Len, std::max<qint64>(0, Avail))), Qt::Uninitialized);
  const qint64 Got = Read(S.data(), qint64(S.size()) * 2);
  S.truncate(qsizetype(Got / 2));
  return S;
}

void TBlockMemoryStream::WriteBoolean(bool AValue) { WriteValue<quint8>(AValue ? 1 : 0); }
void TBlockMemoryStream::WriteByte(quint8 AValue) { WriteValue(AValue); }
void TBlockMemoryStream::WriteWord(quint16 AValue) { WriteValue(AValue); }
void TBlockMemoryStream::WriteInteger(qint32 AValue) { WriteValue(AValue); }
void TBlockMemoryStream::WriteLongWord(quint32 AValue) { WriteValue(AValue); }
void TBlockMemoryStream::WriteInt64(qint64 AValue) { WriteValue(AValue); }
void TBlockMemoryStream::WriteFloat(double AValue) { WriteValue(AValue); }
void TBlockMemoryStream::WriteCurrency(double AValue) { WriteValue<qint64>(std::llround(AValue * 10000.0)); }
void TBlockMemoryStream::WriteDateTime(double AValue) { WriteValue(AValue); }

void TBlockMemoryStream::WriteGuid(const QUuid& AValue) {
  struct {
    quint32 D1;
    quint16 D2, D3;
    uchar D4[8];
  } G{AValue.data1, AValue.data2, AValue.data3, {}};
  std::memcpy(G.D4, AValue.data4, 8);
  Write(&G, sizeof G);
}

void TBlockMemoryStream::WriteString(const QString& AValue) {
  WriteInteger(qint32(AValue.size()));
  Write(AValue.constData(), qint64(AValue.size()) * 2);
}

// ---- length-prefixed strings ------------------------------------------------

static void WriteLenPrefixed(const QByteArray& ABytes, TStream& AStream, int ALenSize) {
  const int Size = (ALenSize == 1 || ALenSize == 2) ? ALenSize : 4;
  const quint64 Mask = Size == 4 ? 0xFFFFFFFFull : ((1ull << (8 * Size)) - 1);
  const quint32 Len = quint32(quint64(ABytes.size()) & Mask);
  AStream.WriteBuffer(&Len, Size);  // little-endian: the low bytes come first
  AStream.WriteBuffer(ABytes.constData(), Len);
}

static QByteArray ReadLenPrefixed(TStream& AStream, int ALenSize) {
  const int Size = (ALenSize == 1 || ALenSize == 2) ? ALenSize : 4;
  quint32 Len = 0;
  AStream.ReadBuffer(&Len, Size);
  const qint64 Left = AStream.GetSize() - AStream.GetPosition();
  if (qint64(Len) > Left) throw EReadError(QStringLiteral("Stream read error"));
  QByteArray B(qsizetype(Len), Qt::Uninitialized);
  AStream.ReadBuffer(B.data(), Len);
  return B;
}

void WriteStrToStream(const QString& S, TStream& AStream, int ALenSize) {
  WriteLenPrefixed(S.toUtf8(), AStream, ALenSize);
}

QString ReadUtf8StrFromStream(TStream& AStream, int ALenSize) {
  return QString::fromUtf8(ReadLenPrefixed(AStream, ALenSize));
}

QString ReadAnsiStrFromStream(TStream& AStream, int ALenSize) {
  QStringDecoder Dec("GBK");
  return Dec(ReadLenPrefixed(AStream, ALenSize));
}

void WriteAnsiStrToStream(const QString& S, TStream& AStream, int ALenSize) {
  QStringEncoder Enc("GBK");
  WriteLenPrefixed(Enc(S), AStream, ALenSize);
}

QString FloatToText(double AValue, int ADigits) {
  return FormatFloat(QStringLiteral("0.") + QString(std::max(0, ADigits), u'#'), AValue);
}
