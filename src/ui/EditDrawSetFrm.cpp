#include "EditDrawSetFrm.h"

#include "CADImport.h"
#include "ChooseBZTJ.h"
#include "DrawSetBarsFram.h"
#include "MZTChooseBarPicFrm.h"
#include "ScriptEdit.h"
#include "DSSpecCmdState.h"
#include "DrawSetEditor.h"
#include "Dialogs.h"
#include "DrawSetConsts.h"
#include "MZTDataSvr.h"
#include "SysUtils.h"
#include "VDECommand.h"
#include "VDEPropGrid.h"
#include "VDEditorWidget.h"
#include "VectorDrawing.h"
#include "VectorDrawingEditor.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDockWidget>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QProgressDialog>
#include <QFileInfo>
#include <QResizeEvent>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>

namespace {

QString Yes(bool A) { return A ? QStringLiteral("开") : QStringLiteral("关"); }

}  // namespace

std::function<void(TEditDrawSetForm&)>& TEditDrawSetForm::OnShown() {
  static std::function<void(TEditDrawSetForm&)> Hook;
  return Hook;
}

TEditDrawSetForm::TEditDrawSetForm(QWidget* AOwner, int, IMZTBarInfoDataSvr* ASysDataSvr,
                                   IDrawingsDataSvr* ADrawingsDataSvr, const QString& ASettingsFile)
    : QMainWindow(AOwner),
      FSysDataSvr(ASysDataSvr),
      FDrawingsDataSvr(ADrawingsDataSvr),
      FSession(std::make_unique<TDrawSetSession>(*ADrawingsDataSvr)) {
  setWindowTitle(QStringLiteral("图集编辑器"));
  setObjectName(QStringLiteral("EditDrawSetForm"));
  setFont(QFont(QStringLiteral("宋体"), 9));
  resize(792, 536);

  RegisterEditorCommands();
  RegisterDrawSetCommands();
  auto DSEditor = std::make_unique<TDrawSetEditor>(ASettingsFile);
  FDSEditor = DSEditor.get();
  FDSEditor->SetSession(FSession.get());
  FDSEditor->OnBarsChanged = [this] {
    if (FBarsFrame) FBarsFrame->Refresh();
    UpdateActions();
  };
  FEditorWidget = new TVDEditorWidget(this, std::move(DSEditor));
  FEditorWidget->setObjectName(QStringLiteral("FEditor"));
  FEditorWidget->installEventFilter(this);
  // The bars panel sits below the drawing, hidden until acShowBars.
  auto* Centre = new QSplitter(Qt::Vertical, this);
  Centre->setObjectName(QStringLiteral("splDrawSetBars"));
  Centre->addWidget(FEditorWidget);
  FBarsFrame = new TDrawSetBarsFrame(Centre, FSysDataSvr, FDSEditor->GetVectorDrawing());
  Centre->addWidget(FBarsFrame);
  Centre->setStretchFactor(0, 1);
  Centre->setSizes({536, 200});
  FBarsFrame->hide();
  setCentralWidget(Centre);
  FSession->OnDrawSetReplaced = [this](TDrawSet* ANew) { FBarsFrame->SetDrawSet(ANew); };
  FDSEditor->OnSaveBars = [this] { return FBarsFrame->Save(); };
  FDSEditor->OnParamKeyChanged = [this](const QString& AOld, const QString& ANew) {
    TSynSampleSyn& Syn = FBarsFrame->Script().Highlighter().Syn();
    if (!AOld.isEmpty()) Syn.DeleteKey(AOld);
    if (!ANew.isEmpty()) Syn.AddKey(ANew);
    FBarsFrame->Script().Highlighter().rehighlight();
  };
  TVectorDrawingEditor& E = Editor();
  E.OnCommandChanged = [this](int ACmdID) { OnCommandChanged(ACmdID); };
  E.OnSelSetChanged = [this] { OnSelSetChanged(); };
  E.OnShowMousePos = [this](const QString& AText) { FPanels[0]->setText(AText); };
  // A bar's notation may be the text just changed.
  E.OnModifyItemPropValChanged = [this](TVDEPropType AType, const QString&) {
    if (AType == ptText) FBarsFrame->Refresh();
  };
  FEditorWidget->OnError = [this](std::exception_ptr AError) { Guard([&] { std::rethrow_exception(AError); }); };
  connect(FEditorWidget, &TVDEditorWidget::ContextMenuRequested, this, [this](const QPoint& P) { ShowPopup(P); });

  FPropDock = new QDockWidget(QStringLiteral("图元属性"), this);
  FPropDock->setObjectName(QStringLiteral("dpDrawingItemProp"));
  FPropGrid = new TVDEPropGrid(FPropDock);
  FPropGrid->setObjectName(QStringLiteral("FPropGrid"));
  FPropDock->setWidget(FPropGrid);
  FPropDock->setMinimumWidth(230);
  addDockWidget(Qt::RightDockWidgetArea, FPropDock);
  FPropGrid->SetPropList(&E.GetAddItemProp());
  FPropGrid->Delegate().OnPropValValidate = [this](TVDEPropType AType, const QString& AValue, QString& AErrMsg) {
    if (AType != ptText) return true;
    return ValidatePropText(AValue, FCurDSType, Editor().GetVectorDrawing(), FSession->DrawSet(), AErrMsg);
  };

  // Toolbars first: the view menu lists their switches.
  CreateActions();
  CreateToolBars();
  CreateMenus();
  CreateStatusBar();

  for (int I = 0; I < 3; ++I) {
    FAddItemProps[size_t(I)] = std::make_unique<TVDEPropList>();
    FAddItemProps[size_t(I)]->CopyProps(E.GetAddItemProp());
  }
  const struct {
    TDSType Mode;
    const char* Color;
    const char* Width;
    const char* Mark;
  } Defaults[] = {{dsNormal, "16777215", "1", "箭头"}, {dsBar, "65535", "2", "弯钩"}, {dsParam, "65280", nullptr, nullptr}};
  for (const auto& D : Defaults) {
    TVDEPropList& L = *FAddItemProps[D.Mode];
    L.Items(ptColor).SetRaw(QString::fromLatin1(D.Color));
    if (D.Width) L.Items(ptLineWidth).SetRaw(QString::fromLatin1(D.Width));
    if (D.Mark) {
      L.Items(ptStartMarkStyle).SetRaw(QString::fromUtf8(D.Mark));
      L.Items(ptEndMarkStyle).SetRaw(QString::fromUtf8(D.Mark));
    }
  }
  // Selecting the plain mode keeps the editor's own list (from its settings file) as
  // the plain mode's: the mode being "left" is the plain one.
  FCurDSType = dsNormal;
  SetCurDSType(dsNormal);

  FSession->FetchDrawSets();

  UpdateActions();
  auto* Idle = new QTimer(this);
  connect(Idle, &QTimer::timeout, this, [this] { Guard([&] { UpdateActions(); }); });
  Idle->start(200);
}

TEditDrawSetForm::~TEditDrawSetForm() {
  TVectorDrawingEditor& E = Editor();
  E.OnCommandChanged = nullptr;
  E.OnSelSetChanged = nullptr;
  E.OnShowMousePos = nullptr;
  E.OnModifyItemPropValChanged = nullptr;
  FDSEditor->SetSession(nullptr);
  FDSEditor->OnBarsChanged = nullptr;
  FDSEditor->OnSaveBars = nullptr;
  FDSEditor->OnParamKeyChanged = nullptr;
  FSession->OnDrawSetReplaced = nullptr;
  FPropGrid->SetPropList(nullptr);
  for (auto& L : FAddItemProps) L.reset();
}

TVectorDrawingEditor& TEditDrawSetForm::Editor() { return FEditorWidget->Editor(); }

void TEditDrawSetForm::Guard(const std::function<void()>& AWork) {
  try {
    AWork();
  } catch (...) {
    if (OnError) {
      OnError(std::current_exception());
      return;
    }
    // The run ends; ExecDSEditor reports the failure after the tear-down.
    if (!FFatalError) FFatalError = std::current_exception();
    Abort();
  }
}

// ---- opening -----------------------------------------------------------------

void TEditDrawSetForm::LoadDrawSet(int ADrawSetID) {
  TVectorDrawingEditor& E = Editor();
  FSession->LoadDrawSet(ADrawSetID, E.GetVectorDrawing());
  // The undo records of another draw set's items must not replay on this one.
  E.Execute(cmdUndoReset, 0);
  E.RefreshDrawing();
  FBarsFrame->Initialize();
  UpdateEditActions();
}

void TEditDrawSetForm::ResetView() {
  TVectorDrawingEditor& E = Editor();
  TVectorDrawing& D = E.GetVectorDrawing();
  TKRNVector2d Origin{0, 0};
  if (D.Count() > 0) {
    const TKRNBox2d R = D.ItemsRange();
    Origin = R.StartPt;
  }
  E.GetCoordTrans().SetCoordTransParam({10, E.GetClientHeight() - 10}, Origin, 1.0);
  E.SetScale(100);
  const TKRNCoordTrans& T = E.GetCoordTrans();
  FResetView = {double(T.DPoint().X), double(T.DPoint().Y), T.WPoint().X, T.WPoint().Y, T.ZoomFactor()};
}

bool TEditDrawSetForm::ViewIsReset() {
  const TKRNCoordTrans& T = Editor().GetCoordTrans();
  return FResetView == std::array<double, 5>{double(T.DPoint().X), double(T.DPoint().Y), T.WPoint().X, T.WPoint().Y,
                                              T.ZoomFactor()};
}

// ---- modes -------------------------------------------------------------------

void TEditDrawSetForm::SetCurDSType(TDSType AValue) {
  TVectorDrawingEditor& E = Editor();
  E.Execute(cmdSelect, 0);
  E.GetVectorDrawing().SelSet().Clear();
  FAddItemProps[FCurDSType]->CopyProps(E.GetAddItemProp());
  E.Execute(cmdSelect, 0);
  FCurDSType = AValue;
  FDSEditor->SetCurDSType(AValue);
  FModeButtons[AValue]->setChecked(true);
  E.GetAddItemProp().CopyProps(*FAddItemProps[AValue]);
  FPropGrid->InitGrid();
  UpdateEditActions();
}

// ---- updates -----------------------------------------------------------------

void TEditDrawSetForm::UpdateEditActions() {
  TVectorDrawingEditor& E = Editor();
  TVectorDrawing& D = E.GetVectorDrawing();
  TEditActionsState S;
  S.Mode = FCurDSType;
  S.HasItems = D.Count() > 0;
  S.HasSelection = D.SelSet().Count() > 0;
  S.CurveCount = CountCurves(D);
  S.CanPaste = E.CanPaste();
  S.CanUndo = E.CanUndo();
  S.CanRedo = E.CanRedo();
  S.SnapEnabled = E.GetSnapEnabled();
  const QHash<QString, bool> Enabled = EditActionsEnabled(S);
  for (auto It = Enabled.begin(); It != Enabled.end(); ++It) {
    if (It.key() == QLatin1String("cbRadius")) {
      FRadiusCombo->setEnabled(It.value());
      continue;
    }
    if (QAction* A = Action(It.key())) SetActionEnabled(A, It.value() && FAvailable.value(It.key()));
  }
  QAction* ArcHead = Action(QStringLiteral("acDrawArc"));
  SetActionEnabled(ArcHead, IsActionEnabled(Action(QStringLiteral("acDrawCSArc"))));
}

void TEditDrawSetForm::UpdateActions() {
  TVectorDrawingEditor& E = Editor();
  TVectorDrawing& D = E.GetVectorDrawing();
  if (!FZoomCombo->lineEdit()->hasFocus()) {
    FZoomText = QStringLiteral("%1%").arg(qRound(E.GetScale()));
    FZoomCombo->setCurrentText(FZoomText);
  }
  FPanels[1]->setText(QStringLiteral("捕捉: ") + Yes(E.GetSnapSwitch()));
  FPanels[2]->setText(QStringLiteral("网格: ") + Yes(E.GetGridSwitch()));
  FPanels[3]->setText(QStringLiteral("网格间距: %1*%2").arg(E.GetGridXSpace()).arg(E.GetGridYSpace()));
  const int Sel = D.SelSet().Count();
  FPanels[4]->setText(Sel > 0 ? QString::number(Sel) : QString());
  const QString Prompt = E.GetPrompt();
  FPanels[5]->setToolTip(Prompt);
  FPanels[5]->setText(FPanels[5]->fontMetrics().elidedText(Prompt, Qt::ElideRight, std::max(40, FPanels[5]->width() - 6)));
  FPanels[5]->setProperty("fullText", Prompt);

  SetActionEnabled(Action(QStringLiteral("acSave")), FSession->HasChanges(D) || FBarsFrame->IsModified());
  Action(QStringLiteral("acSnapSwitch"))->setChecked(E.GetSnapSwitch());
  TDrawSet* DS = FSession->DrawSet();
  const bool HasBars = DS && DS->Bars().Count() > 0;
  SetActionEnabled(Action(QStringLiteral("acInitialize")), D.Count() > 0 || HasBars);
  const bool Add = Action(QStringLiteral("acShowBars"))->isChecked() && FAvailable.value(QStringLiteral("acAddBar"));
  SetActionEnabled(Action(QStringLiteral("acAddBar")), Add);
  SetActionEnabled(Action(QStringLiteral("acDeleteBar")), Add && HasBars);
  SetActionEnabled(Action(QStringLiteral("acDebug")), Add && HasBars);
}

QStringList TEditDrawSetForm::StatusTexts() const {
  QStringList L;
  for (int I = 0; I < 6; ++I) {
    const QVariant Full = FPanels[size_t(I)]->property("fullText");
    L << (I == 5 && Full.isValid() ? Full.toString() : FPanels[size_t(I)]->text());
  }
  return L;
}

void TEditDrawSetForm::OnCommandChanged(int ACmdID) {
  const int Cmd = (ACmdID == cmdMultiSelect || ACmdID == cmdSingleSelect) ? cmdSelect : ACmdID;
  for (auto It = FCommandOf.begin(); It != FCommandOf.end(); ++It)
    if (It.value() == Cmd && It.key()->isCheckable() && It.key() != Action(QStringLiteral("acSnapSwitch")))
      It.key()->setChecked(true);
  bool Arc = false;
  for (const char* N : {"acDrawACSArc", "acDrawCSArc", "acDrawACLArc", "acDrawCLArc", "acDraw3PArc"})
    Arc = Arc || Action(QString::fromLatin1(N))->isChecked();
  Action(QStringLiteral("acDrawArc"))->setChecked(Arc);
  UpdateEditActions();
  Editor().RefreshDrawing();
}

void TEditDrawSetForm::OnSelSetChanged() {
  FPropGrid->HideEditor();
  TVectorDrawingEditor& E = Editor();
  TVDEPropList* L = E.GetVectorDrawing().SelSet().Count() == 0 ? &E.GetAddItemProp() : &E.GetModifyItemProp();
  if (FPropGrid->PropList() == L)
    FPropGrid->InitGrid();
  else
    FPropGrid->SetPropList(L);
  UpdateEditActions();
}

// ---- actions -------------------------------------------------------------------

// Qt disables a hidden action; the form keeps the enable rule's answer beside it, so
// that the shortcuts and popups of hidden actions follow the rule.
bool TEditDrawSetForm::IsActionEnabled(const QAction* AAction) const {
  return AAction && AAction->property("dseEnabled").toBool();
}

void TEditDrawSetForm::SetActionEnabled(QAction* AAction, bool AValue) {
  AAction->setProperty("dseEnabled", AValue);
  AAction->setEnabled(AValue);
}

bool TEditDrawSetForm::TriggerAction(const QString& AName) {
  QAction* A = Action(AName);
  if (!IsActionEnabled(A)) return false;
  if (A->isVisible())
    A->trigger();
  else
    RunAction(AName);
  return true;
}

void TEditDrawSetForm::RunAction(const QString& AName) {
  Guard([&] {
    QAction* A = Action(AName);
    TVectorDrawingEditor& E = Editor();
    if (FCommandOf.contains(A)) {
      if (AName == QLatin1String("acEditParam") && !FBarsFrame->Save()) return;
      const int Cmd = FCommandOf.value(A);
      bool ModeParam = false;
      for (const char* N : {"acDrawLine", "acDrawACSArc", "acDrawCSArc", "acDrawACLArc", "acDrawCLArc", "acDraw3PArc",
                            "acDrawRect", "acDrawPolygon"})
        ModeParam = ModeParam || AName == QLatin1String(N);
      E.Execute(Cmd, ModeParam && FCurDSType == dsBar ? 1 : 0);
      // A refused state command leaves the marks as the editor has them.
      OnCommandChanged(E.GetCurCmd());
      return;
    }
    if (AName == QLatin1String("acSave")) DoSave();
    else if (AName == QLatin1String("acShowBars")) {
      FBarsFrame->setVisible(A->isChecked());
      UpdateEditActions();
    } else if (AName == QLatin1String("acAddBar")) DoAddBar();
    else if (AName == QLatin1String("acDeleteBar")) DoDeleteBar();
    else if (AName == QLatin1String("acDebug")) FBarsFrame->Debug();
    else if (AName == QLatin1String("acExit")) close();
    else if (AName == QLatin1String("acSelDrawSet")) DoSelDrawSet();
    else if (AName == QLatin1String("acInitialize")) DoInitialize();
    else if (AName == QLatin1String("acFindParam")) DoFindParam();
    else if (AName == QLatin1String("acSaveToFile")) DoSaveToFile();
    else if (AName == QLatin1String("acImport")) DoImport();
    UpdateActions();
  });
}

void TEditDrawSetForm::DoSave() {
  FBarsFrame->Save();
  FSession->Save(Editor());
  UpdateEditActions();
}

bool TEditDrawSetForm::CheckSaveChanges() {
  if (!FPropGrid->CloseEditor() || !FBarsFrame->CloseEditor()) return false;
  UpdateActions();
  if (!IsActionEnabled(Action(QStringLiteral("acSave")))) return true;
  const int R = ShowConfirmBox(QStringLiteral("图集已修改，是否保存？"), mbYesNoCancel);
  if (R == mrCancel) return false;
  if (R == mrYes) DoSave();
  return true;
}

void TEditDrawSetForm::DoSelDrawSet() {
  if (!CheckSaveChanges()) return;
  int ID = -1;
  QString Name;
  QByteArray Stream;
  if (TChooseBZTJForm::Execute(*FDrawingsDataSvr, ID, Name, Stream, this) != mrOk) return;
  Editor().Execute(cmdSelect, 0);
  LoadDrawSet(ID);
  ResetView();
}

void TEditDrawSetForm::DoInitialize() {
  if (ShowConfirmBox(QStringLiteral("是否清除全部内容？"), mbYesNo) != mrYes) return;
  FBarsFrame->CancelEditor();
  if (TDrawSet* DS = FSession->DrawSet()) {
    DS->Bars().Clear(true);
    DS->Params().Clear(true);
  }
  Editor().GetVectorDrawing().Clear();
  Editor().RefreshDrawing();
  FBarsFrame->Refresh();
  UpdateEditActions();
}

void TEditDrawSetForm::DoAddBar() {
  TDrawSet* DS = FSession->DrawSet();
  if (!DS || !FSysDataSvr) return;
  int Pic = -1;
  if (TMZTChooseBarPicForm::Execute(Pic, *FSysDataSvr, false, true, false, this) != mrOk) return;
  DS->Bars().Add(DS->ID(), DS->Bars().GetMaxBarID(DS->ID()) + 1, Pic, QStringLiteral("新钢筋"), QString(), -1, QString(),
                 QString(), true);
  FBarsFrame->Refresh();
}

void TEditDrawSetForm::DoDeleteBar() {
  FBarsFrame->CancelEditor();
  const int BarID = FBarsFrame->CurrentBarID();
  if (BarID < 0) {
    ShowErrorBox(QStringLiteral("请先选择要删除的钢筋"));
    return;
  }
  if (ShowConfirmBox(QStringLiteral("是否删除当前选中的钢筋？"), mbYesNo) != mrYes) return;
  TDrawSet* DS = FSession->DrawSet();
  TDrawSetBar* Bar = nullptr;
  for (int I = 0; I < DS->Bars().Count() && !Bar; ++I)
    if (DS->Bars().GetItems(I)->BarID() == BarID) Bar = DS->Bars().GetItems(I);
  if (!Bar) return;
  const QVector<int> Items = Bar->VDIDs();
  if (Items.isEmpty()) {
    DS->Bars().DeleteByID(DS->ID(), BarID, true);
  } else {
    // The last item's deletion takes the bar along.
    TVectorDrawing& D = Editor().GetVectorDrawing();
    for (const int ID : Items)
      if (const int I = D.IndexOfID(ID); I >= 0) D.Delete(I);
  }
  FBarsFrame->Refresh();
  Editor().RefreshDrawing();
}

void TEditDrawSetForm::DoFindParam() {
  QString Code;
  for (;;) {
    if (!OVRAInputBox(QStringLiteral("输入框"), QStringLiteral("请输入查询变量名称"), Code)) return;
    if (!Trim(Code).isEmpty()) break;
    ShowErrorBox(QStringLiteral("查询变量名不能为空"));
  }
  if (!FSession->FindParam(Code, Editor().GetVectorDrawing()))
    ShowErrorBox(QStringLiteral("没有找到变量，请确认变量的正确性"));
  Editor().RefreshDrawing();
}

void TEditDrawSetForm::DoSaveToFile() {
  QString File;
  int Filter = 1;
  if (!Dialogs().SaveFileDialog(QStringLiteral("保存矢量图文件"),
                                QStringLiteral("矢量图文件(xml)(*.LVD)|*.LVD|矢量图文件(bin)(*.LVD)|*.LVD|所有文件(*.*)|*.*"),
                                File, &Filter))
    return;
  QApplication::setOverrideCursor(Qt::WaitCursor);
  struct TRestore {
    ~TRestore() { QApplication::restoreOverrideCursor(); }
  } Restore;
  Editor().GetVectorDrawing().SaveToFile(File, Filter == 2 ? sfBin : sfXML, false);
}

void TEditDrawSetForm::DoImport() {
  QString File;
  if (!Dialogs().OpenFileDialog(QStringLiteral("打开矢量图文件"),
                                QStringLiteral("AutoCAD文件(*.DXF)|*.DXF|矢量图文件(*.LVD)|*.LVD|所有文件(*.*)|*.*"), File))
    return;
  TVectorDrawing& D = Editor().GetVectorDrawing();
  if (D.Count() > 0 &&
      ShowConfirmBox(QStringLiteral("导入DWG文件会清除已经存在图元，是否继续？"), mbYesNo) != mrYes)
    return;
  FBarsFrame->CancelEditor();
  SetCurDSType(dsNormal);
  QStringList Warnings;
  // a file that cannot be read is said in an error box and the drawing stays as it was
  try {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    struct TRestore {
      ~TRestore() { QApplication::restoreOverrideCursor(); }
    } Restore;
    if (!QFileInfo::exists(File)) return;
    Editor().Execute(cmdUndoReset, 0);
    if (IsCADFileName(File)) {
      // a large file shows its progress; the read and the walk each take half the bar
      std::unique_ptr<QProgressDialog> Bar;
      TDxfOptions Options;
      Options.RegionCode = RegionCode;
      if (QFileInfo(File).size() > 1024 * 1024) {
        Bar = std::make_unique<QProgressDialog>(QStringLiteral("正在导入 %1").arg(QFileInfo(File).fileName()), QString(),
                                                0, 100, this);
        Bar->setWindowModality(Qt::WindowModal);
        Bar->setMinimumDuration(0);
        Bar->setValue(0);
        Options.Progress = [&Bar, this](double APos) {
          Bar->setValue(int(APos));
          ++FImportProgressSteps;
          QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        };
      }
      Warnings = ImportCADFile(File, D, 0, Options).Warnings;
    } else {
      D.LoadFromFile(File);
    }
    Editor().Execute(cmdZoomAll, 0);
  } catch (const Exception& E) {
    ShowErrorBox(E.Message());
    Editor().RefreshDrawing();
    UpdateEditActions();
    return;
  }
  if (TDrawSet* DS = FSession->DrawSet()) DS->Clear(true);
  FBarsFrame->Refresh();
  Editor().RefreshDrawing();
  UpdateEditActions();
  if (!Warnings.isEmpty())
    ShowHintBox(QStringLiteral("导入完成，以下内容没有导入：\n") + Warnings.join(u'\n'));
}

// ---- combo boxes -----------------------------------------------------------------

void TEditDrawSetForm::ZoomAccepted() {
  QString T = FZoomCombo->currentText();
  int Zoom;
  if (!AcceptZoomText(T, Zoom)) {
    FZoomCombo->setCurrentText(FZoomText);
    return;
  }
  FZoomText = T;
  FZoomCombo->setCurrentText(T);
  Editor().SetScale(Zoom);
}

void TEditDrawSetForm::RadiusAccepted() {
  QString T = FRadiusCombo->currentText();
  double R;
  if (!AcceptRadiusText(T, R)) {
    FRadiusCombo->setCurrentText(FRadiusText);
    return;
  }
  FRadiusText = T;
  FRadiusCombo->setCurrentText(T);
  Editor().SetRadius(R);
}

// ---- popup menu -------------------------------------------------------------------

void TEditDrawSetForm::ShowPopup(const QPoint& AGlobalPos) {
  Guard([&] {
    UpdateEditActions();
    const bool Sel = Editor().GetVectorDrawing().SelSet().Count() > 0;
    QMenu* M = Sel ? FModifyMenu : FCommonMenu;
    M->clear();
    const char* Items = Sel ? "acRepeatCmd - acCut acCopy acPaste acDelete - acErase acMove acDuplicate acMirror "
                              "acRotate acStretch - acCancelSel"
                            : "acRepeatCmd - acPaste acSelectAll - acZoomAll acZoomWin acPanRunTime - acUndo acRedo";
    const TVDERepeatCmdInfo& Repeat = Editor().RepeatCmdInfo();
    for (const QString& N : QString::fromLatin1(Items).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
      if (N == QLatin1String("-")) {
        if (!M->actions().isEmpty() && !M->actions().last()->isSeparator()) M->addSeparator();
        continue;
      }
      QAction* A = Action(N);
      QString Caption = A->text(), Hint = A->toolTip();
      bool Enabled = IsActionEnabled(A);
      if (N == QLatin1String("acRepeatCmd")) {
        Enabled = Repeat.CmdID != -1;
        Caption = Repeat.Caption;
        Hint = Repeat.Hint;
      }
      if (!Enabled) continue;
      QAction* Entry = M->addAction(A->icon(), Caption);
      Entry->setObjectName(N);
      Entry->setToolTip(Hint);
      connect(Entry, &QAction::triggered, A, &QAction::trigger);
    }
    if (!M->actions().isEmpty() && M->actions().last()->isSeparator()) M->removeAction(M->actions().last());
    FActivePopup = M;
    M->popup(AGlobalPos);
  });
}

// ---- window ------------------------------------------------------------------------

bool TEditDrawSetForm::eventFilter(QObject* AObject, QEvent* AEvent) {
  // Until the user moves the view, the reset view follows the control's size: the
  // window gets its final size only once it shows.
  if (AObject == FEditorWidget && AEvent->type() == QEvent::Resize) {
    const bool Reset = ViewIsReset();
    const bool R = QMainWindow::eventFilter(AObject, AEvent);
    if (Reset) {
      auto* E = static_cast<QResizeEvent*>(AEvent);
      Editor().SetClientSize(E->size().width(), E->size().height());
      ResetView();
    }
    return R;
  }
  if (AEvent->type() == QEvent::MouseButtonPress) {
    if (AObject == FPanels[1]) Guard([&] { Editor().Execute(cmdSnapSwitch, 0); });
    else if (AObject == FPanels[2]) Guard([&] { Editor().Execute(cmdGridSwitch, 0); });
    else if (AObject == FPanels[3]) Action(QStringLiteral("acGridSetting"))->trigger();
    Guard([&] { UpdateActions(); });
  }
  return QMainWindow::eventFilter(AObject, AEvent);
}

void TEditDrawSetForm::showEvent(QShowEvent* AEvent) {
  QMainWindow::showEvent(AEvent);
  FEditorWidget->setFocus();
}

void TEditDrawSetForm::closeEvent(QCloseEvent* AEvent) {
  if (!FAborted) {
    bool Ok = false;
    Guard([&] { Ok = CheckSaveChanges(); });
    if (!Ok && !FAborted) {
      AEvent->ignore();
      return;
    }
  }
  FModalResult = mrCancel;
  AEvent->accept();
  if (FModalLoop) FModalLoop->quit();
}

void TEditDrawSetForm::Abort() {
  FAborted = true;
  FModalResult = mrCancel;
  if (isVisible()) close();
  if (FModalLoop) FModalLoop->quit();
}

int TEditDrawSetForm::ShowModal() {
  setWindowModality(Qt::ApplicationModal);
  FModalResult = 0;
  QEventLoop Loop;
  FModalLoop = &Loop;
  if (!FAborted) {
    show();
    Guard([&] { UpdateActions(); });
    if (OnShown()) {
      std::function<void(TEditDrawSetForm&)> Hook = OnShown();
      QTimer::singleShot(0, this, [this, Hook] { Hook(*this); });
    }
    if (!FAborted) Loop.exec(QEventLoop::DialogExec);
  }
  FModalLoop = nullptr;
  hide();
  return FModalResult;
}
