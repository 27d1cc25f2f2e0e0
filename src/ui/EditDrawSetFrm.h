#pragma once
// The draw-set editor window "图集编辑器": menus, tool bars, the docked property grid,
// the status bar and the actions that run editor commands. It owns the editor control,
// the property grid, the draw-set session (datasets and draw set) and the per-mode
// property lists; the data servers belong to the caller.

#include "DSEditActions.h"
#include "DrawSetSession.h"
#include "VDEPropList.h"

#include <QHash>
#include <QMainWindow>

#include <array>
#include <exception>
#include <functional>
#include <memory>

class IDrawingsDataSvr;
class IMZTBarInfoDataSvr;
class QAction;
class QActionGroup;
class QComboBox;
class QDockWidget;
class QLabel;
class QMenu;
class QToolBar;
class TDrawSetBarsFrame;
class TDrawSetEditor;
class TVDEditorWidget;
class TVDEPropGrid;
class TVectorDrawingEditor;

class TEditDrawSetForm : public QMainWindow {
  Q_OBJECT
public:
  // How often the last imports moved their progress bar (files over 1 MB show one).
  int ImportProgressSteps() const { return FImportProgressSteps; }
  // ADrawSetID is not opened here: LoadDrawSet does that.
  TEditDrawSetForm(QWidget* AOwner, int ADrawSetID, IMZTBarInfoDataSvr* ASysDataSvr,
                   IDrawingsDataSvr* ADrawingsDataSvr, const QString& ASettingsFile = QString());
  ~TEditDrawSetForm() override;

  void LoadDrawSet(int ADrawSetID);
  void ResetView();
  // The save prompt; false keeps the window open.
  bool CheckSaveChanges();
  // Shows the window modally and returns its result when it closes.
  int ShowModal();
  int ModalResult() const { return FModalResult; }
  // Ends the modal run at once without the save prompt (a failed run).
  void Abort();

  TVectorDrawingEditor& Editor();
  TDrawSetEditor& DSEditor() { return *FDSEditor; }
  TVDEditorWidget& EditorWidget() { return *FEditorWidget; }
  TVDEPropGrid& PropGrid() { return *FPropGrid; }
  TDrawSetBarsFrame& BarsFrame() { return *FBarsFrame; }
  TDrawSetSession& Session() { return *FSession; }
  TDSType CurDSType() const { return FCurDSType; }
  void SetCurDSType(TDSType AValue);
  QAction* ModeButton(TDSType AType) const { return FModeButtons[AType]; }

  // The actions in the order of the action list.
  const QList<QAction*>& Actions() const { return FActions; }
  QAction* Action(const QString& AName) const { return FActionByName.value(AName); }
  // The enable rule's answer (Qt disables every hidden action on its own).
  bool IsActionEnabled(const QAction* AAction) const;
  void SetActionEnabled(QAction* AAction, bool AValue);
  // Runs an enabled action as its menu item or shortcut would; false when disabled.
  bool TriggerAction(const QString& AName);
  QComboBox& ZoomCombo() { return *FZoomCombo; }
  QComboBox& RadiusCombo() { return *FRadiusCombo; }
  QMenu* PopupMenu() const { return FActivePopup; }
  // The texts of the six status panels.
  QStringList StatusTexts() const;

  // The idle update of the action list and the status bar, and the editing actions.
  void UpdateActions();
  void UpdateEditActions();

  // A failure inside a handler: given here when set (a script's player), else it ends
  // the run and ExecDSEditor reports it.
  std::function<void(std::exception_ptr)> OnError;
  std::exception_ptr FatalError() const { return FFatalError; }

  // Called once the window shows, for a host that drives it.
  static std::function<void(TEditDrawSetForm&)>& OnShown();

protected:
  void closeEvent(QCloseEvent* AEvent) override;
  void showEvent(QShowEvent* AEvent) override;
  bool eventFilter(QObject* AObject, QEvent* AEvent) override;

private:
  struct TActionDef;
  void CreateActions();
  void CreateMenus();
  void CreateToolBars();
  void CreateStatusBar();
  QAction* AddAction(const TActionDef& ADef);
  void RunAction(const QString& AName);
  void Guard(const std::function<void()>& AWork);

  void OnCommandChanged(int ACmdID);
  void OnSelSetChanged();
  void ShowPopup(const QPoint& AGlobalPos);
  void ZoomAccepted();
  void RadiusAccepted();

  bool ViewIsReset();
  void DoSave();
  void DoAddBar();
  void DoDeleteBar();
  void DoSelDrawSet();
  void DoInitialize();
  void DoFindParam();
  void DoSaveToFile();
  void DoImport();

  IMZTBarInfoDataSvr* FSysDataSvr;
  IDrawingsDataSvr* FDrawingsDataSvr;
  std::unique_ptr<TDrawSetSession> FSession;
  TVDEditorWidget* FEditorWidget = nullptr;
  TDrawSetEditor* FDSEditor = nullptr;  // the editor of FEditorWidget
  TVDEPropGrid* FPropGrid = nullptr;
  TDrawSetBarsFrame* FBarsFrame = nullptr;
  QDockWidget* FPropDock = nullptr;
  std::array<std::unique_ptr<TVDEPropList>, 3> FAddItemProps;
  TDSType FCurDSType = dsNormal;
  std::array<QAction*, 3> FModeButtons{};
  QActionGroup* FModeGroup = nullptr;

  QList<QAction*> FActions;
  QHash<QString, QAction*> FActionByName;
  QHash<QAction*, int> FCommandOf;
  QHash<QString, bool> FAvailable;  // false: its command or panel is not in this build
  QComboBox* FZoomCombo = nullptr;
  QComboBox* FRadiusCombo = nullptr;
  QString FZoomText = QStringLiteral("100%"), FRadiusText = QStringLiteral("0");
  std::array<QLabel*, 6> FPanels{};
  QMenu* FCommonMenu = nullptr;
  QMenu* FModifyMenu = nullptr;
  QMenu* FActivePopup = nullptr;
  QList<QToolBar*> FToolBars;

  std::array<double, 5> FResetView{};  // the transform ResetView set
  int FModalResult = 0;
  int FImportProgressSteps = 0;
  bool FAborted = false;
  std::exception_ptr FFatalError;
  class QEventLoop* FModalLoop = nullptr;
};
