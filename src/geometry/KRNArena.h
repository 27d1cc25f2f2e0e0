#pragma once
// Storage for the many small objects a loader makes at once. While a TKRNArenaScope is
// open on a thread, the classes that take part (drawing items, segments, vertices,
// polygons) are placed one after another in large blocks instead of each in a heap
// block of its own, so a load writes memory in order and the heap is asked once per
// block. Each object is still freed on its own, at any time and on any thread: a block
// goes back to the heap when the arena has moved on and its last object is freed.

#include <cstddef>

struct TKRNArenaBlock;

class TKRNArena {
public:
  TKRNArena() = default;
  // Lets go of the current block; it is freed with its last object.
  ~TKRNArena();
  TKRNArena(const TKRNArena&) = delete;
  TKRNArena& operator=(const TKRNArena&) = delete;

  void* Allocate(std::size_t ASize);

private:
  void Leave();

  TKRNArenaBlock* FBlock = nullptr;
  char* FNext = nullptr;
  char* FEnd = nullptr;
  std::size_t FPlaced = 0;  // objects placed in the current block
};

// Opens an arena for the objects this thread makes until the scope ends; scopes nest.
class TKRNArenaScope {
public:
  TKRNArenaScope();
  ~TKRNArenaScope();
  TKRNArenaScope(const TKRNArenaScope&) = delete;
  TKRNArenaScope& operator=(const TKRNArenaScope&) = delete;

private:
  TKRNArena FArena;
  TKRNArena* FOuter;
};

// What the taking-part classes' operator new and delete call: from the thread's open
// arena, else from the heap; a free finds where the object came from. Under the address
// sanitizer every object comes from the heap, so that its checks see each one.
void* KRNObjectAlloc(std::size_t ASize);
void KRNObjectFree(void* AObject) noexcept;

// Blocks of every arena not yet given back to the heap (for tests and diagnostics).
std::size_t KRNArenaBlockCount();

// Objects of that many bytes or more always come from the heap.
constexpr std::size_t KRNArenaMaxObject = 4096;

// The base that makes a class take part.
class TKRNArenaObject {
public:
  static void* operator new(std::size_t ASize) { return KRNObjectAlloc(ASize); }
  static void operator delete(void* AObject) noexcept { KRNObjectFree(AObject); }
};
