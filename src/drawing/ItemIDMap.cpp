#include "ItemIDMap.h"

#include <algorithm>
#include <bit>

namespace {
// The array covers at most this many IDs for ACount keys held, so sparse IDs cannot make
// it large.
size_t DenseLimit(size_t ACount) { return 4 * ACount + 1024; }
}  // namespace

TVectorDrawingItem** TItemIDMap::Place(int AKey, TVectorDrawingItem* AValue) {
  const size_t K = size_t(unsigned(AKey));
  if (K >= FDense.size() && AKey >= 0) {
    // doubling keeps the moves of table keys into the array rare
    const size_t Size = std::max({K + 1, FDense.size() * 2, size_t(256)});
    if (Size <= DenseLimit(FCount + 1)) GrowDense(Size);
  }
  if (K < FDense.size()) {
    TVectorDrawingItem*& V = FDense[K];
    if (!V) {
      V = AValue;
      ++FCount;
    }
    return &V;
  }
  return PlaceHashed(AKey, AValue);
}

TVectorDrawingItem** TItemIDMap::PlaceHashed(int AKey, TVectorDrawingItem* AValue) {
  // at most half full, so probe runs stay short
  if ((FHashCount + 1) * 2 > FSlots.size()) Rehash(std::max<size_t>(16, FSlots.size() * 2));
  for (size_t I = Home(AKey);; I = (I + 1) & Mask()) {
    TSlot& S = FSlots[I];
    if (!S.Value) {
      S = {AKey, AValue};
      ++FHashCount;
      ++FCount;
      return &S.Value;
    }
    if (S.Key == AKey) return &S.Value;
  }
}

void TItemIDMap::GrowDense(size_t ASize) {
  FDense.resize(ASize, nullptr);
  if (FHashCount == 0) return;
  std::vector<TSlot> Old = std::move(FSlots);
  FSlots.assign(Old.size(), TSlot{0, nullptr});
  FCount -= FHashCount;
  FHashCount = 0;
  for (const TSlot& S : Old) {
    if (!S.Value) continue;
    if (size_t(unsigned(S.Key)) < ASize) {
      FDense[size_t(S.Key)] = S.Value;
      ++FCount;
    } else {
      PlaceHashed(S.Key, S.Value);
    }
  }
}

void TItemIDMap::Erase(int AKey) {
  if (size_t(unsigned(AKey)) < FDense.size()) {
    TVectorDrawingItem*& V = FDense[size_t(AKey)];
    if (V) {
      V = nullptr;
      --FCount;
    }
    return;
  }
  if (FSlots.empty()) return;
  size_t I = Home(AKey);
  for (;; I = (I + 1) & Mask()) {
    if (!FSlots[I].Value) return;
    if (FSlots[I].Key == AKey) break;
  }
  // Later entries of the run move back into the hole when their home allows it, so
  // every key stays reachable from its home without markers.
  for (size_t J = (I + 1) & Mask();; J = (J + 1) & Mask()) {
    TSlot& S = FSlots[J];
    if (!S.Value) break;
    const size_t H = Home(S.Key);
    // S may fill the hole at I unless its home lies cyclically in (I, J]
    const bool HomeBetween = I <= J ? (H > I && H <= J) : (H > I || H <= J);
    if (HomeBetween) continue;
    FSlots[I] = S;
    I = J;
  }
  FSlots[I] = {0, nullptr};
  --FHashCount;
  --FCount;
}

void TItemIDMap::Reserve(size_t ACount) {
  FDense.reserve(ACount);
  if (FHashCount == 0) return;
  const size_t Want = std::bit_ceil(std::max<size_t>(16, ACount * 2));
  if (Want > FSlots.size()) Rehash(Want);
}

void TItemIDMap::Rehash(size_t ASlots) {
  std::vector<TSlot> Old = std::move(FSlots);
  FSlots.assign(ASlots, TSlot{0, nullptr});
  FShift = unsigned(64 - std::countr_zero(ASlots) + 3);
  FCount -= FHashCount;
  FHashCount = 0;
  for (const TSlot& S : Old)
    if (S.Value) PlaceHashed(S.Key, S.Value);
}
