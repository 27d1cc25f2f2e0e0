#pragma once
// The editor's logic behind its window: it owns the drawing, the view, the state
// chain, the undo list and the two property lists; it turns plain input records
// into calls on the chain and paints into images. A widget forwards input and shows
// Image(); rubber bands are drawn in exclusive-or on the shown image between
// paints, so they cost nothing in the drawing's size.

#include "VDECmdExecutor.h"
#include "VDECmdState.h"
#include "VDEPropList.h"

#include <QImage>
#include <QPainter>

#include <functional>
#include <optional>

using TCommandChangedEvent = std::function<void(int ACmdID)>;
using TShowMousePosEvent = std::function<void(const QString& AText)>;

struct TVDEditorSettings {
  bool SnapSwitch = true;
  bool GridSwitch = true;
  int GridXSpace = 10;
  int GridYSpace = 10;
};

class TVectorDrawingEditor : public IVDEditor, private ICoordTransChangedIntf {
public:
  // ASettingsFile empty: "<program>.ini" beside the program.
  explicit TVectorDrawingEditor(const QString& ASettingsFile = QString());
  // Writes the settings back.
  ~TVectorDrawingEditor() override;
  TVectorDrawingEditor(const TVectorDrawingEditor&) = delete;
  TVectorDrawingEditor& operator=(const TVectorDrawingEditor&) = delete;
  static QString DefaultSettingsFile();
  const QString& SettingsFile() const { return FIniFile; }
  void SaveSettings() const;

  // ---- IVDEditor
  bool SearchHatchPoly(const TKRNVector2d& APoint, std::unique_ptr<TKRNPolygon2d>& APoly) override;
  void DrawGrip(const TKRNVector2d& APt, bool AHot, QPainter* AHDC) override;
  void Execute(int ACommandID, qintptr AParam) override;
  TVDEPropList& GetAddItemProp() override { return FAddItemProp; }
  int GetClientHeight() const override { return FClientHeight; }
  int GetClientWidth() const override { return FClientWidth; }
  TKRNCoordTrans& GetCoordTrans() override { return FCoordTrans; }
  int GetCursor() const override { return FCursor; }
  QPainter& GetHDC() override;
  double GetRadius() const override { return FRadius; }
  int GetMargin() const override { return FMargin; }
  IVDECmdExecList& GetCmdExecList() override { return *FCmdExecList; }
  TVectorDrawing& GetVectorDrawing() override { return *FVectorDrawing; }
  void RefreshDrawing() override { Invalidate(); }
  void Invalidate() override;
  void SetCursor(int ACursor) override;
  bool SnapPoint(TKRNVector2d& APoint, double ATol) override;
  void SetDrawLineSegMode(bool AValue) override;
  void SetCmdState(std::unique_ptr<TVDECmdState> ACmd) override;
  bool GetSnapSwitch() const override { return FSnapSwitch; }
  void SetSnapSwitch(bool AValue) override { FSnapSwitch = AValue; }
  bool GetGridSwitch() const override { return FGridSwitch; }
  void SetGridSwitch(bool AValue) override;
  int GetGridXSpace() const override { return FGridXSpace; }
  void SetGridXSpace(int AValue) override;
  int GetGridYSpace() const override { return FGridYSpace; }
  void SetGridYSpace(int AValue) override;
  bool GetOrthogonalSwitch() const override { return FOrthogonalSwitch; }
  void SetOrthogonalSwitch(bool AValue) override { FOrthogonalSwitch = AValue; }
  void ScrollWindow(int ADeltaX, int ADeltaY) override;

  // ---- for the host
  // The running command; a nested selection reports the command it runs for.
  int GetCurCmd() const;
  QString GetPrompt() const;
  bool CanUndo() const { return FCmdExecList->CanUndo(); }
  bool CanRedo() const { return FCmdExecList->CanRedo(); }
  bool CanPaste() const;
  bool GetSnapEnabled() const;
  // The zoom factor times 100.
  double GetScale() const { return FCoordTrans.ZoomFactor() * 100.0; }
  void SetScale(double AValue);
  void SetRadius(double AValue);
  int HelpContext() const { return FHelpContext; }
  const TVDERepeatCmdInfo& RepeatCmdInfo() const { return FRepeatCmdInfo; }
  TVDEPropList& GetModifyItemProp() { return FModifyItemProp; }
  TVDECmdState& RootCmdState() { return *FRootCmdState; }
  TVDECmdState& DeepestCmdState() { return *FRootCmdState->Deepest(); }
  TVDECmdExecList& CmdExecList() { return *FCmdExecList; }

  // ---- input in client pixels
  void SetClientSize(int AWidth, int AHeight);
  void KeyDown(quint16 AKey, TShiftState AShift);
  void MouseDown(TMouseButton AButton, TShiftState AShift, const TKRNPoint2i& APoint);
  void MouseMove(TShiftState AShift, const TKRNPoint2i& APoint);
  void MouseUp(TMouseButton AButton, TShiftState AShift, const TKRNPoint2i& APoint);
  void MouseWheel(bool AUp, const TKRNPoint2i& APoint);

  // ---- painting
  // The shown image: rebuilt when invalid, rubber bands on top.
  const QImage& Image();
  bool NeedsRender() const { return FNeedsRender; }
  // Renders into ATarget as a paint does (drawing, grips, grid), without rubber bands.
  void Render(QImage& ATarget);

  TCommandChangedEvent OnCommandChanged;
  TProcedureEvent OnSelSetChanged;
  TShowMousePosEvent OnShowMousePos;
  TVDEPropValChangedEvent OnModifyItemPropValChanged;
  // Requests to the window: repaint, show a cursor, open the context menu at a client point.
  TProcedureEvent OnInvalidate;
  std::function<void(int ACursor)> OnCursorChanged;
  std::function<void(const TKRNPoint2i& APoint)> OnContextMenu;

private:
  void CoordTransChanged() override { Invalidate(); }
  void LoadSettings();
  void SelSetChanged();
  void AddItemPropChanged(TVDEPropType APropType, const QString& AValue);
  void ModifyItemPropChanged(TVDEPropType APropType, const QString& AValue);
  void EndHDC();
  void DrawGrid(QPainter& AHDC, const TKRNRect& AClient);

  TVDEPropList FAddItemProp;
  TVDEPropList FModifyItemProp;
  std::unique_ptr<TVDECmdExecList> FCmdExecList;
  TKRNCoordTrans FCoordTrans;
  int FCurCmd = cmdSelect;
  int FCursor = crDefault;
  bool FGridSwitch = true;
  bool FSnapSwitch = true;
  bool FOrthogonalSwitch = false;
  int FGridXSpace = 10;
  int FGridYSpace = 10;
  qint16 FMargin = 20;
  int FHelpContext = 100;
  QString FIniFile;
  double FRadius = 0;
  TVDERepeatCmdInfo FRepeatCmdInfo;
  std::unique_ptr<TVectorDrawing> FVectorDrawing;
  std::unique_ptr<TVDECmdState> FRootCmdState;
  int FClientWidth = 0;
  int FClientHeight = 0;
  QImage FImage;
  std::optional<QPainter> FPainter;
  bool FNeedsRender = true;
};
