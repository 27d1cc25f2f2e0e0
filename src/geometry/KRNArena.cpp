#include "KRNArena.h"

#include <atomic>
#include <cstdlib>
#include <new>

// Every object is preceded by 16 bytes naming its block, or null for a heap block of its own.
struct TKRNArenaBlock {
  std::atomic<std::size_t> Live;
};

namespace {
constexpr std::size_t BlockSize = 256 * 1024;
constexpr std::size_t HeaderSize = 16;
static_assert(sizeof(TKRNArenaBlock) <= HeaderSize);
// Added to a block's count while the arena places objects in it, so that frees cannot
// bring it to zero before the arena has moved on.
constexpr std::size_t Held = std::size_t(1) << 62;

thread_local TKRNArena* CurrentArena = nullptr;
std::atomic<std::size_t> BlockCount{0};

TKRNArenaBlock*& HeaderOf(void* AObject) {
  return *reinterpret_cast<TKRNArenaBlock**>(static_cast<char*>(AObject) - HeaderSize);
}

void FreeBlock(TKRNArenaBlock* ABlock) {
  ABlock->~TKRNArenaBlock();
  std::free(ABlock);
  BlockCount.fetch_sub(1, std::memory_order_relaxed);
}
}  // namespace

TKRNArena::~TKRNArena() { Leave(); }

void* TKRNArena::Allocate(std::size_t ASize) {
  const std::size_t N = HeaderSize + ((ASize + 15) & ~std::size_t(15));
  if (N > std::size_t(FEnd - FNext)) {
    if (N > BlockSize - HeaderSize) throw std::bad_alloc();
    Leave();
    void* M = std::malloc(BlockSize);
    if (!M) throw std::bad_alloc();
    FBlock = new (M) TKRNArenaBlock{Held};
    BlockCount.fetch_add(1, std::memory_order_relaxed);
    FNext = static_cast<char*>(M) + HeaderSize;
    FEnd = static_cast<char*>(M) + BlockSize;
  }
  void* P = FNext + HeaderSize;
  FNext += N;
  // Objects are written as soon as they are placed: ask for the lines ahead.
  if (FEnd - FNext > 512) __builtin_prefetch(FNext + 512, 1);
  ++FPlaced;
  HeaderOf(P) = FBlock;
  return P;
}

void TKRNArena::Leave() {
  if (!FBlock) return;
  // Give up the hold, keeping one count for each object placed and not yet freed.
  const std::size_t Release = Held - FPlaced;
  if (FBlock->Live.fetch_sub(Release, std::memory_order_acq_rel) == Release) FreeBlock(FBlock);
  FBlock = nullptr;
  FNext = FEnd = nullptr;
  FPlaced = 0;
}

TKRNArenaScope::TKRNArenaScope() : FOuter(CurrentArena) { CurrentArena = &FArena; }

TKRNArenaScope::~TKRNArenaScope() { CurrentArena = FOuter; }

void* KRNObjectAlloc(std::size_t ASize) {
#ifndef __SANITIZE_ADDRESS__
  if (CurrentArena && ASize < KRNArenaMaxObject) return CurrentArena->Allocate(ASize);
#endif
  char* M = static_cast<char*>(std::malloc(HeaderSize + ASize));
  if (!M) throw std::bad_alloc();
  void* P = M + HeaderSize;
  HeaderOf(P) = nullptr;
  return P;
}

void KRNObjectFree(void* AObject) noexcept {
  if (!AObject) return;
  TKRNArenaBlock* B = HeaderOf(AObject);
  if (!B) std::free(static_cast<char*>(AObject) - HeaderSize);
  else if (B->Live.fetch_sub(1, std::memory_order_acq_rel) == 1) FreeBlock(B);
}

std::size_t KRNArenaBlockCount() { return BlockCount.load(std::memory_order_relaxed); }
