#include "ItemIDMap.h"

#include <gtest/gtest.h>

#include <random>
#include <unordered_map>

namespace {

TVectorDrawingItem* Ptr(int AValue) { return reinterpret_cast<TVectorDrawingItem*>(std::uintptr_t(AValue) * 8 + 8); }

// Random adds, sets and erases against a plain map, over key sets that crowd the table or
// move between the array and the table: dense IDs (first beyond the array, then inside it
// as it grows), IDs far apart by powers of two, a few keys reused over and over, rising
// IDs as a load gives them, and dense, negative and scattered IDs mixed.
TEST(TItemIDMap, AgreesWithAPlainMap) {
  const struct {
    const char* Name;
    int (*Key)(std::mt19937&, int);
  } Cases[] = {
      {"dense", [](std::mt19937& R, int) { return int(R() % 3000); }},
      {"strided", [](std::mt19937& R, int) { return int((R() % 3000) << 16); }},
      {"few", [](std::mt19937& R, int) { return int(R() % 20) - 10; }},
      {"any", [](std::mt19937& R, int) { return int(R()); }},
      {"rising", [](std::mt19937& R, int AStep) { return AStep / 2 + int(R() % 3); }},
      {"mixed", [](std::mt19937& R, int) {
         switch (R() % 3) {
           case 0: return -int(R() % 5000);
           case 1: return int(R() % 20000);
           default: return int(R());
         }
       }},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    std::mt19937 R(7);
    TItemIDMap M;
    std::unordered_map<int, TVectorDrawingItem*> Ref;
    for (int Step = 0; Step < 40000; ++Step) {
      const int K = C.Key(R, Step);
      const int V = int(R() % 1000);
      switch (R() % 4) {
        case 0: M.Set(K, Ptr(V)); Ref[K] = Ptr(V); break;
        case 1: M.Add(K, Ptr(V)); Ref.emplace(K, Ptr(V)); break;
        default: M.Erase(K); Ref.erase(K); break;
      }
      if (Step % 1000 == 999) M.Reserve(Ref.size() + 100);  // a rehash keeps every entry
      ASSERT_EQ(M.Size(), Ref.size());
      ASSERT_EQ(M.Find(K), Ref.count(K) ? Ref[K] : nullptr);
    }
    for (const auto& [K, V] : Ref) ASSERT_EQ(M.Find(K), V) << K;
    M.Clear();
    EXPECT_EQ(M.Size(), 0u);
    EXPECT_EQ(M.Find(Ref.begin()->first), nullptr);
  }
}

}  // namespace
