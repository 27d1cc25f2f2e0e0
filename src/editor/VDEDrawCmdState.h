#pragma once
// Draw commands: clicks become new items with the attributes of the editor's add
// list. Every state stays after making its item until it is ended at step 0; Esc
// drops what is in progress. Points are snapped before a state sees them.

#include "VDECmdExecutor.h"
#include "VDECmdState.h"
#include "VDIHatch.h"
#include "VDILine.h"
#include "VDIPoint.h"
#include "VDIText.h"

class TVDEPropList;

class TVDEDrawState : public TVDECmdState {
public:
  using TVDECmdState::TVDECmdState;
  static TVDECmdInfo ClassCmdInfo();
  void NextCmdEnded() override;
  void SetNextCmd(std::unique_ptr<TVDECmdState> ACmd) override;
  virtual bool GetStartPt(TKRNVector2d&) { return false; }

protected:
  void AfterCreate() override { SetCurCursor(crSeekPoint); }
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState AShift, TKRNVector2d& APoint) override;
  virtual void DefinePoint(TKRNVector2d& APoint, TShiftState AShift) = 0;
  virtual void AddItems(TVDEDrawCmdExecutor& AExecutor) = 0;
  virtual void MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift);
  void CheckSnapResult();
  void CreateItems();
  TVDEPropList& Props() { return FOwner.GetAddItemProp(); }
  int PropInt(TVDEPropType APropType);
  // Colour, extended data, width, style, mark sizes and styles from the add list.
  void ApplyLineProps(TVectorLineBase& AItem, bool AStartMark, bool AEndMark);
  void DrawItem(QPainter& AHDC, TVectorDrawingItem& AItem) { AItem.Draw(AHDC, GetCoordTrans(), true); }
};

// Lines and arcs point by point: one item per segment, or one polyline.
class TVDEDrawPolylineState : public TVDEDrawState, public IVDEPolylineState, public IVDELineSegModeState {
public:
  TVDEDrawPolylineState(IVDEditor& AOwner, qintptr AParam);
  static TVDECmdInfo ClassCmdInfo();
  // Type -1 stands in the registry and draws nothing.
  static void ClassExecuteNone(IVDEditor&, qintptr) {}
  void ApplyAddItemProp() override;
  void ResetStep() override;
  bool GetStartPt(TKRNVector2d& APoint) override;
  void AssignFrom(TVDECmdState& ASource) override;
  void SetDrawLineSeg(bool AValue) override { FIsDrawLineSeg = AValue; }
  void SetDrawSingleLine(bool AValue) { FDrawSingleLine = AValue; }
  int SegmentCount() const { return int(FElasticLines.size()); }
  virtual TKRNArcType GetLineType() const = 0;
  virtual bool IsThreePoint() const { return false; }

protected:
  void DefinePoint(TKRNVector2d& APoint, TShiftState AShift) override;
  void MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) override;
  void AddItems(TVDEDrawCmdExecutor& AExecutor) override;
  void DoDrawElastic(QPainter& AHDC) override;
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoFinish(bool& ACanDelete) override;
  // The segment from the current start to APoint, by the orthogonal rule.
  void SetSegment(const TKRNVector2d& AEnd);
  void SetSegment3(const TKRNVector2d& AEnd);
  void NewSegment();
  const TKRNCustomLine2d& Current() const { return FElasticLastLine->GetXLine(); }

  bool FDrawSingleLine = false;
  std::unique_ptr<TVectorArc> FElasticLastLine;
  std::vector<std::unique_ptr<TVectorArc>> FElasticLines;
  TKRNVector2d FElasticMP{};
  bool FIsDrawLineSeg;
};

template <int ID, TKRNArcType T>
class TVDEDrawLineKindState : public TVDEDrawPolylineState {
public:
  using TVDEDrawPolylineState::TVDEDrawPolylineState;
  static TVDECmdInfo ClassCmdInfo();
  TVDECmdInfo CmdInfo() const override { return ClassCmdInfo(); }
  TKRNArcType GetLineType() const override { return T; }
};

using TVDEDrawLineState = TVDEDrawLineKindState<17, atLine>;
using TVDEDrawACSArcState = TVDEDrawLineKindState<18, atACS>;
using TVDEDrawCSArcState = TVDEDrawLineKindState<19, atCS>;
using TVDEDrawACLArcState = TVDEDrawLineKindState<20, atACL>;
using TVDEDrawCLArcState = TVDEDrawLineKindState<21, atCL>;

class TVDEDraw3PArcState : public TVDEDrawPolylineState {
  VDE_CMD_INFO
public:
  using TVDEDrawPolylineState::TVDEDrawPolylineState;
  TKRNArcType GetLineType() const override { return atLine; }
  bool IsThreePoint() const override { return true; }
};

// Closed figures from two points: one closed polyline, or one line per side.
class TVDEDrawCloseLineState : public TVDEDrawState, public IVDELineSegModeState {
public:
  TVDEDrawCloseLineState(IVDEditor& AOwner, qintptr AParam)
      : TVDEDrawState(AOwner, AParam), FIsDrawLineSeg(AParam == 0) {}
  void SetDrawLineSeg(bool AValue) override { FIsDrawLineSeg = AValue; }

protected:
  virtual std::vector<TKRNVector2d> GetLines() const = 0;
  // First point: both corners there; second: the figure is made and the state goes back.
  void DefinePoint(TKRNVector2d& APoint, TShiftState AShift) override;
  // Whether the first point may start a figure (the polygon asks for its sides here).
  virtual bool StartFigure() { return true; }
  void MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) override;
  void AddItems(TVDEDrawCmdExecutor& AExecutor) override;
  void DoDrawElastic(QPainter& AHDC) override;

  TKRNVector2d FElasticEP{}, FElasticSP{};
  bool FIsDrawLineSeg;
};

class TVDEDrawRectState : public TVDEDrawCloseLineState {
  VDE_CMD_INFO
public:
  using TVDEDrawCloseLineState::TVDEDrawCloseLineState;

protected:
  std::vector<TKRNVector2d> GetLines() const override;
};

class TVDEDrawPolygonState : public TVDEDrawCloseLineState {
  VDE_CMD_INFO
public:
  using TVDEDrawCloseLineState::TVDEDrawCloseLineState;

protected:
  bool StartFigure() override;
  void DoDrawElastic(QPainter& AHDC) override;
  std::vector<TKRNVector2d> GetLines() const override;
  int FElasticLineSegs = 3;
};

class TVDEDrawPointState : public TVDEDrawState {
  VDE_CMD_INFO
public:
  using TVDEDrawState::TVDEDrawState;
  void ApplyAddItemProp() override;

protected:
  void DefinePoint(TKRNVector2d& APoint, TShiftState AShift) override;
  void MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) override;
  void AddItems(TVDEDrawCmdExecutor& AExecutor) override;
  void DoDrawElastic(QPainter& AHDC) override;
  bool FIsDefineIP = false;
  std::unique_ptr<TVectorPoint> FPointElastic;
};

class TVDEDrawCircleState : public TVDEDrawState {
  VDE_CMD_INFO
public:
  using TVDEDrawState::TVDEDrawState;
  void ApplyAddItemProp() override;

protected:
  void DefinePoint(TKRNVector2d& APoint, TShiftState AShift) override;
  void MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) override;
  void AddItems(TVDEDrawCmdExecutor& AExecutor) override;
  void DoDrawElastic(QPainter& AHDC) override;
  std::unique_ptr<TVectorCircle> FCircleElastic;
  TKRNVector2d FElasticEP{};
  bool FIsDefineIP = false;
};

class TVDEDrawTextState : public TVDEDrawState {
  VDE_CMD_INFO
public:
  using TVDEDrawState::TVDEDrawState;
  void ApplyAddItemProp() override;

protected:
  void DefinePoint(TKRNVector2d& APoint, TShiftState AShift) override;
  void MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) override;
  void AddItems(TVDEDrawCmdExecutor& AExecutor) override;
  void DoDrawElastic(QPainter& AHDC) override;
  TKRNVector2d FElasticEP{};
  bool FElasticExist = false;
  std::unique_ptr<TVectorText> FTextElastic;
};

// A click inside a region bounded by lines, arcs, circles and polylines fills it.
class TVDEDrawHatchState : public TVDEDrawState {
  VDE_CMD_INFO
public:
  using TVDEDrawState::TVDEDrawState;

protected:
  void DoMouseDown(TMouseButton AButton, TShiftState AShift, TKRNVector2d& APoint) override;
  void DoMouseMove(TShiftState, TKRNVector2d&) override {}
  void DefinePoint(TKRNVector2d& APoint, TShiftState AShift) override;
  void AddItems(TVDEDrawCmdExecutor& AExecutor) override;
  std::unique_ptr<TKRNPolygon2d> FHatchPoly;
};

class TVDEDrawDimensionState : public TVDEDrawState {
  VDE_CMD_INFO
public:
  using TVDEDrawState::TVDEDrawState;
  void ApplyAddItemProp() override;

protected:
  void DefinePoint(TKRNVector2d& APoint, TShiftState AShift) override;
  void MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) override;
  void AddItems(TVDEDrawCmdExecutor& AExecutor) override;
  void DoDrawElastic(QPainter& AHDC) override;
  std::vector<std::unique_ptr<TVectorDrawingItem>> BuildItems();
  qint16 FEndMarkSize = 0, FStartMarkSize = 0;
  TMarkStyle FEndMarkStyle = msArrow, FStartMarkStyle = msArrow;
  TKRNVector2d FPt1{}, FPt2{}, FPt3{};
};

class TVDEEditPasteState : public TVDEDrawState {
  VDE_CMD_INFO
public:
  using TVDEDrawState::TVDEDrawState;
  template <class T>
  static void ClassExecute(IVDEditor& AOwner, qintptr AParam) {
    AOwner.SetCmdState(nullptr);
    AOwner.SetCmdState(Create<T>(AOwner, AParam));
  }

protected:
  void AfterCreate() override;
  void DefinePoint(TKRNVector2d& APoint, TShiftState AShift) override;
  void MovePoint(TKRNVector2d& APoint, bool ASnapped, TShiftState AShift) override;
  void AddItems(TVDEDrawCmdExecutor& AExecutor) override;
  void DoDrawElastic(QPainter& AHDC) override;
  TKRNVector2d FBasePt{}, FInsertPt{};
  std::vector<std::unique_ptr<TVectorDrawingItem>> FClipBoard;
  bool FIsDefineIP = false;
};

// The point an item is placed by: insert point, start, centre or first vertex.
TKRNVector2d VDEReferencePoint(const TVectorDrawingItem& AItem);

void RegisterDrawStates();
