#pragma once
// Closed figures (ortho rectangle, rectangle, circle, ellipse, general polygon),
// open paths, and lists of them. A polygon's edges come from its vertex list;
// a positive signed area means anticlockwise.

#include "KRNVertex2d.h"

#include <memory>
#include <string>
#include <vector>

class TKRNCustomPolygon2d : public TKRNArenaObject {
public:
  virtual ~TKRNCustomPolygon2d() = default;
  TKRNCustomPolygon2d() = default;
  TKRNCustomPolygon2d(const TKRNCustomPolygon2d&) = delete;
  TKRNCustomPolygon2d& operator=(const TKRNCustomPolygon2d&) = delete;

  virtual TKRNBox2d Box() const;
  virtual void Inverse() = 0;
  virtual bool LoadFromStream(TKRNStream& AStream) = 0;
  virtual TPolygonType PolyType() const = 0;
  virtual void SaveToStream(TKRNStream& AStream) const = 0;
  virtual double Area() const { return std::fabs(SignedArea()); }
  virtual double SignedArea() const;
  virtual std::string AsString() const;
  virtual std::unique_ptr<TKRNCustomPolygon2d> BaseClone() const = 0;
  // Length of the boundary between two Y levels; horizontal edges lying on the
  // upper or lower level count only with the matching flag.
  virtual double LengthBetweenY(double AY1, double AY2, bool ANeedUpBorderLine, bool ANeedBottomBorderLine) const;
  virtual double Perimeter() const;
  virtual int GetCount() const = 0;
  virtual TKRNEdge2dRef Edge(int AIndex) const;
  virtual void Normalize(double) {}
  virtual bool IsRectangle(double) const { return false; }
  virtual bool IsOrthoRectangle(double) const { return false; }
  virtual bool IsCirCle() const { return false; }
  virtual bool GetClockwise() const { return SignedArea() < 0; }
  virtual void SetClockWise(bool AValue);
  virtual bool IsOnVertexPoint(const TKRNVector2d& APoint, double AEpsilon = KRNEpsilon) const;
  virtual void Scale(double AScaleFactor) = 0;

  // A new segment for edge AIndex (the basis of Edge).
  virtual TKRNPtr<TKRNCustomLine2d> EdgeLine(int AIndex) const = 0;

protected:
  bool FClockwise = false;
};

class TKRNOrthoRectangle2d : public TKRNCustomPolygon2d {
public:
  TKRNOrthoRectangle2d() = default;
  TKRNOrthoRectangle2d(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, bool AClockwise = false);
  const TKRNVector2d& StartPt() const { return FStartPt; }
  const TKRNVector2d& EndPt() const { return FEndPt; }

  TKRNBox2d Box() const override { return BoxOfPoints(FStartPt, FEndPt); }
  void Inverse() override { FClockwise = !FClockwise; }
  bool LoadFromStream(TKRNStream& AStream) override;
  TPolygonType PolyType() const override { return ptOrthoRectangle; }
  void SaveToStream(TKRNStream& AStream) const override;
  std::string AsString() const override;
  std::unique_ptr<TKRNCustomPolygon2d> BaseClone() const override;
  int GetCount() const override { return 4; }
  bool IsRectangle(double) const override { return true; }
  bool IsOrthoRectangle(double) const override { return true; }
  bool GetClockwise() const override { return FClockwise; }
  void Scale(double AScaleFactor) override;
  TKRNPtr<TKRNCustomLine2d> EdgeLine(int AIndex) const override;
  // Corners in edge order.
  TKRNVector2d Corner(int AIndex) const;

  // The edit functions change the stored figure in place.
  friend class TKRNMoveFunc2d;
  friend class TKRNRotateFunc2d;
  friend class TKRNMirrorFunc2d;
  friend class TKRNStretchFunc2d;

private:
  TKRNVector2d FStartPt, FEndPt;
};

class TKRNRectangle2d : public TKRNCustomPolygon2d {
public:
  TKRNRectangle2d() = default;
  TKRNRectangle2d(const TKRNVector2d& ACenterPt, double AHalfWidth, double AHalfHeight, double AAngle,
                  bool AClockwise = false);

  void Inverse() override { FClockwise = !FClockwise; }
  bool LoadFromStream(TKRNStream& AStream) override;
  TPolygonType PolyType() const override { return ptRectangle; }
  void SaveToStream(TKRNStream& AStream) const override;
  std::string AsString() const override;
  std::unique_ptr<TKRNCustomPolygon2d> BaseClone() const override;
  int GetCount() const override { return 4; }
  bool IsRectangle(double) const override { return true; }
  bool GetClockwise() const override { return FClockwise; }
  void Scale(double AScaleFactor) override;
  TKRNPtr<TKRNCustomLine2d> EdgeLine(int AIndex) const override;
  TKRNVector2d Corner(int AIndex) const;

  // The edit functions change the stored figure in place.
  friend class TKRNMoveFunc2d;
  friend class TKRNRotateFunc2d;
  friend class TKRNMirrorFunc2d;
  friend class TKRNStretchFunc2d;

private:
  double FAngle = 0;
  TKRNVector2d FCenterPt;
  double FHalfHeight = 0, FHalfWidth = 0;
};

// Two half-circle arcs starting at the rightmost point.
class TKRNCircle2d : public TKRNCustomPolygon2d {
public:
  TKRNCircle2d() = default;
  TKRNCircle2d(const TKRNVector2d& ACenterPt, double ARadius, bool AClockwise = false);
  const TKRNVector2d& CenterPt() const { return FCenterPt; }
  double Radius() const { return FRadius; }

  TKRNBox2d Box() const override;
  void Inverse() override { FClockwise = !FClockwise; }
  bool LoadFromStream(TKRNStream& AStream) override;
  TPolygonType PolyType() const override { return ptCircle; }
  void SaveToStream(TKRNStream& AStream) const override;
  double SignedArea() const override;
  std::string AsString() const override;
  std::unique_ptr<TKRNCustomPolygon2d> BaseClone() const override;
  double Perimeter() const override { return KRNTwoPi * FRadius; }
  int GetCount() const override { return 2; }
  bool IsCirCle() const override { return true; }
  bool GetClockwise() const override { return FClockwise; }
  void Scale(double AScaleFactor) override;
  TKRNPtr<TKRNCustomLine2d> EdgeLine(int AIndex) const override;

  // The edit functions change the stored figure in place.
  friend class TKRNMoveFunc2d;
  friend class TKRNRotateFunc2d;
  friend class TKRNMirrorFunc2d;
  friend class TKRNStretchFunc2d;

private:
  TKRNVector2d FCenterPt;
  double FRadius = 0;
};

// Four quarter arcs; their edges are given as chords (no elliptic segment class).
class TKRNEllipse2d : public TKRNCustomPolygon2d {
public:
  TKRNEllipse2d() = default;
  TKRNEllipse2d(const TKRNVector2d& ACenterPt, double AXRadius, double AYRadius, double AAngle,
                bool AClockwise = false);
  const TKRNVector2d& CenterPt() const { return FCenterPt; }
  double XRadius() const { return FXRadius; }
  double YRadius() const { return FYRadius; }
  double Angle() const { return FAngle; }

  TKRNBox2d Box() const override;
  void Inverse() override { FClockwise = !FClockwise; }
  bool LoadFromStream(TKRNStream& AStream) override;
  TPolygonType PolyType() const override { return ptEllipse; }
  void SaveToStream(TKRNStream& AStream) const override;
  double SignedArea() const override;
  std::unique_ptr<TKRNCustomPolygon2d> BaseClone() const override;
  double Perimeter() const override;
  int GetCount() const override { return 4; }
  bool GetClockwise() const override { return FClockwise; }
  void Scale(double AScaleFactor) override;
  TKRNPtr<TKRNCustomLine2d> EdgeLine(int AIndex) const override;
  TKRNVector2d QuarterPoint(int AIndex) const;

  // The edit functions change the stored figure in place.
  friend class TKRNMoveFunc2d;
  friend class TKRNRotateFunc2d;
  friend class TKRNMirrorFunc2d;
  friend class TKRNStretchFunc2d;

private:
  double FAngle = 0;
  TKRNVector2d FCenterPt;
  double FXRadius = 0, FYRadius = 0;
};

class TKRNLines2d;

class TKRNPolygon2d : public TKRNCustomPolygon2d {
public:
  TKRNPolygon2d();
  explicit TKRNPolygon2d(const TKRNBox2d& ABox);
  // Band around a segment: width below KRNEpsilon gives a two-edge loop along the
  // segment. O1 = W/2 - ACenterLineOff lies left of the segment's course, O2 = W/2 +
  // ACenterLineOff right of it. Built clockwise, inverted unless AClockwise.
  TKRNPolygon2d(const TKRNCustomLine2d& ASeg, double ALineWidth, double ACenterLineOff, bool AClockwise);
  explicit TKRNPolygon2d(const TKRNCustomPolygon2d& AFigure);
  // Left line forwards, then the right line backwards.
  TKRNPolygon2d(const TKRNCustomLine2d& ALeftLine, const TKRNCustomLine2d& ARightLine);
  explicit TKRNPolygon2d(const TKRNLines2d& ALines);

  TKRNVertex2dList& List() { return FList; }
  const TKRNVertex2dList& List() const { return FList; }

  void Assign(const TKRNCustomPolygon2d& ASource);
  std::unique_ptr<TKRNPolygon2d> Clone() const;
  // Raises EKRNException "多边形字符串格式错误" for an empty number field; a text
  // ending inside a group keeps the vertices read so far.
  void LoadFromString(const std::string& AText);
  // Arcs replaced by their sample points.
  std::unique_ptr<TKRNPolygon2d> GetSamplePoly(int ASampleRate) const;
  // Rotates the vertex list so that AIndex comes first.
  void SetStartIndex(int AIndex);
  // Distances from the reference line scaled by AScaleRate; arcs are sampled first.
  std::unique_ptr<TKRNPolygon2d> ProjectivePoly(const TKRNBeeline2d& ARefBeeline, double AScaleRate) const;
  // Same vertices and arcs in the same order, from any start vertex.
  bool IsEqualTo(const TKRNPolygon2d& APolygon, double AEpsilon = KRNEpsilon) const;

  TKRNBox2d Box() const override { return FList.Box(true); }
  void Inverse() override { FList.Inverse(); }
  bool LoadFromStream(TKRNStream& AStream) override { return FList.LoadFromStream(AStream); }
  TPolygonType PolyType() const override { return ptPolygon; }
  void SaveToStream(TKRNStream& AStream) const override { FList.SaveToStream(AStream); }
  std::string AsString() const override;
  std::unique_ptr<TKRNCustomPolygon2d> BaseClone() const override { return Clone(); }
  double Perimeter() const override { return FList.Length(true); }
  int GetCount() const override { return FList.Count(); }
  void Normalize(double AEpsilon = KRNEpsilon) override;
  bool IsRectangle(double AEpsilon = KRNEpsilon) const override;
  // Despite the name: a rectangle whose edges 0 and 1 have the same length.
  bool IsOrthoRectangle(double AEpsilon = KRNEpsilon) const override;
  bool IsCirCle() const override;
  bool IsOnVertexPoint(const TKRNVector2d& APoint, double AEpsilon = KRNEpsilon) const override {
    return FList.IsOnVertexPoint(APoint, AEpsilon);
  }
  void Scale(double AScaleFactor) override { FList.Scale(AScaleFactor); }
  TKRNPtr<TKRNCustomLine2d> EdgeLine(int AIndex) const override { return FList.EdgeLine(AIndex, true); }

private:
  void AddFigure(const TKRNCustomPolygon2d& AFigure);
  TKRNVertex2dList FList;
};

// An open path.
class TKRNLines2d {
public:
  TKRNLines2d() = default;
  // The polygon's boundary as a path that ends where it started.
  explicit TKRNLines2d(const TKRNCustomPolygon2d& APolygon);
  TKRNLines2d(const TKRNLines2d&) = delete;
  TKRNLines2d& operator=(const TKRNLines2d&) = delete;

  TKRNVertex2dList& List() { return FList; }
  const TKRNVertex2dList& List() const { return FList; }
  int Count() const { return FList.Count(); }

  void Assign(const TKRNLines2d& ASource) { FList.Assign(ASource.FList); }
  TKRNBox2d Box() const { return FList.Box(false); }
  std::unique_ptr<TKRNLines2d> Clone() const;
  // Vertices AFromIndex to AEndIndex inclusive.
  std::unique_ptr<TKRNLines2d> Clone(int AFromIndex, int AEndIndex) const;
  TKRNEdge2dRef Edge(int AIndex) const { return FList.Edge(AIndex, false); }
  double Length() const { return FList.Length(false); }
  std::string AsString() const;
  // Length along the path from the start to vertex AIndex.
  double LengthByIndex(int AIndex) const;
  void Inverse() { FList.Inverse(); }
  bool LoadFromStream(TKRNStream& AStream) { return FList.LoadFromStream(AStream); }
  void SaveToStream(TKRNStream& AStream) const { FList.SaveToStream(AStream); }
  void LoadFromString(const std::string& AText);
  // Removes repeated vertices and joins straight collinear runs.
  void Normalize(double AEpsilon = KRNEpsilon);
  // The same, giving for each kept vertex its index before.
  void Normalize(double AEpsilon, std::vector<int>& AIndexes);

private:
  TKRNVertex2dList FList;
};

class TKRNMultiLines2d;

class TKRNMultiPolygon2d {
public:
  explicit TKRNMultiPolygon2d(bool AOwnsObjects = true) : FOwnsObjects(AOwnsObjects) {}
  // Each path as a polygon.
  explicit TKRNMultiPolygon2d(const TKRNMultiLines2d& ALines);
  ~TKRNMultiPolygon2d() { Clear(); }
  TKRNMultiPolygon2d(const TKRNMultiPolygon2d&) = delete;
  TKRNMultiPolygon2d& operator=(const TKRNMultiPolygon2d&) = delete;

  int Count() const { return int(FItems.size()); }
  TKRNCustomPolygon2d* GetItems(int AIndex) const { return FItems[size_t(AIndex)]; }
  void SetItems(int AIndex, TKRNCustomPolygon2d* APolygon);
  void Add(TKRNCustomPolygon2d* APolygon) { FItems.push_back(APolygon); }
  void Insert(int AIndex, TKRNCustomPolygon2d* APolygon);
  void Delete(int AIndex);
  void Exchange(int AIndex1, int AIndex2) { std::swap(FItems[size_t(AIndex1)], FItems[size_t(AIndex2)]); }
  void Clear();
  TKRNBox2d Box() const;
  // Sum of the signed areas: holes wound the other way subtract.
  double SignArea() const;
  double Area() const { return std::fabs(SignArea()); }
  std::unique_ptr<TKRNMultiPolygon2d> Clone() const;
  double LengthBetweenY(double AY1, double AY2, bool ANeedUpBorderLine, bool ANeedBottomBorderLine) const;
  bool IsOnVertexPoint(const TKRNVector2d& APoint, double AEpsilon = KRNEpsilon) const;
  void Inverse();
  void Scale(double AScaleFactor);
  bool LoadFromStream(TKRNStream& AStream);
  void SaveToStream(TKRNStream& AStream) const;
  bool IsRectangle(double AEpsilon = KRNEpsilon) const;
  bool HasCirCle() const;
  void Normalize(double AEpsilon = KRNEpsilon);
  double Perimeter() const;
  // Edge AIndex counted over all polygons in order.
  TKRNEdge2dRef GetEdge(int AIndex) const;

private:
  std::vector<TKRNCustomPolygon2d*> FItems;
  bool FOwnsObjects;
};

class TKRNMultiLines2d {
public:
  TKRNMultiLines2d() = default;
  // Chains the segments into paths wherever an end meets an end.
  explicit TKRNMultiLines2d(const TKRNSeg2dList& ASegs);
  explicit TKRNMultiLines2d(const TKRNMultiPolygon2d& APolygons);
  TKRNMultiLines2d(const TKRNMultiLines2d&) = delete;
  TKRNMultiLines2d& operator=(const TKRNMultiLines2d&) = delete;

  int Count() const { return int(FItems.size()); }
  TKRNLines2d* GetItem(int AIndex) const { return FItems[size_t(AIndex)].get(); }
  void Add(std::unique_ptr<TKRNLines2d> ALines) { FItems.push_back(std::move(ALines)); }
  void Delete(int AIndex) { FItems.erase(FItems.begin() + AIndex); }
  std::unique_ptr<TKRNMultiLines2d> Clone() const;
  // Joins paths whose ends meet, reversing where needed.
  void Merge(double AEpsilon = KRNEpsilon);
  TKRNBox2d Box() const;
  double Length() const;
  // Paths as their text forms separated by ";".
  std::string AsString() const;
  void LoadFromString(const std::string& AText);
  void Inverse();

private:
  std::vector<std::unique_ptr<TKRNLines2d>> FItems;
};

// Reads "(x, y, r, word), ..." into AList (shared by polygons and paths).
void KRNLoadVertexListFromString(TKRNVertex2dList& AList, const std::string& AText);
std::string KRNVertexListAsString(const TKRNVertex2dList& AList);
