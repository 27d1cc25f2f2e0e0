#include "VectorDrawingEditor.h"

#include "KRNDrawFunc2d.h"
#include "KRNPositionFunc2d.h"
#include "SysUtils.h"
#include "VDEClipBrd.h"
#include "VDERunCmd.h"
#include "VDEHatchSearch.h"
#include "VDIVisitor.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QSettings>
#include <QTemporaryDir>

#include <cmath>

namespace {

const QString SEditorSetting = QStringLiteral("EditorSetting");
const QString SAddItemProp = QStringLiteral("AddItemProp");

// QSettings opens its file by a converted name, which loses names that are not UTF-8.
// It works on a scratch copy instead, and the file itself is read and written under its
// exact bytes like every other file: links followed, permissions kept, written whole.
class TSettingsCopy {
public:
  explicit TSettingsCopy(const QString& AFileName) : FFileName(AFileName) {
    if (!FDir.isValid()) return;  // no scratch space: QSettings on the file itself
    FCopy = FDir.filePath(QStringLiteral("settings.ini"));
    QString Error;
    const TFileStatus St = FileStatus(AFileName);
    // A file that is there but cannot be read (too large, no permission, not a file)
    // gives the defaults and is never overwritten.
    FKeep = St.Exists && (!St.IsFile || !ReadFileCapped(AFileName, KMaxBytes, FRead, Error));
    if (FKeep) FRead.clear();
    QFile F(FCopy);
    if (F.open(QIODevice::WriteOnly)) F.write(FRead);
  }
  QString Path() const { return FCopy.isEmpty() ? FFileName : FCopy; }
  // After QSettings has synced: the copy goes to the file when it differs from what was read.
  void WriteBack() const {
    if (FCopy.isEmpty() || FKeep) return;
    QByteArray Data;
    QString Error;
    if (!ReadFileCapped(FCopy, KMaxBytes, Data, Error)) return;
    if (Data == FRead && FileStatus(FFileName).Exists) return;
    if (!WriteFileAtomically(FFileName, Data, Error))
      qWarning("%s", qUtf8Printable(QStringLiteral("设置文件 \"%1\" 未能保存：%2").arg(FFileName, Error)));
  }

private:
  static constexpr qint64 KMaxBytes = 1 << 20;
  QString FFileName, FCopy;
  QTemporaryDir FDir;
  QByteArray FRead;
  bool FKeep = false;
};

bool ReadBool(const QSettings& S, const QString& AKey, bool ADefault) {
  const QString V = S.value(AKey).toString().trimmed();
  if (V.isEmpty()) return ADefault;
  if (V == QLatin1String("1") || V.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0) return true;
  if (V == QLatin1String("0") || V.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0) return false;
  return ADefault;
}

int ReadInt(const QSettings& S, const QString& AKey, int ADefault) {
  bool Ok = false;
  const int V = S.value(AKey).toString().trimmed().toInt(&Ok);
  return Ok ? V : ADefault;
}

}  // namespace

QString TVectorDrawingEditor::DefaultSettingsFile() {
  const QString Program = QCoreApplication::instance() ? QCoreApplication::applicationFilePath()
                                                       : QStringLiteral("dseditor");
  const QFileInfo F(Program);
  const QString Name = F.fileName();
  const int Dot = Name.lastIndexOf(QLatin1Char('.'));
  return F.dir().filePath((Dot >= 0 ? Name.left(Dot + 1) : Name + QLatin1Char('.')) + QStringLiteral("ini"));
}

TVectorDrawingEditor::TVectorDrawingEditor(const QString& ASettingsFile)
    : FAddItemProp([this](TVDEPropType T, const QString& V) { AddItemPropChanged(T, V); }),
      FModifyItemProp([this](TVDEPropType T, const QString& V) { ModifyItemPropChanged(T, V); }),
      FIniFile(ASettingsFile.isEmpty() ? DefaultSettingsFile() : ASettingsFile) {
  RegisterEditorCommands();
  FVectorDrawing = std::make_unique<TVectorDrawing>([this] { SelSetChanged(); });
  FVectorDrawing->OnUpdateDrawing = [this] { RefreshDrawing(); };
  FCoordTrans.AddChangeListener(this);
  FRootCmdState = TVDECmdState::Create<TVDEBaseSelectState>(*this, 0);
  FCurCmd = cmdSelect;
  LoadSettings();
  FCmdExecList = std::make_unique<TVDECmdExecList>(-1);
  SetClientSize(800, 600);
}

TVectorDrawingEditor::~TVectorDrawingEditor() {
  SaveSettings();
  EndHDC();
  FCoordTrans.DeleteChangedListener(this);
  FRootCmdState.reset();
  FVectorDrawing->OnUpdateDrawing = nullptr;
  FVectorDrawing->OnSelSetChanged = nullptr;
}

void TVectorDrawingEditor::LoadSettings() {
  const TSettingsCopy Copy(FIniFile);
  QSettings S(Copy.Path(), QSettings::IniFormat);
  S.beginGroup(SEditorSetting);
  FSnapSwitch = ReadBool(S, QStringLiteral("SnapSwitch"), true);
  FGridSwitch = ReadBool(S, QStringLiteral("GridSwitch"), true);
  FGridXSpace = ReadInt(S, QStringLiteral("GridXSpace"), 10);
  FGridYSpace = ReadInt(S, QStringLiteral("GridYSpace"), 10);
  S.endGroup();
  FOrthogonalSwitch = false;
  S.beginGroup(SAddItemProp);
  for (int P = 0; P <= ptVertAlignment; ++P) {
    const TVDEPropType T = TVDEPropType(P);
    if (T == ptText) continue;
    const QString Key = QLatin1String(VDEPropInfo(T).Name);
    if (!S.contains(Key)) continue;
    const QString V = S.value(Key).toString();
    QString Msg;
    // A damaged entry keeps the default rather than stopping the editor.
    if (FAddItemProp.Items(T).Validate(V, Msg)) FAddItemProp.Items(T).SetRaw(T == ptExtData ? V : V.trimmed());
  }
  S.endGroup();
}

void TVectorDrawingEditor::SaveSettings() const {
  const TSettingsCopy Copy(FIniFile);
  QSettings S(Copy.Path(), QSettings::IniFormat);
  S.beginGroup(SEditorSetting);
  S.setValue(QStringLiteral("SnapSwitch"), FSnapSwitch ? 1 : 0);
  S.setValue(QStringLiteral("GridSwitch"), FGridSwitch ? 1 : 0);
  S.setValue(QStringLiteral("GridXSpace"), FGridXSpace);
  S.setValue(QStringLiteral("GridYSpace"), FGridYSpace);
  S.endGroup();
  S.beginGroup(SAddItemProp);
  for (int P = 0; P <= ptVertAlignment; ++P) {
    const TVDEPropType T = TVDEPropType(P);
    if (T != ptText) S.setValue(QLatin1String(VDEPropInfo(T).Name), FAddItemProp.Items(T).Value());
  }
  S.endGroup();
  S.sync();
  Copy.WriteBack();
}

// ---- commands ---------------------------------------------------------------

void TVectorDrawingEditor::Execute(int ACommandID, qintptr AParam) {
  if (ACommandID == cmdRepeat) {
    Execute(FRepeatCmdInfo.CmdID, FRepeatCmdInfo.Param);
  } else if (const TVDECommandClass* C = FindVDECommand(ACommandID); C && ACommandID != cmdRefresh) {
    const TVDECmdInfo Info = C->CmdInfo();
    if (Info.CanRepeat) {
      FRepeatCmdInfo.CmdID = ACommandID;
      FRepeatCmdInfo.Param = AParam;
      FRepeatCmdInfo.Hint = QStringLiteral("重复%1").arg(Info.CmdName);
      FRepeatCmdInfo.Caption = QStringLiteral("%1(&H)").arg(FRepeatCmdInfo.Hint);
    }
    C->Execute(*this, AParam);
  }
  TVDECmdState* Deepest = FRootCmdState->Deepest();
  const int Before = FCurCmd;
  FCurCmd = Deepest->CmdInfo().CmdID;
  // Grips and the grid depend on the running command.
  if (FCurCmd != Before) Invalidate();
  TVDECmdState* Reported = Deepest;
  if ((FCurCmd == cmdMultiSelect || FCurCmd == cmdSingleSelect) && Deepest->PrevCmd()) Reported = Deepest->PrevCmd();
  const TVDECmdInfo Info = Reported->CmdInfo();
  FHelpContext = Info.HelpContext != 0 ? Info.HelpContext : 100;
  if (OnCommandChanged) OnCommandChanged(Info.CmdID);
}

void TVectorDrawingEditor::SetCmdState(std::unique_ptr<TVDECmdState> ACmd) {
  if (!ACmd) FRootCmdState->Cancel();
  else FRootCmdState->SetNextCmd(std::move(ACmd));
}

int TVectorDrawingEditor::GetCurCmd() const {
  if (FCurCmd == cmdMultiSelect || FCurCmd == cmdSingleSelect) {
    TVDECmdState* Deepest = FRootCmdState->Deepest();
    if (Deepest->PrevCmd()) return Deepest->PrevCmd()->CmdInfo().CmdID;
  }
  return FCurCmd;
}

QString TVectorDrawingEditor::GetPrompt() const {
  return FRootCmdState ? FRootCmdState->Deepest()->GetPrompt() : QString();
}

bool TVectorDrawingEditor::GetSnapEnabled() const { return FRootCmdState->Deepest()->CmdInfo().SnapEnabled; }

bool TVectorDrawingEditor::CanPaste() const {
  const QClipboard* C = QGuiApplication::clipboard();
  const QMimeData* M = C ? C->mimeData() : nullptr;
  return M && M->hasFormat(QString::fromLatin1(CF_VECTORDRAWINGCLIPBRD));
}

void TVectorDrawingEditor::SetDrawLineSegMode(bool AValue) {
  if (auto* S = dynamic_cast<IVDELineSegModeState*>(FRootCmdState->NextCmd())) S->SetDrawLineSeg(AValue);
}

void TVectorDrawingEditor::SetScale(double AValue) {
  FCoordTrans.SetCoordTransParam(FCoordTrans.DPoint(), FCoordTrans.WPoint(), AValue / 100.0);
  RefreshDrawing();
}

void TVectorDrawingEditor::SetRadius(double AValue) {
  if (AValue == FRadius) return;
  FRadius = AValue;
  FRootCmdState->RefreshElastic();
}

void TVectorDrawingEditor::SetGridSwitch(bool AValue) {
  FGridSwitch = AValue;
  Invalidate();
}

void TVectorDrawingEditor::SetGridXSpace(int AValue) {
  FGridXSpace = AValue;
  Invalidate();
}

void TVectorDrawingEditor::SetGridYSpace(int AValue) {
  FGridYSpace = AValue;
  Invalidate();
}

void TVectorDrawingEditor::SetCursor(int ACursor) {
  FCursor = ACursor;
  if (OnCursorChanged) OnCursorChanged(ACursor);
}

bool TVectorDrawingEditor::SearchHatchPoly(const TKRNVector2d& APoint, std::unique_ptr<TKRNPolygon2d>& APoly) {
  return VDESearchHatchPoly(*FVectorDrawing, APoint, APoly);
}

bool TVectorDrawingEditor::SnapPoint(TKRNVector2d& APoint, double ATol) {
  TVectorDrawing& D = *FVectorDrawing;
  TVDISnapVertexVisitor V(APoint, ATol);
  bool Found = false;
  TKRNVector2d Best{};
  double BestDist = 0;
  // Only items whose boxes come within the tolerance can offer a vertex; the drawing's
  // index gives them in list order, as a walk of every item would.
  const TKRNBox2d Near{{APoint.X - ATol, APoint.Y - ATol}, {APoint.X + ATol, APoint.Y + ATol}};
  for (TVectorDrawingItem* Item : D.ItemsInBox(Near)) {
    Item->Inspect(V);
    if (!V.SnapSuccess()) continue;
    const double Dist = std::hypot(V.SnapPt().X - APoint.X, V.SnapPt().Y - APoint.Y);
    if (!Found || Dist < BestDist) {
      Found = true;
      Best = V.SnapPt();
      BestDist = Dist;
    }
  }
  if (Found) {
    APoint = Best;
  } else if (FSnapSwitch && FGridXSpace != 0 && FGridYSpace != 0) {
    APoint.X = std::round(APoint.X / FGridXSpace) * FGridXSpace;
    APoint.Y = std::round(APoint.Y / FGridYSpace) * FGridYSpace;
  }
  return true;
}

void TVectorDrawingEditor::ScrollWindow(int ADeltaX, int ADeltaY) {
  FCoordTrans.Pan(ADeltaX, ADeltaY);
  RefreshDrawing();
}

// ---- model events -----------------------------------------------------------

void TVectorDrawingEditor::SelSetChanged() {
  std::vector<TVectorDrawingItem*> Items;
  TVectorDrawingSelSet& S = FVectorDrawing->SelSet();
  for (int I = 0; I < S.Count(); ++I) Items.push_back(S.Items(I));
  FModifyItemProp.LoadFromItems(Items);
  Invalidate();
  if (OnSelSetChanged) OnSelSetChanged();
}

void TVectorDrawingEditor::AddItemPropChanged(TVDEPropType APropType, const QString&) {
  if (APropType != ptExtData && APropType != ptFillStyle && APropType != ptTransparent && APropType != ptTextBackColor)
    FRootCmdState->RefreshElastic();
}

void TVectorDrawingEditor::ModifyItemPropChanged(TVDEPropType APropType, const QString& AValue) {
  TSetVDIPropParam P{APropType, AValue};
  Execute(cmdSetProp, reinterpret_cast<qintptr>(&P));
  if (OnModifyItemPropValChanged) OnModifyItemPropValChanged(APropType, AValue);
}

// ---- input ------------------------------------------------------------------

void TVectorDrawingEditor::KeyDown(quint16 AKey, TShiftState AShift) {
  const int Mods = AShift & (sfShift | sfAlt | sfCtrl);
  if (Mods == 0 && AKey == vkDelete && FCurCmd == cmdSelect) {
    Execute(cmdDelete, 0);
    return;
  }
  if (Mods == sfCtrl) {
    auto Run = [this](int A, int B = -1) {
      Execute(A, 0);
      if (B >= 0) Execute(B, 0);
    };
    switch (AKey) {
      case vkMultiply: Run(cmdZoomIn); return;
      case vkDivide: Run(cmdZoomOut); return;
      case vkNumpad0 + 8: Run(cmdPanUp); return;
      case vkNumpad0 + 2: Run(cmdPanDown); return;
      case vkNumpad0 + 4: Run(cmdPanLeft); return;
      case vkNumpad0 + 6: Run(cmdPanRight); return;
      case vkNumpad0 + 7: Run(cmdPanLeft, cmdPanUp); return;
      case vkNumpad0 + 9: Run(cmdPanRight, cmdPanUp); return;
      case vkNumpad0 + 1: Run(cmdPanLeft, cmdPanDown); return;
      case vkNumpad0 + 3: Run(cmdPanRight, cmdPanDown); return;
      case vkNumpad0 + 5: Run(cmdZoomAll); return;
      default: break;
    }
  }
  quint16 Key = AKey;
  FRootCmdState->KeyDown(Key, AShift);
}

void TVectorDrawingEditor::MouseDown(TMouseButton AButton, TShiftState AShift, const TKRNPoint2i& APoint) {
  if (AButton == mbRight && !FRootCmdState->NextCmd() && FRootCmdState->Step() == 0) {
    if (OnContextMenu) OnContextMenu(APoint);
    return;
  }
  if (AButton == mbMiddle) {
    if (AShift & sfDouble) {
      Execute(cmdZoomAll, 0);
      return;
    }
    Execute(cmdPanRuntime, 0);
  }
  TKRNVector2d P = FCoordTrans.DCTOWC(APoint);
  FRootCmdState->MouseDown(AButton, AShift, P);
}

void TVectorDrawingEditor::MouseMove(TShiftState AShift, const TKRNPoint2i& APoint) {
  TKRNVector2d P = FCoordTrans.DCTOWC(APoint);
  FRootCmdState->MouseMove(AShift, P);
  if (!OnShowMousePos) return;
  const int Deepest = FRootCmdState->Deepest()->CmdInfo().CmdID;
  if (Deepest != cmdZoomRuntime && Deepest != cmdPanRuntime)
    OnShowMousePos(QStringLiteral(" X=%1 Y=%2").arg(std::lround(P.X)).arg(std::lround(P.Y)));
}

void TVectorDrawingEditor::MouseUp(TMouseButton AButton, TShiftState AShift, const TKRNPoint2i& APoint) {
  FRootCmdState->MouseUp(AButton, AShift, FCoordTrans.DCTOWC(APoint));
}

void TVectorDrawingEditor::MouseWheel(bool AUp, const TKRNPoint2i& APoint) {
  const TKRNVector2d W = FCoordTrans.DCTOWC(APoint);
  FCoordTrans.SetCoordTransParam(APoint, W);
  FCoordTrans.SetScale(AUp ? 1.2 : 0.8);
  Invalidate();
}

// ---- painting ---------------------------------------------------------------

void TVectorDrawingEditor::SetClientSize(int AWidth, int AHeight) {
  AWidth = std::max(1, AWidth);
  AHeight = std::max(1, AHeight);
  if (AWidth == FClientWidth && AHeight == FClientHeight) return;
  EndHDC();
  FClientWidth = AWidth;
  FClientHeight = AHeight;
  FImage = QImage(AWidth, AHeight, QImage::Format_RGB32);
  FImage.fill(Qt::black);
  Invalidate();
}

void TVectorDrawingEditor::Invalidate() {
  FNeedsRender = true;
  if (OnInvalidate) OnInvalidate();
}

QPainter& TVectorDrawingEditor::GetHDC() {
  if (!FPainter) FPainter.emplace(&FImage);
  return *FPainter;
}

void TVectorDrawingEditor::EndHDC() {
  if (FPainter) {
    FPainter->end();
    FPainter.reset();
  }
}

void TVectorDrawingEditor::DrawGrip(const TKRNVector2d& APt, bool AHot, QPainter* AHDC) {
  QPainter& P = AHDC ? *AHDC : GetHDC();
  const TKRNPoint2i C = FCoordTrans.WCTODC(APt);
  const QColor Color = AHot ? QColor(255, 0, 0) : QColor(255, 255, 0);
  P.save();
  P.setCompositionMode(QPainter::CompositionMode_SourceOver);
  P.setRenderHint(QPainter::Antialiasing, false);
  P.fillRect(QRect(C.X - 4, C.Y - 4, 8, 8), Color);
  P.restore();
}

void TVectorDrawingEditor::DrawGrid(QPainter& AHDC, const TKRNRect& AClient) {
  if (!FGridSwitch || FGridXSpace == 0 || FGridYSpace == 0 || FCurCmd == cmdPanRuntime) return;
  TKRNBox2d R;
  if (!FVectorDrawing->CalcDrawingRange(FCoordTrans, AClient, R)) return;
  if (FCoordTrans.WCTODC(double(std::abs(FGridXSpace))) < 6 || FCoordTrans.WCTODC(double(std::abs(FGridYSpace))) < 6)
    return;
  const long long SX = std::abs(FGridXSpace), SY = std::abs(FGridYSpace);
  const long long X0 = std::llround(R.MinX()) / SX * SX, X1 = std::llround(R.MaxX());
  const long long Y0 = std::llround(R.MinY()) / SY * SY, Y1 = std::llround(R.MaxY());
  for (long long X = X0; X <= X1; X += SX)
    for (long long Y = Y0; Y <= Y1; Y += SY)
      TKRNDrawFunc2d::DrawPixel(AHDC, FCoordTrans, {double(X), double(Y)}, 0xFFFFFF, dmXOR);
}

void TVectorDrawingEditor::Render(QImage& ATarget) {
  const TKRNRect Client{0, 0, FClientWidth, FClientHeight};
  ATarget.fill(Qt::black);
  QPainter P(&ATarget);
  P.setRenderHint(QPainter::Antialiasing, false);
  FVectorDrawing->Draw(P, FCoordTrans, Client);
  if (dynamic_cast<TVDEBaseSelectState*>(FRootCmdState->Deepest())) {
    const TKRNBox2d World = FCoordTrans.DCTOWC(Client);
    TVectorDrawingSelSet& S = FVectorDrawing->SelSet();
    for (int I = 0; I < S.Count(); ++I)
      for (int G = 0; G < S.Items(I)->GetGripCount(); ++G) {
        const TKRNVector2d Grip = S.Items(I)->GetGrips(G);
        if (TKRNPositionFunc2d::PointPosition(Grip, World, KRNEpsilon) != ppOut) DrawGrip(Grip, false, &P);
      }
  }
  DrawGrid(P, Client);
}

const QImage& TVectorDrawingEditor::Image() {
  if (FNeedsRender) {
    EndHDC();
    FNeedsRender = false;
    Render(FImage);
    FRootCmdState->DrawElastic(&GetHDC());
  }
  EndHDC();
  return FImage;
}
