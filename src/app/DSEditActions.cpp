#include "DSEditActions.h"

#include "DrawSet.h"
#include "MZTBarInfo.h"
#include "SysUtils.h"
#include "VectorDrawing.h"

bool AcceptZoomText(QString& AText, int& AZoom) {
  QString T = Trim(AText);
  if (T.isEmpty()) {
    AText = QStringLiteral("100%");
    AZoom = 100;
    return true;
  }
  if (T.endsWith(QLatin1Char('%'))) T.chop(1);
  int V;
  if (!TryStrToInt(T, V) || V < 1 || V > 100000) return false;
  AText = T + QLatin1Char('%');
  AZoom = V;
  return true;
}

bool AcceptRadiusText(QString& AText, double& ARadius) {
  const QString T = Trim(AText);
  if (T.isEmpty()) {
    AText = QStringLiteral("0");
    ARadius = 0;
    return true;
  }
  double V;
  if (!TryStrToFloat(T, V) || V < 0 || V > 10000000) return false;
  ARadius = V;
  return true;
}

namespace {

bool IsCurve(const TVectorDrawingItem& AItem) {
  switch (AItem.ItemType()) {
    case itLine: case itArc: case itCircle: case itPolyline: return true;
    default: return false;
  }
}

}  // namespace

int CountCurves(TVectorDrawing& ADrawing, int AMax) {
  int N = 0;
  TVectorDrawingSelSet& Sel = ADrawing.SelSet();
  if (Sel.Count() > 0) {
    for (int I = 0; I < Sel.Count() && N < AMax; ++I)
      if (IsCurve(*Sel.Items(I))) ++N;
  } else {
    for (int I = 0; I < ADrawing.Count() && N < AMax; ++I)
      if (IsCurve(*ADrawing.Items(I))) ++N;
  }
  return N;
}

QHash<QString, bool> EditActionsEnabled(const TEditActionsState& S) {
  QHash<QString, bool> E;
  const bool Curves = S.HasSelection ? S.CurveCount > 0 : S.CurveCount > 1;
  const bool Normal = S.Mode == dsNormal;
  E[QStringLiteral("acExtend")] = Curves && Normal;
  E[QStringLiteral("acTrim")] = Curves && Normal;
  for (const char* A : {"acErase", "acMove", "acSelectAll"}) E[QLatin1String(A)] = S.HasItems;
  for (const char* A : {"acDuplicate", "acMirror", "acRotate", "acStretch"})
    E[QLatin1String(A)] = S.HasItems && S.Mode != dsParam;
  E[QStringLiteral("acBreak")] = S.CurveCount > 1 && Normal;
  E[QStringLiteral("acMerge")] = S.CurveCount > 1 && Normal;
  for (const char* A : {"acCut", "acCopy", "acDelete"}) E[QLatin1String(A)] = S.HasSelection;
  E[QStringLiteral("acPaste")] = S.CanPaste;
  E[QStringLiteral("acUndo")] = S.CanUndo;
  E[QStringLiteral("acRedo")] = S.CanRedo;
  for (const char* A : {"acMidSnap", "acIntSnap", "acPerSnap"}) E[QLatin1String(A)] = S.SnapEnabled;

  const bool Shapes = S.Mode != dsParam;
  for (const char* A : {"acDrawPoint", "acDrawLine", "acDrawACSArc", "acDrawCSArc", "acDrawACLArc", "acDrawCLArc",
                        "acDraw3PArc", "acDrawCircle", "acDrawRect", "acDrawPolygon", "cbRadius"})
    E[QLatin1String(A)] = Shapes;
  E[QStringLiteral("acDrawArc")] = Shapes;
  E[QStringLiteral("acDrawText")] = S.Mode != dsBar;
  E[QStringLiteral("acDrawDimension")] = Normal;
  E[QStringLiteral("acDrawHatch")] = Normal;
  E[QStringLiteral("acFindParam")] = S.Mode == dsParam;
  E[QStringLiteral("acEditParam")] = S.Mode == dsParam;
  E[QStringLiteral("acSetBarInfo")] = S.Mode == dsBar;
  E[QStringLiteral("acMergeBars")] = S.Mode == dsBar;
  E[QStringLiteral("acLinesToBar")] = Normal;
  return E;
}

namespace {

bool IsNumber(const QString& AText) {
  double V;
  return TryStrToFloat(AText, V);
}

}  // namespace

bool ValidatePropText(const QString& AValue, TDSType AMode, TVectorDrawing& ADrawing, TDrawSet* ADrawSet,
                      QString& AErrMsg) {
  AErrMsg.clear();
  const QString T = Trim(AValue);
  TVectorDrawingSelSet& Sel = ADrawing.SelSet();
  if (AMode == dsParam) {
    if (IsNumber(T)) return true;
    AErrMsg = QStringLiteral("参数值必须为整数或实数");
    return false;
  }
  if (Sel.Count() == 0 || AMode != dsNormal || !ADrawSet) return true;
  for (int I = 0; I < Sel.Count(); ++I) {
    if (!ADrawSet->Bars().GetItemByInfoVDID(Sel.Items(I)->ID())) continue;
    try {
      TDrawSetBarInfo Info;
      Info.SetAsString(T);
    } catch (const TBarInfoParseError& E) {
      AErrMsg = E.Message();
      return false;
    }
    return true;
  }
  return true;
}
