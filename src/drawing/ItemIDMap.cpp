#include "ItemIDMap.h"

#include <algorithm>
#include <bit>

TVectorDrawingItem** TItemIDMap::Place(int AKey, TVectorDrawingItem* AValue) {
  // at most half full, so probe runs stay short
  if ((FCount + 1) * 2 > FSlots.size()) Rehash(std::max<size_t>(16, FSlots.size() * 2));
  for (size_t I = Home(AKey);; I = (I + 1) & Mask()) {
    TSlot& S = FSlots[I];
    if (!S.Value) {
      S = {AKey, AValue};
      ++FCount;
      return &S.Value;
    }
    if (S.Key == AKey) return &S.Value;
  }
}

void TItemIDMap::Erase(int AKey) {
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
  --FCount;
}

void TItemIDMap::Reserve(size_t ACount) {
  const size_t Want = std::bit_ceil(std::max<size_t>(16, ACount * 2));
  if (Want > FSlots.size()) Rehash(Want);
}

void TItemIDMap::Rehash(size_t ASlots) {
  std::vector<TSlot> Old = std::move(FSlots);
  FSlots.assign(ASlots, TSlot{0, nullptr});
  FShift = unsigned(64 - std::countr_zero(ASlots) + 3);
  FCount = 0;
  for (const TSlot& S : Old)
    if (S.Value) Place(S.Key, S.Value);
}
