#pragma once
// Per-thread free lists of the hottest geometry objects (edges, straight lines,
// line vertices). Disabled at start: then every request is a plain allocation.
// A thread takes pooled objects only after AddThread for it; lookups do not lock.

#include "KRN2dObject.h"
#include "KRNCommon2d.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class TKRNCustomLine2d;
class TKRNLine2d;
class TKRNLineVertex2d;
class IKRNEdge2d;
using TKRNEdge2dRef = std::shared_ptr<IKRNEdge2d>;

class TKRN2dObjectPool {
public:
  static constexpr int BucketCount = 257;
  static constexpr int ClassCount = 3;

  TKRN2dObjectPool();
  ~TKRN2dObjectPool();
  TKRN2dObjectPool(const TKRN2dObjectPool&) = delete;
  TKRN2dObjectPool& operator=(const TKRN2dObjectPool&) = delete;

  void AddThread(std::thread::id AThreadID);
  void DelThread(std::thread::id AThreadID);
  // Sets the flag and fills every existing list to capacity.
  void Enable();
  void Disable() { FEnabled.store(false, std::memory_order_relaxed); }
  bool Enabled() const { return FEnabled.load(std::memory_order_relaxed); }

  TKRN2dObject* GetObject(TKRN2dObjectType AType);
  // The edge takes ownership of ALine.
  TKRNEdge2dRef GetEdge(TKRNCustomLine2d* ALine);
  TKRNPtr<TKRNLine2d> GetLine(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt);
  TKRNLineVertex2d* GetLineVertex(const TKRNVector2d& APoint);
  // nullptr does nothing; disabled or unknown class frees; otherwise the object
  // is initialised and kept for the current thread.
  void DelObject(TKRN2dObject* AValue);

  int Capacity(TKRN2dObjectType AType) const { return FCapacityArray[AType]; }
  // Free instances held for the current thread, -1 when it has no lists.
  int FreeCount(TKRN2dObjectType AType) const;

private:
  struct TObjectList {
    std::vector<TKRN2dObject*> Items;
  };
  struct TThreadNode {
    std::thread::id ThreadID;
    TObjectList Lists[ClassCount];
    TThreadNode* Next = nullptr;
  };

  TThreadNode* FindThread(std::thread::id AThreadID) const;
  void CreateObjects(TObjectList& AList, int AIndex);
  static std::size_t BucketOf(std::thread::id AThreadID);

  TKRN2dObject* (*FClassList[ClassCount])();
  int FCapacityArray[ClassCount];
  std::atomic<TThreadNode*> FPoolList[BucketCount];
  std::atomic<bool> FEnabled{false};
  std::mutex FWriteLock;
};

// The one pool of the process, built on first use with the calling thread registered.
TKRN2dObjectPool& KRN2dObjectPool();
