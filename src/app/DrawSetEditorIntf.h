#pragma once
// What the draw-set command states ask of the window: tagging items as bars and
// params, renaming params, merging bars and the jump order. Item numbers throughout.

#include <QString>

class IDrawSetEditor {
public:
  virtual ~IDrawSetEditor() = default;
  virtual bool HasBarInfo(int AVDID) = 0;
  virtual void SetBarInfoVDID(int AVDID, int ABarInfoVDID) = 0;
  virtual bool IsValidParamCode(int AVDID, const QString& ACode, QString& AErrMsg) = 0;
  virtual QString GetParamCode(int AVDID) = 0;
  virtual void SetParamCode(int AVDID, const QString& ACode) = 0;
  virtual void MergeBars() = 0;
  virtual void LinesToBar() = 0;
  virtual int GetOrderNum(int AVDID) = 0;
  virtual void SetOrderNum(int AVDID, int AOrderNum) = 0;
};
