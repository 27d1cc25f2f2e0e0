#pragma once
// What commands and states see of the editor: the command record, the plain input
// records states are fed with, cursor numbers, and the editor interface.

#include "KRNCoordTrans.h"
#include "KRNGeo2DTypes.h"

#include <QString>

#include <memory>

class QPainter;
class TVectorDrawing;
class TVDECmdState;
class TVDEPropList;
class IVDECmdExecList;

// A command's static description. Prompt parts are split at code 13.
struct TVDECmdInfo {
  int CmdID = -1;
  QString CmdName;
  qint8 Priority = -1;
  bool ClearSelSet = false;
  bool CanRepeat = false;
  bool SnapEnabled = false;
  int HelpContext = 0;
  QString Prompt;
};

struct TVDERepeatCmdInfo {
  int CmdID = -1;
  qintptr Param = 0;
  QString Caption;
  QString Hint;
};

// Shift state bits as the window system reports them with every input.
enum TShiftFlag { sfShift = 1, sfAlt = 2, sfCtrl = 4, sfLeft = 8, sfRight = 16, sfMiddle = 32, sfDouble = 64 };
using TShiftState = int;
enum TMouseButton { mbLeft, mbRight, mbMiddle };

// Key codes of the window system the commands were laid out on.
enum TVDEKey : quint16 {
  vkTab = 9, vkReturn = 13, vkEscape = 27, vkLeft = 37, vkUp = 38, vkRight = 39, vkDown = 40, vkDelete = 46,
  vkNumpad0 = 96, vkMultiply = 106, vkDivide = 111, vkF2 = 113
};

// Cursor numbers: negative ones are the system's, positive ones the editor's own images.
enum TVDECursor {
  crDefault = 0, crArrow = -2, crCross = -3, crPanRuntime = 1, crZoomRuntime = 2, crHide = 3, crSeekPoint = 4,
  crSnapPoint = 5, crSeekEdo = 6, crSnapEdo = 7
};

// The editor as commands and states reach it. Not owning.
class IVDEditor {
public:
  virtual ~IVDEditor() = default;
  // The smallest closed region of the drawing's lines around APoint, for a hatch.
  virtual bool SearchHatchPoly(const TKRNVector2d& APoint, std::unique_ptr<class TKRNPolygon2d>& APoly) = 0;
  virtual void DrawGrip(const TKRNVector2d& APt, bool AHot, QPainter* AHDC) = 0;
  virtual void Execute(int ACommandID, qintptr AParam) = 0;
  virtual TVDEPropList& GetAddItemProp() = 0;
  virtual int GetClientHeight() const = 0;
  virtual int GetClientWidth() const = 0;
  virtual TKRNCoordTrans& GetCoordTrans() = 0;
  virtual int GetCursor() const = 0;
  // The painter on the shown image, for rubber bands between paints.
  virtual QPainter& GetHDC() = 0;
  virtual double GetRadius() const = 0;
  virtual int GetMargin() const = 0;
  virtual IVDECmdExecList& GetCmdExecList() = 0;
  virtual TVectorDrawing& GetVectorDrawing() = 0;
  virtual void RefreshDrawing() = 0;
  virtual void Invalidate() = 0;
  virtual void SetCursor(int ACursor) = 0;
  virtual bool SnapPoint(TKRNVector2d& APoint, double ATol) = 0;
  virtual void SetDrawLineSegMode(bool AValue) = 0;
  // Null cancels the chain back to idle; otherwise the state nests by priority.
  virtual void SetCmdState(std::unique_ptr<TVDECmdState> ACmd) = 0;
  virtual bool GetSnapSwitch() const = 0;
  virtual void SetSnapSwitch(bool AValue) = 0;
  virtual bool GetGridSwitch() const = 0;
  virtual void SetGridSwitch(bool AValue) = 0;
  virtual int GetGridXSpace() const = 0;
  virtual void SetGridXSpace(int AValue) = 0;
  virtual int GetGridYSpace() const = 0;
  virtual void SetGridYSpace(int AValue) = 0;
  virtual bool GetOrthogonalSwitch() const = 0;
  virtual void SetOrthogonalSwitch(bool AValue) = 0;
  // Shifts the shown pixels by (dx, dy) after a pan and repaints at once.
  virtual void ScrollWindow(int ADeltaX, int ADeltaY) = 0;
};
