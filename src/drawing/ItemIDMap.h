#pragma once
// Items by ID: one flat table with open addressing, so indexing a loaded drawing makes no
// allocation per item. IDs come from files and may be anything, so they are spread by a
// multiplicative hash rather than used as slots, which crafted IDs could crowd.

#include <cstddef>
#include <cstdint>
#include <vector>

class TVectorDrawingItem;

class TItemIDMap {
public:
  TVectorDrawingItem* Find(int AKey) const {
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
    FSlots.clear();
    FSlots.shrink_to_fit();
    FCount = 0;
    FShift = 64;
  }
  // Room for ACount keys without growing.
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
  void Rehash(size_t ASlots);

  std::vector<TSlot> FSlots;
  size_t FCount = 0;
  unsigned FShift = 64;  // 64 - log2(slot count / 8)
};
