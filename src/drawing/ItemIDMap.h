#pragma once
// Items by ID with no allocation per item. IDs from 0 up to a few times the number of
// items (the usual case) index a plain array; any other ID goes to a flat table with open
// addressing, spread by a multiplicative hash so that crafted IDs cannot crowd it. The
// array grows only while it stays that dense.

#include <cstddef>
#include <cstdint>
#include <vector>

class TVectorDrawingItem;

class TItemIDMap {
public:
  TVectorDrawingItem* Find(int AKey) const {
    if (size_t(unsigned(AKey)) < FDense.size()) return FDense[size_t(AKey)];
    if (FSlots.empty()) return nullptr;
    for (size_t I = Home(AKey);; I = (I + 1) & Mask()) {
      const TSlot& S = FSlots[I];
      if (!S.Value) return nullptr;
      if (S.Key == AKey) return S.Value;
    }
  }
  // Puts AValue (not null) under AKey, replacing what was there.
  void Set(int AKey, TVectorDrawingItem* AValue) { *Place(AKey, AValue) = AValue; }
  // Puts AValue under AKey unless the key is taken.
  void Add(int AKey, TVectorDrawingItem* AValue) { Place(AKey, AValue); }
  void Erase(int AKey);
  void Clear() {
    FDense.clear();
    FDense.shrink_to_fit();
    FSlots.clear();
    FSlots.shrink_to_fit();
    FCount = FHashCount = 0;
    FShift = 64;
  }
  // Room for ACount keys without growing: dense ones always, others once some are held.
  void Reserve(size_t ACount);
  size_t Size() const { return FCount; }

private:
  struct TSlot {
    int Key;
    TVectorDrawingItem* Value;  // null: the slot is free
  };
  size_t Mask() const { return FSlots.size() - 1; }
  // Runs of eight consecutive IDs (the usual case) land side by side, in one or two cache
  // lines; the runs themselves are spread.
  size_t Home(int AKey) const {
    const std::uint32_t K = std::uint32_t(AKey);
    const std::uint64_t Run = (std::uint64_t(K >> 3) * 0x9E3779B97F4A7C15ull) >> FShift;
    return size_t((Run << 3 | (K & 7)) & Mask());
  }
  // The value slot of AKey, made with AValue when the key was missing.
  TVectorDrawingItem** Place(int AKey, TVectorDrawingItem* AValue);
  TVectorDrawingItem** PlaceHashed(int AKey, TVectorDrawingItem* AValue);
  // Extends the array to ASize entries and moves the table's keys below it there.
  void GrowDense(size_t ASize);
  void Rehash(size_t ASlots);

  std::vector<TVectorDrawingItem*> FDense;  // null: no item under that ID
  std::vector<TSlot> FSlots;
  size_t FCount = 0, FHashCount = 0;
  unsigned FShift = 64;  // 64 - log2(slot count / 8)
};
