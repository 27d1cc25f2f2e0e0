#include "ItemIDMap.h"

#include <gtest/gtest.h>

#include <random>
#include <unordered_map>

namespace {

TVectorDrawingItem* Ptr(int AValue) { return reinterpret_cast<TVectorDrawingItem*>(std::uintptr_t(AValue) * 8 + 8); }

// Random adds, sets and erases against a plain map, over key sets that crowd the table:
// dense IDs, IDs far apart by powers of two, and a few keys reused over and over.
TEST(TItemIDMap, AgreesWithAPlainMap) {
  const struct {
    const char* Name;
    int (*Key)(std::mt19937&);
  } Cases[] = {
      {"dense", [](std::mt19937& R) { return int(R() % 3000); }},
      {"strided", [](std::mt19937& R) { return int((R() % 3000) << 16); }},
      {"few", [](std::mt19937& R) { return int(R() % 20) - 10; }},
      {"any", [](std::mt19937& R) { return int(R()); }},
  };
  for (const auto& C : Cases) {
    SCOPED_TRACE(C.Name);
    std::mt19937 R(7);
    TItemIDMap M;
    std::unordered_map<int, TVectorDrawingItem*> Ref;
    for (int Step = 0; Step < 40000; ++Step) {
      const int K = C.Key(R);
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
