#include "KRNArena.h"
#include "KRNGeo2DTypes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <random>
#include <thread>
#include <vector>

namespace {

struct TPlaced {
  unsigned char* P;
  std::size_t Size;
  unsigned char Mark;
};

// Many objects of mixed sizes over several blocks, each filled whole, then freed in a
// random order, half of them on another thread, after the arena is gone: nothing
// overlaps, and every block goes back once its last object is freed.
TEST(KRNArena, ObjectsFreedOneByOneOnAnyThreadGiveBackTheirBlocks) {
  const std::size_t Before = KRNArenaBlockCount();
  std::vector<TPlaced> Objects;
  {
    TKRNArena A;
    for (int I = 0; I < 5000; ++I) {
      const std::size_t Size = 8 + std::size_t(I * 37 % 600);
      auto* P = static_cast<unsigned char*>(A.Allocate(Size));
      ASSERT_EQ(reinterpret_cast<std::uintptr_t>(P) % 16, 0u);
      const auto Mark = static_cast<unsigned char>(I);
      std::memset(P, Mark, Size);
      Objects.push_back({P, Size, Mark});
    }
    EXPECT_GT(KRNArenaBlockCount(), Before + 4);
  }
  for (const TPlaced& O : Objects)
    ASSERT_TRUE(std::all_of(O.P, O.P + O.Size, [&](unsigned char C) { return C == O.Mark; }));
  EXPECT_GT(KRNArenaBlockCount(), Before);  // the objects still hold their blocks
  std::shuffle(Objects.begin(), Objects.end(), std::mt19937(3));
  const std::size_t Half = Objects.size() / 2;
  std::thread Other([&] {
    for (std::size_t I = 0; I < Half; ++I) KRNObjectFree(Objects[I].P);
  });
  for (std::size_t I = Half; I < Objects.size(); ++I) KRNObjectFree(Objects[I].P);
  Other.join();
  EXPECT_EQ(KRNArenaBlockCount(), Before);
}

// A block whose objects are all freed stays while the arena still places objects in it.
TEST(KRNArena, TheBlockInUseStaysUntilTheArenaMovesOn) {
  const std::size_t Before = KRNArenaBlockCount();
  auto A = std::make_unique<TKRNArena>();
  void* P = A->Allocate(64);
  KRNObjectFree(P);
  EXPECT_EQ(KRNArenaBlockCount(), Before + 1);
  void* Q = A->Allocate(64);
  EXPECT_NE(Q, P);  // placed after, never reused
  A.reset();
  EXPECT_EQ(KRNArenaBlockCount(), Before + 1);
  KRNObjectFree(Q);
  EXPECT_EQ(KRNArenaBlockCount(), Before);
  EXPECT_THROW(TKRNArena().Allocate(std::size_t(1) << 20), std::bad_alloc);
}

// Objects of the taking-part classes come from the open scope's arena; outside any scope,
// and for large objects, from the heap. Scopes nest and restore the outer one.
TEST(KRNArena, TheOpenScopeServesTheTakingPartClasses) {
  const std::size_t Before = KRNArenaBlockCount();
  std::unique_ptr<TKRNLine2d> Outside(new TKRNLine2d({0, 0}, {1, 1}));
  EXPECT_EQ(KRNArenaBlockCount(), Before);
  std::vector<std::unique_ptr<TKRNLine2d>> Lines;
  void* Large = nullptr;
  {
    const TKRNArenaScope Outer;
    Lines.emplace_back(new TKRNLine2d({0, 0}, {2, 2}));
    {
      const TKRNArenaScope Inner;
      Lines.emplace_back(new TKRNLine2d({0, 0}, {3, 3}));
      Large = KRNObjectAlloc(KRNArenaMaxObject);
    }
    Lines.emplace_back(new TKRNLine2d({0, 0}, {4, 4}));
#ifndef __SANITIZE_ADDRESS__
    EXPECT_EQ(KRNArenaBlockCount(), Before + 2);  // one block each; the large object in neither
#endif
  }
  Lines.emplace_back(new TKRNLine2d({0, 0}, {5, 5}));
  for (int I = 0; I < 4; ++I) EXPECT_EQ(Lines[size_t(I)]->EndPt().X, I + 2);
  KRNObjectFree(Large);
  Lines.clear();
  EXPECT_EQ(KRNArenaBlockCount(), Before);
}

}  // namespace
