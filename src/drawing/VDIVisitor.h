#pragma once
// A geometry edit applied to items: each item's Accept calls the operation for its
// kind, then rebuilds its box and counts the change.

class TVectorPoint;
class TVectorLine;
class TVectorArc;
class TVectorPolyline;
class TVectorCircle;
class TVectorHatch;
class TVectorText;
class TVectorDrawingItem;

class IVDIVisitor {
public:
  virtual ~IVDIVisitor() = default;
  virtual void VisitPoint(TVectorPoint& AItem) = 0;
  virtual void VisitLine(TVectorLine& AItem) = 0;
  virtual void VisitArc(TVectorArc& AItem) = 0;
  virtual void VisitPolyline(TVectorPolyline& AItem) = 0;
  virtual void VisitCircle(TVectorCircle& AItem) = 0;
  // For a kind whose first own field is a point; no class of today's drawing.
  virtual void VisitCenterItem(TVectorDrawingItem& AItem) = 0;
  virtual void VisitHatch(TVectorHatch& AItem) = 0;
  virtual void VisitText(TVectorText& AItem) = 0;
};
