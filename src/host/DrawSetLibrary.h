#pragma once
// The host's draw-set library, serving both data servers from one SQLite file or from
// a PostgreSQL database shared by a team. Saves are one transaction with an optimistic
// check: a row whose values as first read no longer match the database refuses the
// whole save and nothing is written.

#include "LibraryDb.h"
#include "MZTDataSvr.h"

#include <QPair>

#include <memory>

class TDrawSetLibrary : public IDrawingsDataSvr, public IMZTBarInfoDataSvr {
public:
  // An existing library at a file name or a postgresql:// URI; raises EDatabaseError
  // with a plain message otherwise.
  static std::shared_ptr<TDrawSetLibrary> Open(const QString& ALocation);
  // A new, empty library with the schema: the file must not exist, the database must
  // not hold a library (AReplace drops one, inside the caller's transaction if any).
  static std::shared_ptr<TDrawSetLibrary> Create(const QString& ALocation, bool AReplace = false);
  static std::shared_ptr<TDrawSetLibrary> Create(std::unique_ptr<TLibraryDb>&& ADb, bool AReplace = false);

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

  TLibraryDb& Db() { return *FDb; }
  // Every row of every table into ATarget, a new library of the same version (its
  // own format rows stay).
  // Returns the number of rows copied.
  qint64 CopyRowsTo(TDrawSetLibrary& ATarget);

  // The tables, parents before children.
  static const QStringList& TableNames();

  static const QStringList& CalcProgramColumns();
  static const QStringList& VectorDrawingColumns();
  static const QStringList& BarInfoColumns();

private:
  explicit TDrawSetLibrary(std::unique_ptr<TLibraryDb> ADb);
  template <class F>
  TServerStatus Guard(F&& ACall);
  void ApplyDelta(int AKind, const TDataPacket& ADelta, bool ADeletes);

  std::unique_ptr<TLibraryDb> FDb;
  QString FLastError;
};

// Raised inside a save when a row was changed by someone else; the save is refused.
class ESaveConflict : public Exception {
public:
  using Exception::Exception;
};
