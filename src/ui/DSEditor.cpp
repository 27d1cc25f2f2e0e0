#include "DSEditor.h"

#include "Dialogs.h"
#include "DrawSetConsts.h"
#include "EditDrawSetFrm.h"
#include "IconsFrm.h"
#include "MZTDiamDictsIntf.h"
#include "QtDialogs.h"
#include "VectorDrawingEditor.h"

#include <QApplication>

#include <memory>

namespace {

QString GSettingsFile;
bool GMaximized = true;

int Run(QWidget* AHostWindow, int ADrawSetID, IMZTBarInfoDataSvr* ASysDataSvr, IDrawingsDataSvr* ADrawingsDataSvr,
        IMZTDiamDicts* ADiamDicts, int ARegionCode) {
  // The dictionary stays the host's: the run holds it without owning it.
  const std::shared_ptr<IMZTDiamDicts> Dicts(ADiamDicts, [](IMZTDiamDicts*) {});
  TRegionScope Region(ARegionCode, ADiamDicts ? Dicts : nullptr);

  std::shared_ptr<TDialogService> PrevDialogs;
  std::shared_ptr<TQtDialogs> QtDialogs;
  if (DialogsAreDefault()) {
    QtDialogs = std::make_shared<TQtDialogs>(AHostWindow);
    PrevDialogs = SetDialogs(QtDialogs);
  }
  struct TRestoreDialogs {
    std::shared_ptr<TDialogService>& Prev;
    bool Installed;
    ~TRestoreDialogs() {
      if (Installed) SetDialogs(Prev);
    }
  } RestoreDialogs{PrevDialogs, QtDialogs != nullptr};

  TIconsForm Icons;
  std::exception_ptr Failure;
  int Result = 0;
  {
    TEditDrawSetForm Form(AHostWindow, ADrawSetID, ASysDataSvr, ADrawingsDataSvr, GSettingsFile);
    Form.setWindowFlag(Qt::Window);
    Form.setWindowIcon(Icons.Icon(QStringLiteral("acDrawArc")));
    if (QtDialogs) QtDialogs->SetOwner(&Form);
    try {
      Form.LoadDrawSet(ADrawSetID);
      Form.ResetView();
      Form.hide();
      if (GMaximized) Form.setWindowState(Qt::WindowMaximized);
      Result = Form.ShowModal();
      Failure = Form.FatalError();
    } catch (...) {
      Failure = std::current_exception();
    }
    Form.Session().ClearDataSetFilters();
    if (Result != mrOk) Form.Session().RevertToSavePoints();
    if (QtDialogs) QtDialogs->SetOwner(AHostWindow);
  }
  if (Failure) std::rethrow_exception(Failure);
  return Result;
}

}  // namespace

void SetDSEditorOptions(const QString& ASettingsFile, bool AMaximized) {
  GSettingsFile = ASettingsFile;
  GMaximized = AMaximized;
}

int RunDSEditor(QWidget* AHostWindow, int ADrawSetID, IMZTBarInfoDataSvr* ASysDataSvr,
                IDrawingsDataSvr* ADrawingsDataSvr, IMZTDiamDicts* ADiamDicts, int ARegionCode) {
  // A host without a widget application of its own gets one for the run.
  std::unique_ptr<QApplication> OwnApp;
  if (!QApplication::instance()) {
    static int Argc = 1;
    static char Arg0[] = "dseditor";
    static char* Argv[] = {Arg0, nullptr};
    OwnApp = std::make_unique<QApplication>(Argc, Argv);
  }
  if (!ADrawingsDataSvr) {
    ShowErrorBox(QStringLiteral("没有图集数据服务"));
    return -1;
  }
  try {
    return Run(AHostWindow, ADrawSetID, ASysDataSvr, ADrawingsDataSvr, ADiamDicts, ARegionCode);
  } catch (const std::exception& E) {
    ShowErrorBox(QString::fromUtf8(E.what()));
  } catch (...) {
    ShowErrorBox(QStringLiteral("未知错误"));
  }
  return -1;
}
