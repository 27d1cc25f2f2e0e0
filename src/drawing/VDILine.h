#pragma once
// The line family: straight lines, arcs, polylines and the viewport border, with
// an optional mark at each end. The base turns an item into primitives (mark
// shapes and path edges); box, hit tests and drawing all read that list, so marks
// count everywhere.

#include "VectorDrawingItem.h"

#include <vector>

enum TMarkStyle { msNone, msArrow, msDot, msDiagonal, msHook, msHoop };

// One primitive: an edge, a dot, or an arrow triangle (filled, its sides as edges).
struct TVDIPrimitive {
  enum TKind { pkEdge, pkDot, pkArrow } Kind = pkEdge;
  TKRNPtr<TKRNCustomLine2d> Edge;            // pkEdge
  TKRNVector2d Center{};                     // pkDot
  double Radius = 0;                         // pkDot
  std::shared_ptr<TKRNPolygon2d> Triangle;   // pkArrow
  int PathIndex = -1;                        // the path edge's index; -1 for mark shapes
};

class TVectorLineBase : public TVectorDrawingItem {
public:
  using TVectorDrawingItem::TVectorDrawingItem;

  virtual int GetEdgeCount() const = 0;
  virtual const TKRNCustomLine2d* GetEdge(int AIndex) const = 0;

  void BuildOutRect() override;
  void DrawElastic(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  void DrawNormal(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  void DrawSelected(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans) override;
  TVDEPropTypeSet GetPropTypes() const override;
  QString GetPropValues(TVDEPropType APropType) const override;
  void SetPropValues(TVDEPropType APropType, const QString& AValue) override;
  void Assign(const TVectorDrawingItem& ASource) override;
  bool HitSelect(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt, double ATol) override;
  bool HitTest(const TKRNVector2d& AHitPt, double ATol) override;
  int DisplayLevel() const override { return 1; }

  // Start mark shapes, the path's edges, end mark shapes.
  std::vector<TVDIPrimitive> BuildMarkGeometry() const;
  bool HasMarks() const;

  qint16 LineWidth() const { return FLineWidth; }
  void SetLineWidth(qint16 AValue);
  int LineStyle() const { return FLineStyle; }
  void SetLineStyle(int AValue);
  qint16 StartMarkSize() const { return FStartMarkSize; }
  void SetStartMarkSize(qint16 AValue);
  qint16 EndMarkSize() const { return FEndMarkSize; }
  void SetEndMarkSize(qint16 AValue);
  TMarkStyle StartMarkStyle() const { return FStartMarkStyle; }
  void SetStartMarkStyle(TMarkStyle AValue);
  TMarkStyle EndMarkStyle() const { return FEndMarkStyle; }
  void SetEndMarkStyle(TMarkStyle AValue);
  int PrevItemID() const { return FPrevItemID; }
  void SetPrevItemID(int AValue) { FPrevItemID = AValue; }
  int NextItemID() const { return FNextItemID; }
  void SetNextItemID(int AValue) { FNextItemID = AValue; }

protected:
  // The line base of both file forms (the old three-field mark form included).
  void ReadLineBase(TVDReader& AReader);
  void WriteLineBase(TVDWriter& AWriter) const;
  void ReadLineBase(IXMLNode& ANode);
  void WriteLineBase(TVDXMLOut& AOut) const;
  void SetMarkFields(int AWidth, int AStyle, int AStartSize, int AEndSize, TMarkStyle AStartStyle, TMarkStyle AEndStyle);
  // The path without marks, for the short way of drawing.
  virtual void DrawPath(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, int AStyle, TColor AColor,
                        TDrawMode AMode) = 0;
  void DrawWith(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, TColor AColor, int AStyle, TDrawMode AMode);
  void AddMark(std::vector<TVDIPrimitive>& AList, bool AAtStart) const;

  qint16 FEndMarkSize = 0;
  TMarkStyle FEndMarkStyle = msNone;
  quint8 FLineStyle = psSolid;
  qint16 FLineWidth = 0;
  qint16 FStartMarkSize = 0;
  TMarkStyle FStartMarkStyle = msNone;
  int FPrevItemID = -1;
  int FNextItemID = -1;
};

class TVectorLine : public TVectorLineBase {
public:
  explicit TVectorLine(TVectorDrawing* AOwner);
  TVectorLine(TVectorDrawing* AOwner, int AID, TColor AColor, int ALineWidth, int ALineStyle, int AStartMarkSize,
              int AEndMarkSize, TMarkStyle AStartMarkStyle, TMarkStyle AEndMarkStyle, const TKRNVector2d& AStartPt,
              const TKRNVector2d& AEndPt);

  int ItemType() const override { return itLine; }
  void ReadFromStream(TVDReader& AReader) override;
  void WriteToStream(TVDWriter& AWriter) const override;
  void ReadFromXMLNode(IXMLNode& ANode) override;
  void WriteXMLAttributes(TVDXMLOut& AOut) const override;
  int GetEdgeCount() const override { return 1; }
  const TKRNCustomLine2d* GetEdge(int) const override { return FXLine.get(); }
  int GetGripCount() const override { return 3; }
  TKRNVector2d GetGrips(int AIndex) const override;
  void Assign(const TVectorDrawingItem& ASource) override;
  void Accept(IVDIVisitor& AVisitor) override;
  void Inspect(IVDIVisitor& AVisitor) override;
  std::unique_ptr<TVDICoordData> CreateCoordData() const override;
  void SetCoordData(const TVDICoordData& ACoordData) override;

  // Assigns the geometry from ALine, then rebuilds.
  virtual void SetLine(const TKRNCustomLine2d& ALine);
  TKRNCustomLine2d& GetXLine() { return *FXLine; }
  const TKRNCustomLine2d& GetXLine() const { return *FXLine; }
  // After the geometry was changed in place (by a visitor).
  void GeometryChanged() { Changed(true); }

protected:
  // For subclasses that bring their own kind of segment.
  TVectorLine(TVectorDrawing* AOwner, TKRNPtr<TKRNCustomLine2d> AXLine)
      : TVectorLineBase(AOwner), FXLine(std::move(AXLine)) {}
  virtual TKRNPtr<TKRNCustomLine2d> CreateXLine(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt) const;
  void DrawPath(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, int AStyle, TColor AColor, TDrawMode AMode) override;

  TKRNPtr<TKRNCustomLine2d> FXLine;
};

// An arc of type atLine draws as a straight line.
class TVectorArc : public TVectorLine {
public:
  explicit TVectorArc(TVectorDrawing* AOwner);
  TVectorArc(TVectorDrawing* AOwner, int AID, TColor AColor, int ALineWidth, int ALineStyle, int AStartMarkSize,
             int AEndMarkSize, TMarkStyle AStartMarkStyle, TMarkStyle AEndMarkStyle, const TKRNVector2d& AStartPt,
             const TKRNVector2d& AEndPt, double ARadius, TKRNArcType AArcType);

  int ItemType() const override { return itArc; }
  void ReadFromStream(TVDReader& AReader) override;
  void WriteToStream(TVDWriter& AWriter) const override;
  void ReadFromXMLNode(IXMLNode& ANode) override;
  void WriteXMLAttributes(TVDXMLOut& AOut) const override;
  void Accept(IVDIVisitor& AVisitor) override;
  void Inspect(IVDIVisitor& AVisitor) override;
  std::unique_ptr<TVDICoordData> CreateCoordData() const override;
  void SetCoordData(const TVDICoordData& ACoordData) override;
  TKRNArc2d& Arc() { return static_cast<TKRNArc2d&>(*FXLine); }
  const TKRNArc2d& Arc() const { return static_cast<const TKRNArc2d&>(*FXLine); }

protected:
  TKRNPtr<TKRNCustomLine2d> CreateXLine(const TKRNVector2d& AStartPt, const TKRNVector2d& AEndPt) const override;
};

class TVectorPolyline : public TVectorLineBase {
public:
  explicit TVectorPolyline(TVectorDrawing* AOwner);

  int ItemType() const override { return itPolyline; }
  void ReadFromStream(TVDReader& AReader) override;
  void WriteToStream(TVDWriter& AWriter) const override;
  void ReadFromXMLNode(IXMLNode& ANode) override;
  void WriteXMLAttributes(TVDXMLOut& AOut) const override;
  // Vertices - 1, never below 0.
  int GetEdgeCount() const override;
  const TKRNCustomLine2d* GetEdge(int AIndex) const override;
  // One per vertex, then one per arc edge at its middle.
  int GetGripCount() const override;
  TKRNVector2d GetGrips(int AIndex) const override;
  void Assign(const TVectorDrawingItem& ASource) override;
  void Accept(IVDIVisitor& AVisitor) override;
  void Inspect(IVDIVisitor& AVisitor) override;
  std::unique_ptr<TVDICoordData> CreateCoordData() const override;
  void SetCoordData(const TVDICoordData& ACoordData) override;

  const TKRNLines2d& Polyline() const { return *FPolyline; }
  // In-place edits; Accept refills the edges and counts the change.
  TKRNLines2d& XPolyline() { return *FPolyline; }
  // Copies APolyline, refills the edge cache, rebuilds.
  void SetPolyline(const TKRNLines2d& APolyline);
  void SetLineFields(int AID, TColor AColor, int ALineWidth, int ALineStyle);

protected:
  void DrawPath(QPainter& AHDC, const TKRNCoordTrans& ACoordTrans, int AStyle, TColor AColor, TDrawMode AMode) override;
  void RefillEdges() const;

  std::unique_ptr<TKRNLines2d> FPolyline;
  mutable std::vector<TKRNPtr<TKRNCustomLine2d>> FXLines;  // one per edge
};

// The border of a viewport: otherwise a polyline.
class TVectorVPBorder : public TVectorPolyline {
public:
  using TVectorPolyline::TVectorPolyline;
  int ItemType() const override { return itVPBorder; }
};

void RegisterLineClasses();
