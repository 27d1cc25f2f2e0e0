#include "KRN2dObjectPool.h"

#include "KRNGeo2DTypes.h"
#include "KRNVertex2d.h"

TKRN2dObjectPool::TKRN2dObjectPool() {
  FClassList[otEdge2d] = [] { return static_cast<TKRN2dObject*>(new TKRNEdge2d()); };
  FClassList[otLineVertex2d] = [] { return static_cast<TKRN2dObject*>(new TKRNLineVertex2d()); };
  FClassList[otLine2d] = [] { return static_cast<TKRN2dObject*>(new TKRNLine2d()); };
  FCapacityArray[otEdge2d] = 100;
  FCapacityArray[otLineVertex2d] = 150000;
  FCapacityArray[otLine2d] = 100;
  for (auto& B : FPoolList) B.store(nullptr, std::memory_order_relaxed);
  AddThread(std::this_thread::get_id());
}

TKRN2dObjectPool::~TKRN2dObjectPool() {
  FEnabled.store(false);
  for (auto& B : FPoolList) {
    TThreadNode* N = B.exchange(nullptr);
    while (N) {
      TThreadNode* Next = N->Next;
      for (auto& L : N->Lists)
        for (TKRN2dObject* O : L.Items) delete O;
      delete N;
      N = Next;
    }
  }
}

std::size_t TKRN2dObjectPool::BucketOf(std::thread::id AThreadID) {
  return std::hash<std::thread::id>()(AThreadID) % BucketCount;
}

TKRN2dObjectPool::TThreadNode* TKRN2dObjectPool::FindThread(std::thread::id AThreadID) const {
  for (TThreadNode* N = FPoolList[BucketOf(AThreadID)].load(std::memory_order_acquire); N; N = N->Next)
    if (N->ThreadID == AThreadID) return N;
  return nullptr;
}

void TKRN2dObjectPool::AddThread(std::thread::id AThreadID) {
  std::lock_guard<std::mutex> Guard(FWriteLock);
  if (FindThread(AThreadID)) return;
  auto* N = new TThreadNode;
  N->ThreadID = AThreadID;
  if (Enabled())
    for (int I = 0; I < ClassCount; ++I) CreateObjects(N->Lists[I], I);
  std::atomic<TThreadNode*>& Head = FPoolList[BucketOf(AThreadID)];
  N->Next = Head.load(std::memory_order_relaxed);
  Head.store(N, std::memory_order_release);
}

void TKRN2dObjectPool::DelThread(std::thread::id AThreadID) {
  std::lock_guard<std::mutex> Guard(FWriteLock);
  std::atomic<TThreadNode*>& Head = FPoolList[BucketOf(AThreadID)];
  TThreadNode* Prev = nullptr;
  for (TThreadNode* N = Head.load(); N; Prev = N, N = N->Next) {
    if (N->ThreadID != AThreadID) continue;
    if (Prev) Prev->Next = N->Next;
    else Head.store(N->Next, std::memory_order_release);
    for (auto& L : N->Lists)
      for (TKRN2dObject* O : L.Items) delete O;
    delete N;
    return;
  }
}

void TKRN2dObjectPool::CreateObjects(TObjectList& AList, int AIndex) {
  AList.Items.reserve(size_t(FCapacityArray[AIndex]));
  while (int(AList.Items.size()) < FCapacityArray[AIndex]) AList.Items.push_back(FClassList[AIndex]());
}

void TKRN2dObjectPool::Enable() {
  std::lock_guard<std::mutex> Guard(FWriteLock);
  FEnabled.store(true, std::memory_order_relaxed);
  for (auto& B : FPoolList)
    for (TThreadNode* N = B.load(); N; N = N->Next)
      for (int I = 0; I < ClassCount; ++I) CreateObjects(N->Lists[I], I);
}

TKRN2dObject* TKRN2dObjectPool::GetObject(TKRN2dObjectType AType) {
  if (AType < 0 || AType >= ClassCount) return nullptr;
  if (Enabled()) {
    if (TThreadNode* N = FindThread(std::this_thread::get_id())) {
      TObjectList& L = N->Lists[AType];
      if (L.Items.empty()) CreateObjects(L, AType);
      TKRN2dObject* O = L.Items.back();
      L.Items.pop_back();
      return O;
    }
  }
  return FClassList[AType]();
}

TKRNEdge2dRef TKRN2dObjectPool::GetEdge(TKRNCustomLine2d* ALine) {
  auto* E = static_cast<TKRNEdge2d*>(GetObject(otEdge2d));
  E->SetLine(ALine);
  return TKRNEdge2dRef(E, [](IKRNEdge2d* AEdge) { KRN2dObjectPool().DelObject(static_cast<TKRNEdge2d*>(AEdge)); });
}

TKRNPtr<TKRNLine2d> TKRN2dObjectPool::GetLine(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt) {
  TKRNPtr<TKRNLine2d> L(static_cast<TKRNLine2d*>(GetObject(otLine2d)));
  L->SetParams(AStartPt, AEndPt);
  return L;
}

TKRNLineVertex2d* TKRN2dObjectPool::GetLineVertex(const TKRNVector2d& APoint) {
  auto* V = static_cast<TKRNLineVertex2d*>(GetObject(otLineVertex2d));
  V->SetPoint(APoint);
  return V;
}

void TKRN2dObjectPool::DelObject(TKRN2dObject* AValue) {
  if (!AValue) return;
  const TKRN2dObjectType T = AValue->GetType();
  if (!Enabled() || T < 0 || T >= ClassCount) {
    delete AValue;
    return;
  }
  TThreadNode* N = FindThread(std::this_thread::get_id());
  if (!N) {
    delete AValue;
    return;
  }
  AValue->Initialize();
  N->Lists[T].Items.push_back(AValue);
}

int TKRN2dObjectPool::FreeCount(TKRN2dObjectType AType) const {
  const TThreadNode* N = FindThread(std::this_thread::get_id());
  return N ? int(N->Lists[AType].Items.size()) : -1;
}

TKRN2dObjectPool& KRN2dObjectPool() {
  // Never destroyed: objects freed during static destruction still reach it.
  static TKRN2dObjectPool* Pool = new TKRN2dObjectPool();
  return *Pool;
}
