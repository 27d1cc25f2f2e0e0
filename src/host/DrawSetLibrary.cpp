#include "DrawSetLibrary.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace {

const QString kFormat = QStringLiteral("dse-drawset-library");
const int kSchemaVersion = 1;

QString Columns(const QString& APrefix, const QStringList& ASuffixes, const QString& AType) {
  QString S;
  for (const QString& Suffix : ASuffixes)
    S += QStringLiteral(",\n  %1%2 %3").arg(APrefix, Suffix, AType);
  return S;
}

QStringList Prefixed(const QString& APrefix, const QStringList& ASuffixes) {
  QStringList R;
  for (const QString& S : ASuffixes)
    R << APrefix + S;
  return R;
}

const QStringList kProgramSuffixes = {"Chs", "EU", "Bs", "ID", "TH", "PH", "Cht", "IN"};
const QStringList kDrawingSuffixes = {"Chs", "EU", "Bs", "ID", "TH", "PH", "IN"};
const QStringList kBarInfoSuffixes = {"CHS", "EU", "Bs", "ID", "TH", "PH", "CHT", "IN"};

QString SchemaSql(const QString& ABlob) {
  return QStringLiteral(
             "CREATE TABLE LibraryInfo (Key TEXT PRIMARY KEY, Value TEXT);\n"
             "CREATE TABLE DrawSetTypes (DrawSetTypeID INTEGER PRIMARY KEY, DrawSetTypeName TEXT NOT NULL,"
             " OrderNum INTEGER);\n"
             "CREATE TABLE DrawSets (\n  DrawSetID INTEGER PRIMARY KEY,\n  DrawSetTypeID INTEGER,\n"
             "  DrawSetName TEXT NOT NULL CHECK (length(DrawSetName) > 0),\n  OrderNum INTEGER%1);\n"
             "CREATE TABLE DrawSetBars (\n  DrawSetID INTEGER NOT NULL REFERENCES DrawSets ON DELETE CASCADE,\n"
             "  BarID INTEGER NOT NULL,\n  BarPicID INTEGER,\n"
             "  BarNum TEXT CHECK (BarNum IS NULL OR length(BarNum) <= 40),\n"
             "  BarVDID TEXT,\n  BarInfoVDID INTEGER%2%3,\n  BarRemark TEXT,\n  OrderNum INTEGER,\n"
             "  PRIMARY KEY (DrawSetID, BarID));\n"
             "CREATE TABLE DrawSetParams (\n  CalcRuleID INTEGER NOT NULL,\n"
             "  DrawSetID INTEGER NOT NULL REFERENCES DrawSets ON DELETE CASCADE,\n"
             "  ParamID INTEGER NOT NULL,\n  ParamVDID INTEGER,\n  ParamCode TEXT,\n  DataType INTEGER,\n"
             "  ValidateExpr TEXT,\n  InvalidMsg TEXT,\n  OrderNum INTEGER,\n  ParamVal TEXT,\n  Unit TEXT,\n"
             "  PRIMARY KEY (CalcRuleID, DrawSetID, ParamID));\n"
             "CREATE TABLE BarPics (BarPicID INTEGER PRIMARY KEY, VectorDrawing %4, BarPicName TEXT,"
             " BarPicTypeID INTEGER, BendTypeID INTEGER, HookTypeID INTEGER, CommonOrder INTEGER,"
             " BS2000ShapeCode TEXT);\n"
             "CREATE TABLE BarPicParams (BarPicID INTEGER NOT NULL REFERENCES BarPics ON DELETE CASCADE,"
             " BarPicParamID INTEGER NOT NULL, ParamCode TEXT, Unit TEXT, ValidateExpr TEXT, InvalidMsg TEXT,"
             " ParamVDID INTEGER, DataType INTEGER, IsSCPJParam BOOLEAN, PRIMARY KEY (BarPicID, BarPicParamID));\n"
             "CREATE TABLE BendTypes (BendTypeID INTEGER PRIMARY KEY, BendTypeName TEXT);\n"
             "CREATE TABLE HookTypes (HookTypeID INTEGER PRIMARY KEY, HookTypeName TEXT);\n"
             "CREATE TABLE BarClasses (BarClassID INTEGER PRIMARY KEY, BarClassName TEXT);\n"
             "CREATE TABLE CustomBarPicTypes (BarPicTypeID INTEGER PRIMARY KEY, BarPicTypeName TEXT);\n"
             "CREATE TABLE CommonBarPics (BarPicID INTEGER PRIMARY KEY, CommonOrder INTEGER);\n"
             "CREATE TABLE DiamDicts (DictName TEXT PRIMARY KEY, Json TEXT NOT NULL);\n")
      .arg(Columns(QStringLiteral("VectorDrawing_"), kDrawingSuffixes, ABlob),
           Columns(QStringLiteral("BarInfo_"), kBarInfoSuffixes, QStringLiteral("TEXT")),
           Columns(QStringLiteral("CalcProgram_"), kProgramSuffixes, QStringLiteral("TEXT")), ABlob);
}

// Column names as the schema spells them, and the names queries give their results.
QStringList SchemaNames() {
  QStringList R = {QStringLiteral("SetParamVal")};
  static const QRegularExpression Column(QStringLiteral(R"([(,]\s*([A-Za-z_][A-Za-z0-9_]*)\s+(?:INTEGER|TEXT|BOOLEAN|BLOB))"));
  auto It = Column.globalMatch(SchemaSql(QStringLiteral("BLOB")));
  while (It.hasNext())
    R << It.next().captured(1);
  return R;
}

struct TTableInfo {
  QString Table;
  QStringList Keys;
};

const TTableInfo& TableOfDelta(int AKind) {
  static const TTableInfo Tables[4] = {
      {},
      {QStringLiteral("DrawSets"), {QStringLiteral("DrawSetID")}},
      {QStringLiteral("DrawSetBars"), {QStringLiteral("DrawSetID"), QStringLiteral("BarID")}},
      {QStringLiteral("DrawSetParams"),
       {QStringLiteral("CalcRuleID"), QStringLiteral("DrawSetID"), QStringLiteral("ParamID")}},
  };
  return Tables[AKind];
}

QString RowName(int AKind, const QVector<QVariant>& AKey) {
  switch (AKind) {
    case 1:
      return QStringLiteral("图集 %1").arg(AKey.value(0).toString());
    case 2:
      return QStringLiteral("图集 %1 的钢筋 %2").arg(AKey.value(0).toString(), AKey.value(1).toString());
    default:
      return QStringLiteral("图集 %1 的变量 %2").arg(AKey.value(1).toString(), AKey.value(2).toString());
  }
}

}  // namespace

const QStringList& TDrawSetLibrary::CalcProgramColumns() {
  static const QStringList L = Prefixed(QStringLiteral("CalcProgram_"), kProgramSuffixes);
  return L;
}
const QStringList& TDrawSetLibrary::VectorDrawingColumns() {
  static const QStringList L = Prefixed(QStringLiteral("VectorDrawing_"), kDrawingSuffixes);
  return L;
}
const QStringList& TDrawSetLibrary::BarInfoColumns() {
  static const QStringList L = Prefixed(QStringLiteral("BarInfo_"), kBarInfoSuffixes);
  return L;
}

TDrawSetLibrary::TDrawSetLibrary(std::unique_ptr<TLibraryDb> ADb) : FDb(std::move(ADb)) {
  static const QStringList Names = SchemaNames();
  FDb->SetKnownNames(Names);
}

const QStringList& TDrawSetLibrary::TableNames() {
  static const QStringList L = [] {
    QStringList R;
    static const QRegularExpression Table(QStringLiteral(R"(CREATE TABLE (\w+))"));
    auto It = Table.globalMatch(SchemaSql(QStringLiteral("BLOB")));
    while (It.hasNext())
      R << It.next().captured(1);
    return R;
  }();
  return L;
}

namespace {

// Raises EDatabaseError unless ADb holds a library of our format and version.
void CheckLibrary(TLibraryDb& ADb, const QString& AName) {
  const bool Server = IsServerLocation(AName);
  const QString NotOurs = Server ? QStringLiteral("数据库中没有图集库（可用 dse init 或 dse copy-library 建立）：%1").arg(ADb.Location())
                                 : QStringLiteral("不是图集库文件：%1").arg(AName);
  QVariant Format, Version;
  try {
    if (!ADb.HasTable(QStringLiteral("LibraryInfo")))
      throw EDatabaseError(NotOurs);
    Format = ADb.Scalar(QStringLiteral("SELECT Value FROM LibraryInfo WHERE Key = 'Format'"));
    Version = ADb.Scalar(QStringLiteral("SELECT Value FROM LibraryInfo WHERE Key = 'Version'"));
  } catch (const EDatabaseError&) {
    throw EDatabaseError(NotOurs);
  }
  if (Format.toString() != kFormat)
    throw EDatabaseError(NotOurs);
  if (Version.toInt() != kSchemaVersion)
    throw EDatabaseError(QStringLiteral("图集库 %1 的版本 %2 不受支持（本程序支持版本 %3）")
                             .arg(Server ? ADb.Location() : AName, Version.toString(), QString::number(kSchemaVersion)));
}

}  // namespace

std::shared_ptr<TDrawSetLibrary> TDrawSetLibrary::Open(const QString& ALocation) {
  if (IsServerLocation(ALocation)) {
    std::unique_ptr<TLibraryDb> Db = ConnectLibraryDb(ALocation, false);
    CheckLibrary(*Db, ALocation);
    return std::shared_ptr<TDrawSetLibrary>(new TDrawSetLibrary(std::move(Db)));
  }
  const QString& AFileName = ALocation;
  const TFileStatus Info = FileStatus(AFileName);
  if (!Info.Exists && !Info.IsLink) throw EDatabaseError(QStringLiteral("图集库文件不存在：%1").arg(AFileName));
  if (Info.IsDir) throw EDatabaseError(QStringLiteral("%1 是一个目录，不是图集库文件").arg(AFileName));
  if (!Info.IsFile) throw EDatabaseError(QStringLiteral("%1 不是普通文件（设备、管道或失效的链接），不是图集库文件").arg(AFileName));
  if (!Info.Readable) throw EDatabaseError(QStringLiteral("没有读取图集库文件的权限：%1").arg(AFileName));
  std::unique_ptr<TLibraryDb> Db = ConnectLibraryDb(AFileName, false);
  CheckLibrary(*Db, AFileName);
  return std::shared_ptr<TDrawSetLibrary>(new TDrawSetLibrary(std::move(Db)));
}

std::shared_ptr<TDrawSetLibrary> TDrawSetLibrary::Create(const QString& ALocation, bool AReplace) {
  const TFileStatus Status = IsServerLocation(ALocation) ? TFileStatus{} : FileStatus(ALocation);
  if (Status.Exists || Status.IsLink)
    throw EDatabaseError(QStringLiteral("文件已存在：%1").arg(ALocation));
  return Create(ConnectLibraryDb(ALocation, true), AReplace);
}

std::shared_ptr<TDrawSetLibrary> TDrawSetLibrary::Create(std::unique_ptr<TLibraryDb>&& ADb, bool AReplace) {
  {
    TLibraryTransaction T(*ADb);
    if (ADb->HasTable(QStringLiteral("LibraryInfo"))) {
      if (!AReplace)
        throw EDatabaseError(QStringLiteral("%1 中已有图集库（用 --force 替换）").arg(ADb->Location()));
      QStringList Tables = TableNames();
      std::reverse(Tables.begin(), Tables.end());
      for (const QString& Table : Tables)
        ADb->Exec(QStringLiteral("DROP TABLE IF EXISTS %1").arg(Table));
    }
    ADb->Exec(SchemaSql(ADb->BlobType()));
    ADb->Exec(QStringLiteral("INSERT INTO LibraryInfo VALUES ('Format', ?), ('Version', ?)"),
              {kFormat, QString::number(kSchemaVersion)});
    T.Commit();
  }
  return std::shared_ptr<TDrawSetLibrary>(new TDrawSetLibrary(std::move(ADb)));
}

qint64 TDrawSetLibrary::CopyRowsTo(TDrawSetLibrary& ATarget) {
  TLibraryTransaction T(ATarget.Db());
  qint64 Count = 0;
  for (const QString& Table : TableNames()) {
    // one table at a time keeps a large library's memory to its largest table
    const TDataPacket Rows =
        FDb->Query(Table == QLatin1String("LibraryInfo")
                       ? QStringLiteral("SELECT * FROM LibraryInfo WHERE Key NOT IN ('Format', 'Version')")
                       : QStringLiteral("SELECT * FROM %1").arg(Table));
    if (Rows.Rows.isEmpty())
      continue;
    QStringList Names, Marks;
    for (const TFieldDef& F : Rows.Fields) {
      Names << F.Name;
      Marks << QStringLiteral("?");
    }
    const QString Sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(Table, Names.join(QStringLiteral(", ")), Marks.join(QStringLiteral(", ")));
    for (const TPacketRow& Row : Rows.Rows)
      ATarget.Db().Exec(Sql, Row.Values);
    Count += Rows.Rows.size();
  }
  T.Commit();
  return Count;
}

template <class F>
TServerStatus TDrawSetLibrary::Guard(F&& ACall) {
  try {
    FLastError.clear();
    ACall();
    return S_SERVER_OK;
  } catch (const Exception& E) {
    FLastError = E.Message();
  } catch (const std::exception& E) {
    FLastError = QString::fromLocal8Bit(E.what());
  }
  return E_SERVER_FAIL;
}

TServerStatus TDrawSetLibrary::GetDrawSetTypes(TDataPacket& AData) {
  return Guard([&] {
    AData = FDb->Query(QStringLiteral(
        "SELECT DrawSetTypeID, DrawSetTypeName, OrderNum FROM DrawSetTypes ORDER BY OrderNum, DrawSetTypeID"));
  });
}

TServerStatus TDrawSetLibrary::GetDrawSets(TDataPacket& AData) {
  return Guard([&] {
    AData = FDb->Query(QStringLiteral("SELECT DrawSetID, DrawSetTypeID, DrawSetName, OrderNum, %1 FROM DrawSets"
                                      " ORDER BY OrderNum, DrawSetID")
                           .arg(VectorDrawingColumns().join(QStringLiteral(", "))));
  });
}

TServerStatus TDrawSetLibrary::GetDrawSetBars(int ADrawSetID, TDataPacket& AData) {
  return Guard([&] {
    AData = FDb->Query(QStringLiteral("SELECT * FROM DrawSetBars WHERE DrawSetID = ? ORDER BY OrderNum, BarID"),
                       {ADrawSetID});
  });
}

TServerStatus TDrawSetLibrary::GetDrawSetParams(int ADrawSetID, int ACalcRuleID, TDataPacket& AData) {
  // The value goes out twice: the editor reads "ParamVal" and writes "SetParamVal".
  return Guard([&] {
    AData = FDb->Query(QStringLiteral("SELECT CalcRuleID, DrawSetID, ParamID, ParamVDID, ParamCode, DataType,"
                                      " ValidateExpr, InvalidMsg, OrderNum, ParamVal, ParamVal AS SetParamVal, Unit"
                                      " FROM DrawSetParams WHERE DrawSetID = ? AND CalcRuleID = ?"
                                      " ORDER BY OrderNum, ParamID"),
                       {ADrawSetID, ACalcRuleID});
  });
}

void TDrawSetLibrary::ApplyDelta(int AKind, const TDataPacket& ADelta, bool ADeletes) {
  const TTableInfo& Info = TableOfDelta(AKind);
  // packet fields that are columns of the table (the value's write name maps to ParamVal)
  const QStringList TableColumns = FDb->TableColumns(Info.Table);
  QVector<int> Cols;
  QStringList ColNames;
  int SetValueField = -1;
  for (int I = 0; I < ADelta.Fields.size(); ++I) {
    const QString& Name = ADelta.Fields[I].Name;
    if (AKind == 3 && SameText(Name, QStringLiteral("SetParamVal"))) {
      SetValueField = I;
      continue;
    }
    for (const QString& C : TableColumns)
      if (SameText(C, Name)) {
        Cols << I;
        ColNames << C;
      }
  }
  QVector<int> KeyFields;
  for (const QString& K : Info.Keys) {
    const int F = ADelta.FieldIndex(K);
    if (F < 0)
      throw EDatabaseError(QStringLiteral("保存数据缺少关键字段 %1").arg(K));
    KeyFields << F;
  }
  const QString Where = Info.Keys.join(QStringLiteral(" = ? AND ")) + QStringLiteral(" = ?");
  const auto KeyOf = [&](const QVector<QVariant>& AValues) {
    QVector<QVariant> Key;
    for (int F : KeyFields)
      Key << AValues.value(F);
    return Key;
  };

  // The row in the file must still hold the values the editor first read.
  const auto CheckUnchanged = [&](const TPacketRow& ARow) {
    const QVector<QVariant> Key = KeyOf(ARow.OldValues);
    const TDataPacket Stored = FDb->Query(QStringLiteral("SELECT %1 FROM %2 WHERE %3%4")
                                              .arg(ColNames.join(QStringLiteral(", ")), Info.Table, Where, FDb->RowLock()),
                                          Key);
    if (Stored.Rows.isEmpty())
      throw ESaveConflict(QStringLiteral("%1已被其他用户删除").arg(RowName(AKind, Key)));
    const QVector<QVariant>& StoredValues = Stored.Rows[0].Values;
    for (int I = 0; I < Cols.size(); ++I) {
      const TFieldType Type = ADelta.Fields[Cols[I]].DataType;
      QVariant Now;
      try {
        Now = ConvertFieldValue(StoredValues[I], Type);
      } catch (const EConvertError&) {
        Now = StoredValues[I];
      }
      // the editor writes the value as "SetParamVal" and keeps reading a stale
      // "ParamVal" after a save, so the stored value is checked against the former
      const int Field = SetValueField >= 0 && SameText(ColNames[I], QStringLiteral("ParamVal")) ? SetValueField : Cols[I];
      if (CompareFieldValues(Now, ARow.OldValues.value(Field)) != 0)
        throw ESaveConflict(QStringLiteral("%1已被其他用户修改").arg(RowName(AKind, Key)));
    }
  };

  for (const TPacketRow& Row : ADelta.Rows) {
    if ((Row.Status == TUpdateStatus::usDeleted) != ADeletes)
      continue;
    switch (Row.Status) {
      case TUpdateStatus::usDeleted:
        CheckUnchanged(Row);
        FDb->Exec(QStringLiteral("DELETE FROM %1 WHERE %2").arg(Info.Table, Where), KeyOf(Row.OldValues));
        break;
      case TUpdateStatus::usInserted: {
        const QVector<QVariant> Key = KeyOf(Row.Values);
        for (const QVariant& K : Key)
          if (K.isNull())
            throw EDatabaseError(QStringLiteral("新记录缺少编号"));
        if (!FDb->Scalar(QStringLiteral("SELECT 1 FROM %1 WHERE %2").arg(Info.Table, Where), Key).isNull())
          throw ESaveConflict(QStringLiteral("%1已被其他用户添加").arg(RowName(AKind, Key)));
        QStringList Names = ColNames;
        QVector<QVariant> Values;
        for (int F : Cols)
          Values << Row.Values.value(F);
        if (SetValueField >= 0 && !Row.Values.value(SetValueField).isNull()) {
          const int P = Names.indexOf(QStringLiteral("ParamVal"));
          if (P >= 0)
            Values[P] = Row.Values.value(SetValueField);
          else {
            Names << QStringLiteral("ParamVal");
            Values << Row.Values.value(SetValueField);
          }
        }
        QStringList Marks;
        for (int I = 0; I < Names.size(); ++I)
          Marks << QStringLiteral("?");
        try {
          FDb->Exec(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                        .arg(Info.Table, Names.join(QStringLiteral(", ")), Marks.join(QStringLiteral(", "))),
                    Values);
        } catch (const EDatabaseConflict&) {
          // added by another connection between the check and the insert
          throw ESaveConflict(QStringLiteral("%1已被其他用户添加").arg(RowName(AKind, Key)));
        }
        break;
      }
      case TUpdateStatus::usModified: {
        CheckUnchanged(Row);
        QStringList Sets;
        QVector<QVariant> Values;
        for (int I = 0; I < Cols.size(); ++I)
          if (CompareFieldValues(Row.Values.value(Cols[I]), Row.OldValues.value(Cols[I])) != 0 ||
              Row.Values.value(Cols[I]).isNull() != Row.OldValues.value(Cols[I]).isNull()) {
            Sets << ColNames[I] + QStringLiteral(" = ?");
            Values << Row.Values.value(Cols[I]);
          }
        if (SetValueField >= 0 &&
            CompareFieldValues(Row.Values.value(SetValueField), Row.OldValues.value(SetValueField)) != 0) {
          Sets << QStringLiteral("ParamVal = ?");
          Values << Row.Values.value(SetValueField);
        }
        if (Sets.isEmpty())
          break;
        Values << KeyOf(Row.OldValues);
        FDb->Exec(QStringLiteral("UPDATE %1 SET %2 WHERE %3").arg(Info.Table, Sets.join(QStringLiteral(", ")), Where),
                  Values);
        break;
      }
      default:
        break;
    }
  }
}

TServerStatus TDrawSetLibrary::SaveDrawSets(const TDrawSetDeltas& ADeltas, int ACalcRuleID, void* AReserved,
                                            QString& AErrMsg, bool& AResult) {
  Q_UNUSED(ACalcRuleID);
  Q_UNUSED(AReserved);
  AResult = false;
  AErrMsg.clear();
  return Guard([&] {
    try {
      TLibraryTransaction T(*FDb);
      // deletions first, children before parents; then the rest, parents first
      for (int K = 3; K >= 1; --K)
        if (!ADeltas[K].IsNull())
          ApplyDelta(K, ADeltas[K], true);
      for (int K = 1; K <= 3; ++K)
        if (!ADeltas[K].IsNull())
          ApplyDelta(K, ADeltas[K], false);
      T.Commit();
      AResult = true;
    } catch (const ESaveConflict& E) {
      AErrMsg = QStringLiteral("保存失败：%1。本次保存没有写入任何数据，请重新打开图集后再修改。").arg(E.Message());
    } catch (const EDatabaseConflict&) {
      AErrMsg = QStringLiteral("保存失败：图集已被其他用户同时修改。本次保存没有写入任何数据，请重新打开图集后再修改。");
    } catch (const EDatabaseError& E) {
      AErrMsg = QStringLiteral("保存失败，本次保存没有写入任何数据：%1").arg(E.Message());
    }
  });
}

TServerStatus TDrawSetLibrary::GetBarClasses(TDataPacket& AData) {
  return Guard([&] {
    AData = FDb->Query(QStringLiteral("SELECT BarClassID, BarClassName FROM BarClasses ORDER BY BarClassID"));
  });
}

TServerStatus TDrawSetLibrary::GetBarPicParams(int ABarPicID, TDataPacket& AData) {
  return Guard([&] {
    AData = FDb->Query(QStringLiteral("SELECT BarPicParamID, ParamCode, Unit, ValidateExpr, InvalidMsg, ParamVDID,"
                                      " DataType, IsSCPJParam FROM BarPicParams WHERE BarPicID = ?"
                                      " ORDER BY BarPicParamID"),
                       {ABarPicID});
  });
}

TServerStatus TDrawSetLibrary::GetBarPics(TDataPacket& AData) {
  return Guard([&] {
    AData = FDb->Query(QStringLiteral("SELECT BarPicID, VectorDrawing, BarPicName, BarPicTypeID, BendTypeID,"
                                      " HookTypeID, CommonOrder, BS2000ShapeCode FROM BarPics ORDER BY BarPicID"));
  });
}

TServerStatus TDrawSetLibrary::GetMaxBarPicID(int& AMaxID) {
  return Guard([&] {
    const QVariant V = FDb->Scalar(QStringLiteral("SELECT MAX(BarPicID) FROM BarPics"));
    AMaxID = V.isNull() ? -1 : V.toInt();
  });
}

TServerStatus TDrawSetLibrary::GetBendTypes(TDataPacket& AData) {
  return Guard([&] {
    AData = FDb->Query(QStringLiteral("SELECT BendTypeID, BendTypeName FROM BendTypes ORDER BY BendTypeID"));
  });
}

TServerStatus TDrawSetLibrary::GetHookTypes(TDataPacket& AData) {
  return Guard([&] {
    AData = FDb->Query(QStringLiteral("SELECT HookTypeID, HookTypeName FROM HookTypes ORDER BY HookTypeID"));
  });
}

TServerStatus TDrawSetLibrary::GetCustomBarPicTypes(TDataPacket& AData) {
  return Guard([&] {
    AData = FDb->Query(
        QStringLiteral("SELECT BarPicTypeID, BarPicTypeName FROM CustomBarPicTypes ORDER BY BarPicTypeID"));
  });
}

QVector<QPair<int, int>> TDrawSetLibrary::CommonBarPics() {
  QVector<QPair<int, int>> R;
  const TDataPacket P = FDb->Query(QStringLiteral("SELECT BarPicID, CommonOrder FROM CommonBarPics ORDER BY CommonOrder"));
  for (const TPacketRow& Row : P.Rows)
    R.push_back({Row.Values[0].toInt(), Row.Values[1].toInt()});
  return R;
}

void TDrawSetLibrary::SetCommonBarPics(const QVector<QPair<int, int>>& AList) {
  TLibraryTransaction T(*FDb);
  FDb->Exec(QStringLiteral("DELETE FROM CommonBarPics"));
  for (const auto& [ID, Order] : AList)
    FDb->Exec(QStringLiteral("INSERT INTO CommonBarPics VALUES (?, ?)"), {ID, Order});
  T.Commit();
}

QStringList TDrawSetLibrary::DiamDictNames() {
  QStringList R;
  for (const TPacketRow& Row : FDb->Query(QStringLiteral("SELECT DictName FROM DiamDicts ORDER BY DictName")).Rows)
    R << Row.Values[0].toString();
  return R;
}

QByteArray TDrawSetLibrary::DiamDictJson(const QString& AName) {
  return FDb->Scalar(QStringLiteral("SELECT Json FROM DiamDicts WHERE DictName = ?"), {AName}).toString().toUtf8();
}
