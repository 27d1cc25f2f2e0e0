#pragma once
// The drawing editor as a draw-set editor: the item-type mode, which items a mode may
// touch, the bars and params that new and deleted items make and remove, and the
// operations the draw-set commands use. The draw set belongs to the session; the
// window learns of changes through the hooks.

#include "DrawSetEditorIntf.h"
#include "DrawSetSession.h"
#include "VectorDrawingEditor.h"

#include <functional>

class TDrawSetEditor : public TVectorDrawingEditor, public IDrawSetEditor {
public:
  explicit TDrawSetEditor(const QString& ASettingsFile = QString());
  ~TDrawSetEditor() override;

  void SetSession(TDrawSetSession* ASession) { FSession = ASession; }
  TDSType CurDSType() const { return FCurDSType; }
  void SetCurDSType(TDSType AValue) { FCurDSType = AValue; }

  // 1-based position of ASubStr in AStr as a whole word (neighbours not letters,
  // digits or "_"), 0 when none.
  static int GetVarPos(const QString& ASubStr, const QString& AStr, bool AIgnoreCase);
  // Every whole-word AOldVar in AStr (any letter case) becomes ANewVar.
  static QString ReplaceVar(const QString& AStr, const QString& AOldVar, const QString& ANewVar);

  bool HasBarInfo(int AVDID) override;
  void SetBarInfoVDID(int AVDID, int ABarInfoVDID) override;
  bool IsValidParamCode(int AVDID, const QString& ACode, QString& AErrMsg) override;
  QString GetParamCode(int AVDID) override;
  void SetParamCode(int AVDID, const QString& ACode) override;
  void MergeBars() override;
  void LinesToBar() override;
  int GetOrderNum(int AVDID) override;
  void SetOrderNum(int AVDID, int AOrderNum) override;

  // The mode's test of an item, for selection and hit testing.
  bool AcceptsItem(const TVectorDrawingItem& AItem) const;

  // Bars or params changed: the bars panel shows them again.
  std::function<void()> OnBarsChanged;
  // The bars panel's pending script goes to its bar; false when its grid refuses.
  std::function<bool()> OnSaveBars;
  // A param name came, went (new empty) or changed: the highlighter's keys follow.
  std::function<void(const QString& AOld, const QString& ANew)> OnParamKeyChanged;

private:
  TDrawSet* DrawSet() const { return FSession ? FSession->DrawSet() : nullptr; }
  void ItemAdded(int AID);
  void ItemDeleted(int AID);
  void BarsChanged() {
    if (OnBarsChanged) OnBarsChanged();
  }
  TDrawSetBar* AddNewBar(const QString& ABarVDID, int ABarInfoVDID);

  TDrawSetSession* FSession = nullptr;
  TDSType FCurDSType = dsNormal;
};
