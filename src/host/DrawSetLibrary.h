#pragma once
// The host's draw-set library in one SQLite file, serving both data servers.
// Saves are one transaction with an optimistic check: a row whose values as first
// read no longer match the file refuses the whole save and nothing is written.

#include "MZTDataSvr.h"
#include "SqliteDb.h"

#include <QPair>

#include <memory>

class TDrawSetLibrary : public IDrawingsDataSvr, public IMZTBarInfoDataSvr {
public:
  // An existing library; raises EDatabaseError with a plain message otherwise.
  static std::shared_ptr<TDrawSetLibrary> Open(const QString& AFileName);
  // A new, empty library with the schema; the file must not exist.
  static std::shared_ptr<TDrawSetLibrary> Create(const QString& AFileName);

  QString LastErrorText() const override { return FLastError; }

  TServerStatus GetDrawSetTypes(TDataPacket& AData) override;
  TServerStatus GetDrawSets(TDataPacket& AData) override;
  TServerStatus GetDrawSetBars(int ADrawSetID, TDataPacket& AData) override;
  TServerStatus GetDrawSetParams(int ADrawSetID, int ACalcRuleID, TDataPacket& AData) override;
  TServerStatus SaveDrawSets(const TDrawSetDeltas& ADeltas, int ACalcRuleID, void* AReserved, QString& AErrMsg,
                             bool& AResult) override;

  TServerStatus GetBarClasses(TDataPacket& AData) override;
  TServerStatus GetBarPicParams(int ABarPicID, TDataPacket& AData) override;
  TServerStatus GetBarPics(TDataPacket& AData) override;
  TServerStatus GetMaxBarPicID(int& AMaxID) override;
  TServerStatus GetBendTypes(TDataPacket& AData) override;
  TServerStatus GetHookTypes(TDataPacket& AData) override;
  TServerStatus GetCustomBarPicTypes(TDataPacket& AData) override;

  // The user's common picture list: (picture number, order) pairs.
  QVector<QPair<int, int>> CommonBarPics();
  void SetCommonBarPics(const QVector<QPair<int, int>>& AList);
  // Diameter dictionaries as their JSON text, by name.
  QStringList DiamDictNames();
  QByteArray DiamDictJson(const QString& AName);

  TSqliteDb& Db() { return *FDb; }

  static const QStringList& CalcProgramColumns();
  static const QStringList& VectorDrawingColumns();
  static const QStringList& BarInfoColumns();

private:
  explicit TDrawSetLibrary(std::unique_ptr<TSqliteDb> ADb) : FDb(std::move(ADb)) {}
  template <class F>
  TServerStatus Guard(F&& ACall);
  void ApplyDelta(int AKind, const TDataPacket& ADelta, bool ADeletes);

  std::unique_ptr<TSqliteDb> FDb;
  QString FLastError;
};

// Raised inside a save when a row was changed by someone else; the save is refused.
class ESaveConflict : public Exception {
public:
  using Exception::Exception;
};
