#pragma once
// A geometry edit applied to items: each item's Accept calls the operation for its
// kind, then rebuilds its box and counts the change.

#include "KRNCommon2d.h"

#include <memory>

class TVectorPoint;
class TVectorLine;
class TVectorArc;
class TVectorPolyline;
class TVectorCircle;
class TVectorHatch;
class TVectorText;
class TVectorDrawingItem;
class TKRNCustomLine2d;
class TKRNVertex2dList;

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

class IVDIRotateVisitor : public IVDIVisitor {
public:
  virtual double GetAngle() const = 0;
  virtual TKRNVector2d GetBasePt() const = 0;
  virtual void SetAngle(double AValue) = 0;
  virtual void SetBasePt(const TKRNVector2d& AValue) = 0;
};

class TVDIMoveVisitor : public IVDIVisitor {
public:
  TVDIMoveVisitor(const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt);
  void VisitPoint(TVectorPoint& AItem) override;
  void VisitLine(TVectorLine& AItem) override;
  void VisitArc(TVectorArc& AItem) override;
  void VisitPolyline(TVectorPolyline& AItem) override;
  void VisitCircle(TVectorCircle& AItem) override;
  void VisitCenterItem(TVectorDrawingItem&) override {}
  void VisitHatch(TVectorHatch& AItem) override;
  void VisitText(TVectorText& AItem) override;

private:
  TKRNVector2d FVector;
};

class TVDIRotateVisitor : public IVDIRotateVisitor {
public:
  TVDIRotateVisitor(const TKRNVector2d& ABasePt, double AAngle) : FAngle(AAngle), FBasePt(ABasePt) {}
  double GetAngle() const override { return FAngle; }
  TKRNVector2d GetBasePt() const override { return FBasePt; }
  void SetAngle(double AValue) override { FAngle = AValue; }
  void SetBasePt(const TKRNVector2d& AValue) override { FBasePt = AValue; }
  void VisitPoint(TVectorPoint& AItem) override;
  void VisitLine(TVectorLine& AItem) override;
  void VisitArc(TVectorArc& AItem) override;
  void VisitPolyline(TVectorPolyline& AItem) override;
  void VisitCircle(TVectorCircle& AItem) override;
  void VisitCenterItem(TVectorDrawingItem&) override {}
  void VisitHatch(TVectorHatch& AItem) override;
  void VisitText(TVectorText& AItem) override;

private:
  double FAngle;
  TKRNVector2d FBasePt;
};

// Mirror reverses orientation: arc types turn and line mark sizes are negated, so
// hooks and diagonal marks turn with the line. Text only carries its anchor along.
class TVDIMirrorVisitor : public IVDIVisitor {
public:
  explicit TVDIMirrorVisitor(const TKRNBeeline2d& AMirrorLine) : FMirrorLine(AMirrorLine) {}
  void VisitPoint(TVectorPoint& AItem) override;
  void VisitLine(TVectorLine& AItem) override;
  void VisitArc(TVectorArc& AItem) override;
  void VisitPolyline(TVectorPolyline& AItem) override;
  void VisitCircle(TVectorCircle& AItem) override;
  void VisitCenterItem(TVectorDrawingItem&) override {}
  void VisitHatch(TVectorHatch& AItem) override;
  void VisitText(TVectorText& AItem) override;

private:
  TKRNBeeline2d FMirrorLine;
};

class TVDIStretchVisitor : public IVDIVisitor {
public:
  TVDIStretchVisitor(const TKRNBox2d& ACrossBox, const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt);
  void VisitPoint(TVectorPoint& AItem) override;
  void VisitLine(TVectorLine& AItem) override;
  void VisitArc(TVectorArc& AItem) override;
  void VisitPolyline(TVectorPolyline& AItem) override;
  void VisitCircle(TVectorCircle& AItem) override;
  void VisitCenterItem(TVectorDrawingItem&) override {}
  void VisitHatch(TVectorHatch& AItem) override;
  void VisitText(TVectorText& AItem) override;

private:
  TKRNBox2d FCrossBox;
  TKRNVector2d FVector;
};

class TVDIDragGripVisitor : public IVDIVisitor {
public:
  TVDIDragGripVisitor(int AGripIdx, const TKRNVector2d& ABasePt, const TKRNVector2d& AInsertPt);
  void VisitPoint(TVectorPoint& AItem) override;
  void VisitLine(TVectorLine& AItem) override;
  void VisitArc(TVectorArc& AItem) override;
  void VisitPolyline(TVectorPolyline& AItem) override;
  void VisitCircle(TVectorCircle& AItem) override;
  void VisitCenterItem(TVectorDrawingItem&) override {}
  void VisitHatch(TVectorHatch& AItem) override;
  void VisitText(TVectorText& AItem) override;

private:
  int FGripIdx;
  TKRNVector2d FVector;
};

// Finds the vertex of the visited item nearest to the hit point within the
// tolerance. Polylines and hatches start afresh; the other kinds add their
// candidates to what earlier items found.
class TVDISnapVertexVisitor : public IVDIVisitor {
public:
  TVDISnapVertexVisitor(const TKRNVector2d& AHitPt, double ATol) : FHitPt(AHitPt), FTol(ATol) {}
  bool SnapSuccess() const { return FSnapSuccess; }
  const TKRNVector2d& SnapPt() const { return FSnapPt; }
  void VisitPoint(TVectorPoint& AItem) override;
  void VisitLine(TVectorLine& AItem) override;
  void VisitArc(TVectorArc& AItem) override;
  void VisitPolyline(TVectorPolyline& AItem) override;
  void VisitCircle(TVectorCircle& AItem) override;
  void VisitCenterItem(TVectorDrawingItem&) override {}
  void VisitHatch(TVectorHatch& AItem) override;
  void VisitText(TVectorText& AItem) override;

private:
  void Test(const TKRNVector2d& APt);
  void TestEnds(const TKRNCustomLine2d& ALine);
  void TestList(const TKRNVertex2dList& AList);

  TKRNVector2d FHitPt;
  double FTol;
  bool FSnapSuccess = false;
  TKRNVector2d FSnapPt{};
};

// Grip edits shared with the grip commands. Edge: 0 start, 1 end, 2 the middle (a
// line moves whole, an arc is re-fitted through the moved middle). Vertex list: a
// vertex index moves that vertex, a later index bends the matching arc edge.
void VDIDragEdge(TKRNCustomLine2d& AEdge, int AGripIdx, const TKRNVector2d& AVector);
// Which edges have an arc grip: a polyline's edges that are arcs, a hatch's arc vertexes.
enum TVDIArcGrips { agArcEdges, agArcVertexes };
void VDIDragVertexList(TKRNVertex2dList& AList, bool AClosed, int AGripIdx, const TKRNVector2d& AVector,
                       TVDIArcGrips AArcGrips);
