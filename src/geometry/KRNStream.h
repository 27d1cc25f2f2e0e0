#pragma once
// The byte stream the geometry classes read and write. Plain C++ so the geometry
// module stays free of Qt; the drawing layer adapts its own streams to it.

#include <cstddef>
#include <cstdint>
#include <vector>

class TKRNStream {
public:
  virtual ~TKRNStream() = default;
  // Copies up to ACount bytes; returns how many.
  virtual std::size_t Read(void* ABuffer, std::size_t ACount) = 0;
  virtual void Write(const void* ABuffer, std::size_t ACount) = 0;
  // Bytes left to read; used to refuse counts that cannot be in the stream.
  virtual std::size_t Remaining() const = 0;

  // Raises EKRNException when fewer bytes are left.
  void ReadBuffer(void* ABuffer, std::size_t ACount);
  template <typename T>
  T ReadValue() {
    T V{};
    ReadBuffer(&V, sizeof V);
    return V;
  }
  template <typename T>
  void WriteValue(const T& AValue) {
    Write(&AValue, sizeof AValue);
  }
};

class TKRNMemoryStream : public TKRNStream {
public:
  TKRNMemoryStream() = default;
  explicit TKRNMemoryStream(std::vector<unsigned char> ABytes) : FBytes(std::move(ABytes)) {}
  std::size_t Read(void* ABuffer, std::size_t ACount) override;
  void Write(const void* ABuffer, std::size_t ACount) override;
  std::size_t Remaining() const override { return FBytes.size() - FPosition; }
  const std::vector<unsigned char>& Bytes() const { return FBytes; }
  void Rewind() { FPosition = 0; }

private:
  std::vector<unsigned char> FBytes;
  std::size_t FPosition = 0;
};
