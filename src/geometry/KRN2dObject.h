#pragma once
// Root of the objects the pool recycles, and the owning pointer that hands them
// back to the pool instead of deleting them.

#include "KRNArena.h"

#include <memory>

enum TKRN2dObjectType { otNone = -1, otEdge2d = 0, otLineVertex2d = 1, otLine2d = 2 };

class TKRN2dObject : public TKRNArenaObject {
public:
  virtual ~TKRN2dObject() = default;
  // The pool class this object belongs to; otNone for classes the pool does not keep.
  virtual TKRN2dObjectType GetType() const { return otNone; }
  // Puts the object back into an unused state when it returns to the pool.
  virtual void Initialize() {}
};

// Returns the object to the pool (which frees it when the pool does not keep it).
struct TKRNObjectDeleter {
  void operator()(TKRN2dObject* AObject) const;
};

template <typename T>
using TKRNPtr = std::unique_ptr<T, TKRNObjectDeleter>;
