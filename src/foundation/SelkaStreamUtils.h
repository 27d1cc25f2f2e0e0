#pragma once
// A memory stream that grows in fixed blocks (old blocks never move), with typed
// reads and writes, and the length-prefixed string helpers of the drawing formats.

#include "Classes.h"

#include <QString>
#include <QUuid>

#include <memory>
#include <vector>

class TBlockMemoryStream : public TStream {
public:
  explicit TBlockMemoryStream(qint32 ABlockSize);

  qint64 Read(void* ABuffer, qint64 ACount) override;
  qint64 Write(const void* ABuffer, qint64 ACount) override;
  qint64 Seek(qint64 AOffset, TSeekOrigin AOrigin) override;
  qint64 GetSize() const override { return FSize; }
  void SetSize(qint64 ANewSize) override;

  void Clear();
  void First() { Seek(0, soBeginning); }

  void LoadFromStream(TStream& AStream);
  void SaveToStream(TStream& AStream);
  // Raise EFOpenError with the file name when the file cannot be opened.
  void LoadFromFile(const QString& AFileName);
  void SaveToFile(const QString& AFileName);

  qint32 BlockSize() const { return FBlockSize; }
  int BlockCount() const { return int(FBlocks.size()); }

  // Each typed operation moves the value's bytes in memory order. A short read
  // leaves the missing bytes zero.
  bool ReadBoolean();
  quint8 ReadByte();
  quint16 ReadWord();
  qint32 ReadInteger();
  quint32 ReadLongWord();
  qint64 ReadInt64();
  double ReadFloat();
  double ReadCurrency();  // fixed point, 4 decimals, stored as a scaled 64-bit integer
  double ReadDateTime();  // days since 1899-12-30, fraction is the time
  QUuid ReadGuid();
  QString ReadString();   // 4-byte length in UTF-16 units, then UTF-16LE

  void WriteBoolean(bool AValue);
  void WriteByte(quint8 AValue);
  void WriteWord(quint16 AValue);
  void WriteInteger(qint32 AValue);
  void WriteLongWord(quint32 AValue);
  void WriteInt64(qint64 AValue);
  void WriteFloat(double AValue);
  void WriteCurrency(double AValue);
  void WriteDateTime(double AValue);
  void WriteGuid(const QUuid& AValue);
  void WriteString(const QString& AValue);

private:
  template <typename T>
  T ReadValue();
  template <typename T>
  void WriteValue(const T& AValue);
  void SetPos(qint32 APos);
  template <typename F>
  void ForEachPiece(qint64 ACount, F ACopy);

  std::vector<std::unique_ptr<char[]>> FBlocks;
  qint32 FSize = 0;
  qint32 FPosition = 0;
  qint32 FBlockSize;
  qint32 FBlockIndex = 0;
  qint32 FBlockOffset = 0;
};

// UTF-8, byte length in ALenSize bytes (1, 2 or 4); a length that does not fit is
// cut to its low bytes, and only that many bytes are written.
void WriteStrToStream(const QString& S, TStream& AStream, int ALenSize);
QString ReadUtf8StrFromStream(TStream& AStream, int ALenSize);
// The old files' ANSI strings are GBK (code page 936).
QString ReadAnsiStrFromStream(TStream& AStream, int ALenSize);
void WriteAnsiStrToStream(const QString& S, TStream& AStream, int ALenSize);

// FormatFloat with "0." and ADigits "#".
QString FloatToText(double AValue, int ADigits);
