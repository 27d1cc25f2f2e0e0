#pragma once
// Vertices of paths and the vertex list. A vertex describes the edge that leaves
// it: in a path of n vertices edge i runs from vertex i to vertex i+1, and in a
// closed path edge n-1 runs back to vertex 0.

#include "KRN2dObject.h"
#include "KRNGeo2DTypes.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

class TKRNVertex2d : public TKRN2dObject {
public:
  TKRNVertex2d() = default;
  explicit TKRNVertex2d(const TKRNVector2d& APoint) : FPoint(APoint) {}

  // VertexType without a virtual call, for the hot loops.
  TVertexType Kind() const { return FKind; }

  const TKRNVector2d& Point() const { return FPoint; }
  void SetPoint(const TKRNVector2d& P) { FPoint = P; }

  // "%g, %g, %g, %s": X, Y, radius and arc word.
  virtual std::string AsXPoint() const;
  // Box of the edge from this vertex to AEndPoint.
  virtual TKRNBox2d BoxWith(const TKRNVector2d& AEndPoint) const;
  virtual TKRNPtr<TKRNVertex2d> Clone() const;
  virtual void InverseArc() {}
  virtual bool LoadFromStream(TKRNStream& AStream);
  virtual void SaveToStream(TKRNStream& AStream) const;
  // Falls back to a straight edge when the arc to AEndPoint is not valid.
  virtual void Validate(const TKRNVector2d&) {}
  // Scales about the origin.
  virtual void Scale(double AScaleFactor);
  virtual TVertexType VertexType() const { return vtLine; }

  virtual TKRNArcType ArcType() const { return atLine; }
  virtual double Radius() const { return 0; }
  virtual void SetArc(TKRNArcType, double) {}
  bool IsArc() const { return ArcType() != atLine; }

protected:
  TKRNVector2d FPoint;
  TVertexType FKind = vtLine;
};

class TKRNLineVertex2d : public TKRNVertex2d {
public:
  using TKRNVertex2d::TKRNVertex2d;
  TKRN2dObjectType GetType() const override { return otLineVertex2d; }
  void Initialize() override { FPoint = TKRNVector2d{}; }
  TKRNPtr<TKRNVertex2d> Clone() const override;
};

class TKRNArcVertex2d : public TKRNVertex2d {
public:
  TKRNArcVertex2d() { FKind = vtArc; }
  TKRNArcVertex2d(const TKRNVector2d& APoint, TKRNArcType AArcType, double ARadius)
      : TKRNVertex2d(APoint), FArcType(AArcType), FRadius(ARadius) {
    FKind = vtArc;
  }

  TKRNBox2d BoxWith(const TKRNVector2d& AEndPoint) const override;
  TKRNPtr<TKRNVertex2d> Clone() const override;
  void InverseArc() override { FArcType = ArcTypeOpposite(FArcType); }
  bool LoadFromStream(TKRNStream& AStream) override;
  void SaveToStream(TKRNStream& AStream) const override;
  void Validate(const TKRNVector2d& AEndPoint) override;
  void Scale(double AScaleFactor) override;
  TVertexType VertexType() const override { return vtArc; }
  TKRNArcType ArcType() const override { return FArcType; }
  double Radius() const override { return FRadius; }
  void SetArc(TKRNArcType AArcType, double ARadius) override {
    FArcType = AArcType;
    FRadius = ARadius;
  }

private:
  TKRNArcType FArcType = atLine;
  double FRadius = 0;
};

// An elliptic arc to the next vertex. The segment classes have no elliptic form,
// so its edge is given as the chord.
class TKRNEllipseArcVertex2d : public TKRNVertex2d {
public:
  TKRNEllipseArcVertex2d() { FKind = vtEllipseArc; }
  TKRNEllipseArcVertex2d(const TKRNVector2d& APoint, TKRNArcType AArcType, double AXRadius, double AYRadius)
      : TKRNVertex2d(APoint), FArcType(AArcType), FXRadius(AXRadius), FYRadius(AYRadius) {
    FKind = vtEllipseArc;
  }

  TKRNPtr<TKRNVertex2d> Clone() const override;
  void InverseArc() override { FArcType = ArcTypeOpposite(FArcType); }
  bool LoadFromStream(TKRNStream& AStream) override;
  void SaveToStream(TKRNStream& AStream) const override;
  void Scale(double AScaleFactor) override;
  TVertexType VertexType() const override { return vtEllipseArc; }
  TKRNArcType ArcType() const override { return FArcType; }
  double XRadius() const { return FXRadius; }
  double YRadius() const { return FYRadius; }

private:
  TKRNArcType FArcType = atLine;
  double FXRadius = 0, FYRadius = 0;
};

// A new vertex of the right class for the arc data: a pooled line vertex for atLine.
TKRNVertex2d* KRNMakeVertex(const TKRNVector2d& APoint, TKRNArcType AArcType, double ARadius);

class TKRNVertex2dList {
public:
  explicit TKRNVertex2dList(bool AOwnsObjects = true) : FOwnsObjects(AOwnsObjects) {}
  ~TKRNVertex2dList() { Clear(); }
  TKRNVertex2dList(const TKRNVertex2dList&) = delete;
  TKRNVertex2dList& operator=(const TKRNVertex2dList&) = delete;

  bool OwnsObjects() const { return FOwnsObjects; }
  int Count() const { return int(FList.size()); }
  TKRNVertex2d* Items(int AIndex) const { return FList[size_t(AIndex)]; }
  TKRNVertex2d* operator[](int AIndex) const { return FList[size_t(AIndex)]; }
  const TKRNVector2d& Points(int AIndex) const { return FList[size_t(AIndex)]->Point(); }
  TKRNVertex2d* Last() const { return FList.back(); }

  int Add(TKRNVertex2d* AVertex);
  void Reserve(int ACount) { FList.reserve(size_t(std::max(ACount, 0))); }
  TKRNVertex2d* AddLinePoint(const TKRNVector2d& APoint);
  TKRNVertex2d* InsertLinePoint(int AIndex, const TKRNVector2d& APoint);
  TKRNVertex2d* AddArcPoint(const TKRNVector2d& APoint, TKRNArcType AArcType, double ARadius);
  void Insert(int AIndex, TKRNVertex2d* AVertex);
  // Replaces the vertex at AIndex (freeing the old one when owned).
  void Replace(int AIndex, TKRNVertex2d* AVertex);
  // Makes vertex AFirst the first, keeping the cyclic order.
  void Rotate(int AFirst) { std::rotate(FList.begin(), FList.begin() + AFirst, FList.end()); }
  int IndexOf(const TKRNVertex2d* AVertex) const;
  int IndexOf(const TKRNVector2d& APoint, double AEpsilon = KRNEpsilon) const;
  // An owning list copies the vertices; a sharing list shares them.
  void Assign(const TKRNVertex2dList& ASource);
  TKRNBox2d Box(bool AClosePath) const;
  void Clear();
  std::unique_ptr<TKRNVertex2dList> Clone() const;
  void Delete(int AIndex);
  // Runs of consecutive straight edges that continue in one direction, as lists of
  // edge indexes; arcs stand alone.
  std::vector<std::vector<int>> GroupEdges(bool AClosePath) const;
  // Null when there is no such edge (the last index of an open path).
  TKRNEdge2dRef Edge(int AIndex, bool AClosePath) const;
  // A new segment for edge AIndex, or null.
  TKRNPtr<TKRNCustomLine2d> EdgeLine(int AIndex, bool AClosePath) const;
  double Length(bool AClosePath) const;
  bool IsOnVertexPoint(const TKRNVector2d& APoint, double AEpsilon = KRNEpsilon) const;
  // Reverses the path: points in reverse order, each edge keeping its arc with the
  // opposite direction.
  void Inverse();
  void Scale(double AScaleFactor);
  // A sharing list reads and writes nothing. Load gives false on short or bad data.
  bool LoadFromStream(TKRNStream& AStream);
  void SaveToStream(TKRNStream& AStream) const;

private:
  void FreeVertex(TKRNVertex2d* AVertex) const;

  std::vector<TKRNVertex2d*> FList;
  bool FOwnsObjects;
};

// A segment from a vertex to the next point.
TKRNPtr<TKRNCustomLine2d> KRNVertexEdge(const TKRNVertex2d& AVertex, const TKRNVector2d& AEndPoint);
