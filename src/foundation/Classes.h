#pragma once
// Byte streams as the drawing formats and data servers use them: an abstract
// stream with position and size, and a stream over one growable byte array.

#include "SysUtils.h"

#include <QByteArray>
#include <QString>

enum TSeekOrigin { soBeginning, soCurrent, soEnd };

class EStreamError : public Exception {
public:
  using Exception::Exception;
};
class EReadError : public EStreamError {
public:
  using EStreamError::EStreamError;
};
class EWriteError : public EStreamError {
public:
  using EStreamError::EStreamError;
};
class EFOpenError : public EStreamError {
public:
  using EStreamError::EStreamError;
};

// Positions and sizes are 64-bit here; streams that hold 32-bit fields clamp.
class TStream {
public:
  virtual ~TStream() = default;
  TStream() = default;
  TStream(const TStream&) = delete;
  TStream& operator=(const TStream&) = delete;

  // Copies up to ACount bytes; returns how many were copied (0 at the end).
  virtual qint64 Read(void* ABuffer, qint64 ACount) = 0;
  virtual qint64 Write(const void* ABuffer, qint64 ACount) = 0;
  virtual qint64 Seek(qint64 AOffset, TSeekOrigin AOrigin) = 0;
  virtual qint64 GetSize() const = 0;
  virtual void SetSize(qint64 ANewSize) = 0;

  qint64 GetPosition() { return Seek(0, soCurrent); }
  void SetPosition(qint64 APos) { Seek(APos, soBeginning); }

  // Reads exactly ACount bytes or raises EReadError.
  void ReadBuffer(void* ABuffer, qint64 ACount);
  // Writes exactly ACount bytes or raises EWriteError.
  void WriteBuffer(const void* ABuffer, qint64 ACount);
  // Copies ACount bytes from ASource (all of it from the start when ACount is 0).
  qint64 CopyFrom(TStream& ASource, qint64 ACount);
};

// A stream over a QByteArray it owns.
class TBytesStream : public TStream {
public:
  TBytesStream() = default;
  explicit TBytesStream(QByteArray ABytes) : FBytes(std::move(ABytes)) {}

  qint64 Read(void* ABuffer, qint64 ACount) override;
  qint64 Write(const void* ABuffer, qint64 ACount) override;
  qint64 Seek(qint64 AOffset, TSeekOrigin AOrigin) override;
  qint64 GetSize() const override { return FBytes.size(); }
  void SetSize(qint64 ANewSize) override;

  const QByteArray& Bytes() const { return FBytes; }

private:
  QByteArray FBytes;
  qint64 FPosition = 0;
};
